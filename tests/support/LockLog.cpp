#include "support/LockLog.h"

#include <pthread.h>

#include <algorithm>
#include <cstddef>

static thread_local CLockScope* t_Scope = nullptr;

CLockScope::CLockScope() {
    t_Scope = this;
}

CLockScope::~CLockScope() {
    t_Scope = nullptr;
}

void CLockScope::Note(const void* lock) {
    if (t_Scope)
        t_Scope->Add(lock);
}

void CLockScope::Add(const void* lock) {
    if (!Contains(lock) && m_Count < static_cast<int>(m_Locks.size()))
        m_Locks[static_cast<std::size_t>(m_Count++)] = lock;
}

bool CLockScope::Contains(const void* lock) const {
    return std::find(m_Locks.begin(), m_Locks.begin() + m_Count, lock) != m_Locks.begin() + m_Count;
}

bool CLockScope::IsWithin(const CLockScope& other) const {
    return m_Count < static_cast<int>(m_Locks.size()) &&
           std::all_of(m_Locks.begin(), m_Locks.begin() + m_Count,
                       [&](const void* lock) { return other.Contains(lock); });
}

// The linker leads every call of pthread_mutex_lock here, and __real_ to the system's or the
// sanitizer's.
// NOLINTBEGIN(bugprone-reserved-identifier): the linker gives the names.
extern "C" {
int __real_pthread_mutex_lock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex);
int __wrap_pthread_mutex_lock(pthread_mutex_t* mutex) {
    CLockScope::Note(mutex);
    return __real_pthread_mutex_lock(mutex);
}
}
// NOLINTEND(bugprone-reserved-identifier)
