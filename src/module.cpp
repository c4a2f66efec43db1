#include "module.h"

#include "gc_interface.h"

#include <zo/error.h>
#include <zo/memory_proxy.h>

#include <boost/make_shared.hpp>

#include <algorithm>
#include <iostream>
#include <utility>

namespace {

std::vector<std::string> namesToRead(const Model& model, bool all)
{
    std::vector<std::string> names;
    const ZoCriticalSectionRead guard(model.fMutex);
    for (const auto& record : model.fSTMVals) {
        if (all || record->watch)
            names.push_back(record->names.first);
    }
    return names;
}

ZoValue requestFor(const std::vector<std::string>& names)
{
    ZoValue request;
    request.arraySetSize(static_cast<int>(names.size()));
    for (int i = 0; i < request.getSize(); ++i) {
        request[i].arraySetSize(2);
        request[i][0] = ZoValue(names[static_cast<std::size_t>(i)]);
        request[i][1] = 0;
    }
    return request;
}

STMVal* firstWithAlias(const Model& model, const std::string& alias)
{
    const auto& records = model.fSTMVals;
    const auto found = std::find_if(records.begin(), records.end(), [&](const auto& record) {
        return record->names.second == alias;
    });
    return found == records.end() ? nullptr : found->get();
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
    const std::vector<std::string> names = namesToRead(*fModel, all);
    if (names.empty())
        return;
    ZoValue request = requestFor(names);
    ZoValue reply;
    try {
        reply = fMemoryProxy->getListData(request);
    } catch (const ZoError&) {
        return; // the next fetch tries again; the link's state is shown elsewhere
    }
    if (request.getSize() != reply.getSize())
        return;
    for (int i = 0; i < reply.getSize(); ++i)
        fModel->refreshSTMVal(request[i][0].asString(), reply[i]);
    fGCInterface->refreshTree();
}

void Module::getListDatas(std::vector<std::string>& keys)
{
    try {
        const ZoValue list(fMemoryProxy->getDataListName());
        for (int i = 0; i < list.getSize(); ++i)
            keys.push_back(list[i].asString());
    } catch (const ZoError& error) {
        std::cerr << error.toString() << std::endl;
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
    const ZoCriticalSectionWrite guard(fModel->fMutex);
    STMVal* record = firstWithAlias(*fModel, alias);
    if (!record)
        return false;
    record->graph = graph;
    if (graph)
        record->watch = true;
    return true;
}

bool Module::watchStmVal(const std::string& alias, bool watch)
{
    const ZoCriticalSectionWrite guard(fModel->fMutex);
    STMVal* record = firstWithAlias(*fModel, alias);
    if (!record)
        return false;
    record->watch = watch;
    if (!watch)
        record->graph = false;
    return true;
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
