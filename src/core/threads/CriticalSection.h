// The lock of everything that threads share: recursive, and lending its holder the priority of
// whoever waits for it.
#pragma once

#include "core/Lock.h"
#include "core/Realtime.h"

#include <pthread.h>

namespace Lathe::System {

class CCriticalSection : public Core::ILock {
public:
    CCriticalSection();
    ~CCriticalSection() override;
    CCriticalSection(const CCriticalSection&) = delete;
    CCriticalSection& operator=(const CCriticalSection&) = delete;

    void Lock() override;
    void Unlock() override;
    bool TryLock() LATHE_REALTIME override;

private:
    pthread_mutex_t m_Mutex;
};

// A scope that takes a lock on the audio thread. Only for locks that their other holders keep for
// no more than a handful of assignments, so that the wait is bounded.
class CRealtimeAutoLock {
public:
    explicit CRealtimeAutoLock(Core::ILock& lock) LATHE_REALTIME : CRealtimeAutoLock(&lock) {}
    // Null takes nothing.
    explicit CRealtimeAutoLock(Core::ILock* lock) LATHE_REALTIME;
    ~CRealtimeAutoLock();
    CRealtimeAutoLock(const CRealtimeAutoLock&) = delete;
    CRealtimeAutoLock& operator=(const CRealtimeAutoLock&) = delete;

private:
    Core::ILock* m_Lock;
};

} // namespace Lathe::System
