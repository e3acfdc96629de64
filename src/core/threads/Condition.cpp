#include "core/threads/Condition.h"

namespace Lathe::System {

CCondition::CCondition() = default;

CCondition::~CCondition() {
    pthread_cond_destroy(&m_Condition);
    pthread_mutex_destroy(&m_Mutex);
}

void CCondition::Lock() {
    pthread_mutex_lock(&m_Mutex);
}

void CCondition::Unlock() {
    pthread_mutex_unlock(&m_Mutex);
}

bool CCondition::TryLock() {
    return pthread_mutex_trylock(&m_Mutex) == 0;
}

void CCondition::WakeOne() {
    pthread_cond_signal(&m_Condition);
}

void CCondition::WakeAll() {
    pthread_cond_broadcast(&m_Condition);
}

timespec CCondition::GetDeadline(int milliseconds) {
    constexpr long nanosecondsPerSecond = 1'000'000'000;
    timespec deadline{};
    clock_gettime(CLOCK_REALTIME, &deadline);
    deadline.tv_sec += milliseconds / 1000;
    deadline.tv_nsec += milliseconds % 1000 * 1'000'000L;
    if (deadline.tv_nsec >= nanosecondsPerSecond) {
        deadline.tv_nsec -= nanosecondsPerSecond;
        ++deadline.tv_sec;
    }
    return deadline;
}

} // namespace Lathe::System
