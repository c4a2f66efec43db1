// SPDX-License-Identifier: MIT
#include <zo/mutex.h>

#include <boost/make_shared.hpp>

#include <utility>

boost::shared_ptr<ZoMutex> ZoMutex::createZoMutex()
{
    return boost::make_shared<ZoMutex>();
}

void ZoMutex::lock()
{
    fMutex.lock();
}

void ZoMutex::unlock()
{
    fMutex.unlock();
}

boost::shared_ptr<ZoMutexRW> ZoMutexRW::createZoMutexRW()
{
    return boost::make_shared<ZoMutexRW>();
}

void ZoMutexRW::lockRead()
{
    fMutex.lock_shared();
}

void ZoMutexRW::unlockRead()
{
    fMutex.unlock_shared();
}

void ZoMutexRW::lockWrite()
{
    fMutex.lock();
    ++fWriteCount;
}

void ZoMutexRW::unlockWrite()
{
    fMutex.unlock();
}

ZoCriticalSection::ZoCriticalSection(boost::shared_ptr<ZoMutex> mutex) : fMutex(std::move(mutex))
{
    fMutex->lock();
}

ZoCriticalSection::~ZoCriticalSection()
{
    fMutex->unlock();
}

ZoCriticalSectionRead::ZoCriticalSectionRead(boost::shared_ptr<ZoMutexRW> mutex)
    : fMutex(std::move(mutex))
{
    fMutex->lockRead();
}

ZoCriticalSectionRead::~ZoCriticalSectionRead()
{
    fMutex->unlockRead();
}

ZoCriticalSectionWrite::ZoCriticalSectionWrite(boost::shared_ptr<ZoMutexRW> mutex)
    : fMutex(std::move(mutex))
{
    fMutex->lockWrite();
}

ZoCriticalSectionWrite::~ZoCriticalSectionWrite()
{
    fMutex->unlockWrite();
}
