// SPDX-License-Identifier: MIT
#include "graph_clock.h"

#include <chrono>
#include <utility>

namespace {

qint64 steadyMilliseconds()
{
    using namespace std::chrono;
    return duration_cast<milliseconds>(steady_clock::now().time_since_epoch()).count();
}

} // namespace

GraphClock::GraphClock() : GraphClock(steadyMilliseconds) {}

GraphClock::GraphClock(Source source) : fSource(std::move(source)), fBase(fSource()) {}

qint64 GraphClock::elapsed() const
{
    return fSource() - fBase;
}

qint64 GraphClock::setBack()
{
    const qint64 beyond = elapsed() - (fLimit - fTurn);
    const qint64 turns = beyond / fTurn;
    if (turns <= 0)
        return 0;
    fBase += turns * fTurn;
    return turns * (fTurn / 1000);
}
