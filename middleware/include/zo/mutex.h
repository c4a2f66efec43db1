// SPDX-License-Identifier: MIT
#pragma once

#include <zo/export.h>

#include <boost/shared_ptr.hpp>

#include <cstdint>
#include <mutex>
#include <shared_mutex>

/// A plain lock. Not recursive: a thread that holds it must not take it again.
class ZO_EXPORT ZoMutex
{
public:
    static boost::shared_ptr<ZoMutex> createZoMutex();

    void lock();
    void unlock();

private:
    std::mutex fMutex;
};

/// A reader/writer lock: any number of readers, or one writer. Not recursive.
class ZO_EXPORT ZoMutexRW
{
public:
    static boost::shared_ptr<ZoMutexRW> createZoMutexRW();

    void lockRead();
    void unlockRead();
    void lockWrite();
    void unlockWrite();

    /// How many times it has been locked for writing so far. Only for a thread that holds the
    /// lock: it tells who lets go of it for a while whether others wrote meanwhile.
    std::uint64_t writeCount() const noexcept { return fWriteCount; }

private:
    std::shared_mutex fMutex;
    std::uint64_t fWriteCount = 0;
};

/// Holds a ZoMutex from its construction to its destruction, and keeps the lock alive meanwhile.
class ZO_EXPORT ZoCriticalSection
{
public:
    explicit ZoCriticalSection(boost::shared_ptr<ZoMutex> mutex);
    ~ZoCriticalSection();
    ZoCriticalSection(const ZoCriticalSection&) = delete;
    ZoCriticalSection& operator=(const ZoCriticalSection&) = delete;

private:
    boost::shared_ptr<ZoMutex> fMutex;
};

/// Holds a ZoMutexRW for reading from its construction to its destruction.
class ZO_EXPORT ZoCriticalSectionRead
{
public:
    explicit ZoCriticalSectionRead(boost::shared_ptr<ZoMutexRW> mutex);
    ~ZoCriticalSectionRead();
    ZoCriticalSectionRead(const ZoCriticalSectionRead&) = delete;
    ZoCriticalSectionRead& operator=(const ZoCriticalSectionRead&) = delete;

private:
    boost::shared_ptr<ZoMutexRW> fMutex;
};

/// Holds a ZoMutexRW for writing from its construction to its destruction.
class ZO_EXPORT ZoCriticalSectionWrite
{
public:
    explicit ZoCriticalSectionWrite(boost::shared_ptr<ZoMutexRW> mutex);
    ~ZoCriticalSectionWrite();
    ZoCriticalSectionWrite(const ZoCriticalSectionWrite&) = delete;
    ZoCriticalSectionWrite& operator=(const ZoCriticalSectionWrite&) = delete;

private:
    boost::shared_ptr<ZoMutexRW> fMutex;
};
