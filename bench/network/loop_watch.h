// SPDX-License-Identifier: MIT
#pragma once

#include "network/samples.h"

#include <QApplication>

#include <chrono>

/// Watches how long a window's thread is busy at a stretch: events that it handles without a pause
/// between them make a user wait as one does.
class LoopWatch
{
public:
    using Clock = std::chrono::steady_clock;

    /// An event begins and ends to be handled.
    void begin(Clock::time_point now);
    void end(Clock::time_point now);
    /// So long the event under way has been in getListData.
    void called(Clock::duration time) { fInCalls += time; }

    void clear();

    Samples stretches; ///< whole ones
    Samples own;       ///< the same without what was spent in getListData

private:
    void close();

    Clock::time_point fBegin;
    Clock::time_point fEnd;
    Clock::duration fInCalls{0};
    bool fIsOpen = false;
};

/// The application whose events are watched.
class WatchedApplication : public QApplication
{
public:
    using QApplication::QApplication;

    bool notify(QObject* receiver, QEvent* event) override;

    LoopWatch watch;

private:
    int fDepth = 0; ///< events that are sent while one is handled
};
