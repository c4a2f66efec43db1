// SPDX-License-Identifier: MIT
#pragma once

#include "support/watched_thread.h"

#include <atomic>
#include <thread>
#include <vector>

/// Runs `work(0)`, `work(1)`, ... in so many threads, none of which begins before all are there,
/// and returns when all have ended. Throws what one of them threw.
template <class Work>
void runTogether(int count, Work work)
{
    std::atomic<int> missing{count};
    std::vector<WatchedThread> threads;
    threads.reserve(count);
    for (int i = 0; i < count; ++i) {
        threads.emplace_back([&missing, &work, i] {
            --missing;
            while (missing > 0)
                std::this_thread::yield(); // one that sleeps would come too late
            work(i);
        });
    }
    for (WatchedThread& thread : threads)
        thread.join();
}
