// SPDX-License-Identifier: MIT
#include "network/watched_panel.h"

#include "connection/connection_settings.h"

#include <QEventLoop>
#include <QTimer>

#include <utility>

namespace {

ZoBrokerOptions optionsFor(WatchedPanel::Reading reading)
{
    const ConnectionSettings settings;
    ZoBrokerOptions options = settings.brokerOptions();
    options.follow = reading == WatchedPanel::Reading::Followed;
    return options;
}

} // namespace

WatchedMemory::WatchedMemory(boost::shared_ptr<ZoProxy> memory, LoopWatch& loop)
    : fMemory(std::move(memory)), fLoop(loop)
{
}

ZoValue WatchedMemory::call(const std::string& method, const ZoValue& arguments)
{
    const auto begin = LoopWatch::Clock::now();
    const auto note = [&] {
        const auto time = LoopWatch::Clock::now() - begin;
        calls.add(time);
        fLoop.called(time);
    };
    try {
        ZoValue values = fMemory->call(method, arguments);
        note();
        ++answered;
        if (whenAnswered)
            whenAnswered(values);
        return values;
    } catch (const ZoError&) {
        note();
        throw;
    }
}

WatchedPanel::WatchedPanel(int port, Reading reading, int keys, int watched, LoopWatch& loop)
    : broker(ZoBroker::create("BenchNetwork", "127.0.0.1", port, optionsFor(reading))),
      memory(boost::make_shared<WatchedMemory>(broker->getProxy("ZoMemory", 0), loop)),
      panel(boost::make_shared<ZoMemoryProxy>(boost::shared_ptr<ZoProxy>(memory)))
{
    panel.dataTimer()->stop();
    std::vector<std::string> aliases;
    for (int key = 0; key < keys; ++key) {
        panel.add(Load::alias(key));
        if (key < watched)
            aliases.push_back(Load::alias(key));
    }
    panel.module->watchStmVals(aliases, true);
    panel.show();
}

std::optional<double> WatchedPanel::open()
{
    return longestCallIn(std::chrono::milliseconds(0), [this] { panel.module->getDatas(true); });
}

void WatchedPanel::pass(std::chrono::milliseconds time)
{
    QEventLoop loop;
    QTimer::singleShot(time, Qt::PreciseTimer, &loop, &QEventLoop::quit);
    loop.exec();
}
