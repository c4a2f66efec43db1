// SPDX-License-Identifier: MIT
#pragma once

#include "model.h"
#include "record_finder.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

class GCInterface;
class ZoMemoryProxy;

/// The way to the robot's memory: owns the Model, fills it, and changes its flags.
/// Lock order: this class's `fMutex` before the Model's.
class Module
{
public:
    explicit Module(boost::shared_ptr<ZoMemoryProxy> proxy);
    virtual ~Module();
    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

    /// Reads the values of every key, or of the watched ones only, in one remote exchange, then
    /// tells the observer. Nothing to read: no exchange, nobody told. A ZoError of the exchange
    /// and a reply of another length leave everything as it was, silently.
    void getDatas(bool all);

    /// Appends the names of all keys in the robot's memory. A ZoError goes to standard error.
    void getListDatas(std::vector<std::string>& keys);

    /// Sets the mode and, for SUBSCRIBE_EVERY only, the period in ms.
    void changeSubscription(Model::SubscribeMode mode, int period);

    /// Sets the flag of the first record with this alias; false when there is none. A graphed key
    /// is watched, too.
    bool graphStmVal(const std::string& alias, bool graph);
    /// Sets the flag of the first record with this alias; false when there is none. A key that
    /// is not watched is not graphed either.
    bool watchStmVal(const std::string& alias, bool watch);

    /// The same for each of many aliases in order, at linear cost and under one write lock.
    /// Returns for how many there is a record.
    std::size_t graphStmVals(const std::vector<std::string>& aliases, bool graph);
    std::size_t watchStmVals(const std::vector<std::string>& aliases, bool watch);

    void addSTMVal(const std::string& name, const std::string& alias);
    void addSTMVal(boost::shared_ptr<STMVal> value);

    /// Answers whether the module is there at all: always true.
    bool innerTest();

    boost::shared_ptr<Model> fModel;
    GCInterface* fGCInterface;         ///< not owned; to be set before the first fetch
    boost::shared_ptr<ZoMutex> fMutex; ///< held over a whole fetch
    boost::shared_ptr<ZoMemoryProxy> fMemoryProxy;

private:
    void xGatherRequest(bool all);

    ZoValue fRequest; ///< of the last fetch, used again as far as the keys are the same
    KeyFinder fByKey;
};
