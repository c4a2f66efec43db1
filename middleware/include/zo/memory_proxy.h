// SPDX-License-Identifier: MIT
#pragma once

#include <zo/export.h>
#include <zo/list_answer.h>
#include <zo/value.h>

#include <boost/shared_ptr.hpp>

#include <string>
#include <vector>

class ZoBroker;
class ZoProxy;
namespace zo {
class LastAnswers;
}

/// The operations of a memory module, "ZoMemory". Every operation throws ZoError when its call
/// fails or when there is no module behind the proxy, and may be called from any thread.
class ZO_EXPORT ZoMemoryProxy
{
public:
    /// The memory behind `proxy`.
    explicit ZoMemoryProxy(boost::shared_ptr<ZoProxy> proxy);
    /// The memory of this process that `broker` has, and not the robot's.
    explicit ZoMemoryProxy(const boost::shared_ptr<ZoBroker>& broker);

    /// The names of all keys, each once, in no particular order.
    std::vector<std::string> getDataListName();
    /// The names that end with `ending`: only they travel, though the robot's server goes through
    /// all that it has.
    std::vector<std::string> getDataListName(const std::string& ending);

    /// One value for each element of `request`, in order. An element is an array of a key's name
    /// and the integer 0. A key that does not exist has an invalid value.
    ZoValue getListData(const ZoValue& request);

    /// The same, and when it came from the robot, and what has changed since the last answer that
    /// this object, or a copy of it, was given here. It keeps the answers to the
    /// `fMostRemembered` requests that came last, to compare with.
    ZoListAnswer getListAnswer(const ZoValue& request);
    static constexpr int fMostRemembered = 16;

    /// Stores `value` under `key`, so that it reads back with its type.
    void setData(const std::string& key, const ZoValue& value);

    /// Stores `value` under `key`, and returns what was there before, in one step: nobody's value
    /// that is stored meanwhile gets lost.
    ZoValue exchangeData(const std::string& key, const ZoValue& value);

    /// Stores many values in one exchange. An element of `pairs` is an array of a key's name and
    /// its value; of a key that repeats, the last value stays. A value that has no text makes the
    /// whole call throw before anything is stored; a robot may still have stored a part of the
    /// values when it refuses others or when the link breaks.
    void setListData(const ZoValue& pairs);

    /// Stores `text` under `key` as it stands: it reads back with whatever type it spells.
    void setText(const std::string& key, const std::string& text);

private:
    boost::shared_ptr<ZoProxy> fProxy;
    boost::shared_ptr<zo::LastAnswers> fLastAnswers;
};
