// SPDX-License-Identifier: MIT
#include <zo/broker.h>
#include <zo/error.h>
#include <zo/memory_proxy.h>
#include <zo/proxy.h>

#include "memory/last_answers.h"
#include "memory/memory_methods.h"

#include <boost/make_shared.hpp>

#include <utility>

namespace {

ZoValue call(const boost::shared_ptr<ZoProxy>& proxy, const char* method, const ZoValue& arguments)
{
    if (!proxy)
        throw ZoError(std::string(method) + ": there is no memory module behind the proxy");
    return proxy->call(method, arguments);
}

ZoValue pairOf(const std::string& key, const ZoValue& value)
{
    ZoValue pair;
    pair.arraySetSize(2);
    pair[0] = key;
    pair[1] = value;
    return pair;
}

/// Of the reply to getDataListName.
std::vector<std::string> textsIn(ZoValue reply)
{
    if (reply.getType() != ZoValue::Array)
        throw ZoError(std::string(zo::getDataListNameMethod) + ": the reply is no array");
    std::vector<std::string> names;
    names.reserve(static_cast<std::size_t>(reply.getSize()));
    for (int i = 0; i < reply.getSize(); ++i)
        names.push_back(std::move(static_cast<std::string&>(reply[i])));
    return names;
}

} // namespace

ZoMemoryProxy::ZoMemoryProxy(boost::shared_ptr<ZoProxy> proxy)
    : fProxy(std::move(proxy)), fLastAnswers(boost::make_shared<zo::LastAnswers>(fMostRemembered))
{
}

ZoMemoryProxy::ZoMemoryProxy(const boost::shared_ptr<ZoBroker>& broker)
    : ZoMemoryProxy(broker ? broker->getLocalMemory() : nullptr)
{
}

std::vector<std::string> ZoMemoryProxy::getDataListName()
{
    return textsIn(call(fProxy, zo::getDataListNameMethod, ZoValue()));
}

std::vector<std::string> ZoMemoryProxy::getDataListName(const std::string& ending)
{
    return textsIn(call(fProxy, zo::getDataListNameMethod, ending));
}

ZoValue ZoMemoryProxy::getListData(const ZoValue& request)
{
    return call(fProxy, zo::getListDataMethod, request);
}

ZoListAnswer ZoMemoryProxy::getListAnswer(const ZoValue& request)
{
    ZoValue reply = call(fProxy, zo::getListAnswerMethod, request);
    const auto numberAt = [&reply](int i) {
        return i < reply.getSize() ? std::get_if<std::int64_t>(&reply[i].data()) : nullptr;
    };
    const std::int64_t* const arrived = numberAt(1);
    const std::int64_t* const tooLarge = numberAt(2); // which a module may leave out
    const bool isWhole = reply.getSize() == 2 || (reply.getSize() == 3 && tooLarge);
    if (!arrived || !isWhole || reply[0].getType() != ZoValue::Array)
        throw ZoError(std::string(zo::getListAnswerMethod) + ": the reply is not [values, time]");
    ZoListAnswer answer;
    if (tooLarge)
        answer.tooLarge = static_cast<int>(*tooLarge);
    answer.arrived += std::chrono::nanoseconds(*arrived);
    answer.values = std::move(reply[0]);
    answer.changed = fLastAnswers->changed(request, answer.values);
    return answer;
}

void ZoMemoryProxy::setData(const std::string& key, const ZoValue& value)
{
    call(fProxy, zo::setDataMethod, pairOf(key, value));
}

ZoValue ZoMemoryProxy::exchangeData(const std::string& key, const ZoValue& value)
{
    return call(fProxy, zo::exchangeDataMethod, pairOf(key, value));
}

void ZoMemoryProxy::setListData(const ZoValue& pairs)
{
    call(fProxy, zo::setListDataMethod, pairs);
}

void ZoMemoryProxy::setText(const std::string& key, const std::string& text)
{
    call(fProxy, zo::setTextMethod, pairOf(key, text));
}
