// SPDX-License-Identifier: MIT
#include "module.h"

#include "gc_interface.h"

#include <zo/error.h>
#include <zo/memory_proxy.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iostream>
#include <utility>

namespace {

using Records = RecordFinder::Records;

std::size_t countToRead(const Records& records, bool all)
{
    if (all)
        return records.size();
    const auto watched = [](const auto& record) { return record->watch; };
    return static_cast<std::size_t>(std::count_if(records.begin(), records.end(), watched));
}

/// Makes `element` ask for the key `name`, without a write when it does already.
void askFor(const std::string& name, ZoValue& element)
{
    if (element.getSize() != 2) {
        element.arraySetSize(2);
        element[1] = 0;
    }
    ZoValue& key = element[0];
    if (key.getType() != ZoValue::String || key.asString() != name)
        key = name;
}

STMVal* firstWithAlias(const Model& model, const std::string& alias)
{
    const auto& records = model.fSTMVals;
    const auto found = std::find_if(records.begin(), records.end(), [&](const auto& record) {
        return record->names.second == alias;
    });
    return found == records.end() ? nullptr : found->get();
}

void setGraph(STMVal& record, bool graph)
{
    record.graph = graph;
    if (graph)
        record.watch = true; // what is plotted is always read
}

void setWatch(STMVal& record, bool watch)
{
    record.watch = watch;
    if (!watch)
        record.graph = false; // what is not read cannot be plotted
}

using SetFlag = void (*)(STMVal&, bool);

bool setFirst(Model& model, const std::string& alias, SetFlag set, bool flag)
{
    const ZoCriticalSectionWrite guard(model.fMutex);
    STMVal* record = firstWithAlias(model, alias);
    if (record)
        set(*record, flag);
    return record != nullptr;
}

std::size_t setFirstOfEach(Model& model, const std::vector<std::string>& aliases, SetFlag set,
                           bool flag)
{
    std::size_t found = 0;
    AliasFinder byAlias;
    const ZoCriticalSectionWrite guard(model.fMutex);
    for (const std::string& alias : aliases) {
        if (STMVal* record = byAlias.find(model.fSTMVals, alias)) {
            set(*record, flag);
            ++found;
        }
    }
    return found;
}

} // namespace

Module::Module(boost::shared_ptr<ZoMemoryProxy> proxy)
    : fModel(boost::make_shared<Model>()),
      fGCInterface(nullptr),
      fMutex(ZoMutex::createZoMutex()),
      fMemoryProxy(std::move(proxy))
{
}

Module::~Module() = default;

void Module::getDatas(bool all)
{
    const ZoCriticalSection guard(fMutex);
    xGatherRequest(all);
    if (fRequest.getSize() == 0)
        return;
    ZoValue reply;
    try {
        reply = fMemoryProxy->getListData(fRequest);
    } catch (const ZoError&) {
        return; // the next fetch tries again; the link's state is shown elsewhere
    }
    if (fRequest.getSize() != reply.getSize())
        return;
    fModel->refreshSTMVals(fRequest, reply, fByKey);
    fGCInterface->refreshTree();
}

/// Reads the keys under the model's lock, and lets go of it before the robot is asked.
void Module::xGatherRequest(bool all)
{
    const ZoCriticalSectionRead guard(fModel->fMutex);
    const Records& records = fModel->fSTMVals;
    fRequest.arraySetSize(static_cast<int>(countToRead(records, all)));
    int i = 0;
    for (const auto& record : records) {
        if (all || record->watch)
            askFor(record->names.first, fRequest[i++]);
    }
}

void Module::getListDatas(std::vector<std::string>& keys)
{
    try {
        const ZoValue list(fMemoryProxy->getDataListName());
        for (int i = 0; i < list.getSize(); ++i)
            keys.push_back(list[i].asString());
    } catch (const ZoError& error) {
        std::cerr << error.toString() << '\n';
    }
}

void Module::changeSubscription(Model::SubscribeMode mode, int period)
{
    if (!fModel)
        return;
    fModel->fSubscribeMode = mode;
    if (mode == Model::SUBSCRIBE_EVERY)
        fModel->setTimePolicy(period);
}

bool Module::graphStmVal(const std::string& alias, bool graph)
{
    return setFirst(*fModel, alias, setGraph, graph);
}

bool Module::watchStmVal(const std::string& alias, bool watch)
{
    return setFirst(*fModel, alias, setWatch, watch);
}

std::size_t Module::graphStmVals(const std::vector<std::string>& aliases, bool graph)
{
    return setFirstOfEach(*fModel, aliases, setGraph, graph);
}

std::size_t Module::watchStmVals(const std::vector<std::string>& aliases, bool watch)
{
    return setFirstOfEach(*fModel, aliases, setWatch, watch);
}

void Module::addSTMVal(const std::string& name, const std::string& alias)
{
    fModel->addSTMVal(name, alias);
}

void Module::addSTMVal(boost::shared_ptr<STMVal> value)
{
    fModel->addSTMVal(std::move(value));
}

bool Module::innerTest()
{
    return true;
}
