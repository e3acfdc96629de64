#include "core/threads/CriticalSection.h"

#include "core/RealtimePermission.h"

namespace Lathe::System {

CCriticalSection::CCriticalSection() {
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    pthread_mutexattr_setprotocol(&attributes, PTHREAD_PRIO_INHERIT);
    pthread_mutex_init(&m_Mutex, &attributes);
    pthread_mutexattr_destroy(&attributes);
}

CCriticalSection::~CCriticalSection() {
    pthread_mutex_destroy(&m_Mutex);
}

void CCriticalSection::Lock() {
    pthread_mutex_lock(&m_Mutex);
}

void CCriticalSection::Unlock() {
    pthread_mutex_unlock(&m_Mutex);
}

bool CCriticalSection::TryLock() {
    return pthread_mutex_trylock(&m_Mutex) == 0;
}

CRealtimeAutoLock::CRealtimeAutoLock(Core::ILock* lock) : m_Lock(lock) {
    const Core::CRealtimePermission permission;
    if (m_Lock)
        m_Lock->Lock();
}

CRealtimeAutoLock::~CRealtimeAutoLock() {
    const Core::CRealtimePermission permission;
    if (m_Lock)
        m_Lock->Unlock();
}

} // namespace Lathe::System
