// SPDX-License-Identifier: MIT
#pragma once

#include <zo/mutex.h>
#include <zo/value.h>

#include <boost/shared_ptr.hpp>

#include <optional>
#include <string>
#include <utility>
#include <vector>

class AliasFinder;
class KeyFinder;

/// A plotting colour. Channels are usually 0 to 255, but any integer is kept as it is.
struct Color
{
    /// A random colour out of rand(), which this never seeds. Channels are 0 to 254.
    Color();

    int red;
    int green;
    int blue;
};

/// One followed key of the robot's memory. Views keep plain pointers to its `color`, so a record
/// is always held by a shared pointer and never moves.
struct STMVal
{
    std::pair<std::string, std::string> names; ///< key in the robot's memory; alias shown for it
    std::string type;                          ///< of the value last read; empty before that
    std::string value;                         ///< last read, as text
    bool watch = false;                        ///< read periodically
    bool graph = false;                        ///< plotted
    Color color;
};

/// The followed keys and how their values are read. Guarded by `fMutex`: who walks or changes
/// `fSTMVals` or a record holds it, except where a comment says otherwise.
class Model
{
public:
    enum SubscribeMode : int
    {
        SUBSCRIBE_EVERY = 0,
        SUBSCRIBE_NONE = 1,
        SUBSCRIBE_ON_DATA = 2,
        SUBSCRIBE_UNKNOWN = 3 ///< only as the answer for a text that names no mode
    };

    static constexpr int fMinTime = 60;    ///< shortest period, ms
    static constexpr int fMaxTime = 10000; ///< longest period, ms

    Model();
    ~Model();

    /// The label of a mode; "mode unknown" for any value that is none.
    static std::string subscribeModeToString(SubscribeMode mode);
    /// The mode with exactly this label; SUBSCRIBE_UNKNOWN when there is none.
    static SubscribeMode subscribeModeFromString(const std::string& text);

    /// Stores the period in ms, moved into [fMinTime, fMaxTime]. Takes no lock.
    void setTimePolicy(int period);

    /// Appends the record itself, whatever keys are already there. Takes the write lock.
    void addSTMVal(boost::shared_ptr<STMVal> value);
    /// Appends a new record. Takes the write lock.
    void addSTMVal(const std::string& name, const std::string& alias);
    /// Removes every record. Takes the write lock.
    void resetSTMVals();

    /// Stores type and text of `value` in the first record whose key is `name`; false when there
    /// is none. Takes the write lock.
    bool refreshSTMVal(const std::string& name, const ZoValue& value);

    /// `refreshSTMVal(request[i][0], reply[i])` for each element of `reply` in order, each under
    /// a write lock of its own, at linear cost. `byKey` is kept from call to call. Throws ZoError
    /// when `request` is not an array of arrays that begin with a string, as long as `reply`.
    void refreshSTMVals(const ZoValue& request, const ZoValue& reply, KeyFinder& byKey);

    /// Puts the value of the first record whose alias is `alias` into `result`; false, and
    /// `result` as it was, when there is none or it is no number. Takes the read lock.
    bool getDoubleVal(const std::string& alias, double& result) const;

    /// Makes `numbers` as long as `aliases`, each element what `getDoubleVal` finds for the alias
    /// at its place: its number, or nothing where that is false. All under one read lock, at
    /// linear cost. Aliases may come in any order and more than once. The caller keeps `byAlias`
    /// and `numbers` from call to call: then nothing is allocated while aliases stay as they are.
    void getDoubleVals(const std::vector<std::string>& aliases, AliasFinder& byAlias,
                       std::vector<std::optional<double>>& numbers) const;

    std::vector<boost::shared_ptr<STMVal>> fSTMVals; ///< in the order in which they were added
    SubscribeMode fSubscribeMode;
    int fTimePolicy; ///< period of SUBSCRIBE_EVERY, ms
    boost::shared_ptr<ZoMutexRW> fMutex;

private:
    void xStore(STMVal& record, const ZoValue& value);

    std::string fText; ///< of a value being stored; under the write lock only
};
