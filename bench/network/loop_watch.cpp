// SPDX-License-Identifier: MIT
#include "network/loop_watch.h"

namespace {

// Less than this between two events is the loop's own work.
constexpr std::chrono::microseconds shortestPause{100};

} // namespace

void LoopWatch::begin(Clock::time_point now)
{
    if (fIsOpen && now - fEnd < shortestPause)
        return;
    close();
    fIsOpen = true;
    fBegin = now;
}

void LoopWatch::end(Clock::time_point now)
{
    fEnd = now;
}

void LoopWatch::close()
{
    if (fIsOpen) {
        stretches.add(fEnd - fBegin);
        own.add(fEnd - fBegin - fInCalls);
    }
    fIsOpen = false;
    fInCalls = {};
}

void LoopWatch::clear()
{
    close();
    stretches.clear();
    own.clear();
}

bool WatchedApplication::notify(QObject* receiver, QEvent* event)
{
    if (fDepth++ == 0)
        watch.begin(LoopWatch::Clock::now());
    const bool isHandled = QApplication::notify(receiver, event);
    if (--fDepth == 0)
        watch.end(LoopWatch::Clock::now());
    return isHandled;
}
