// A condition variable with its plain mutex, on which the events wait.
#pragma once

#include "core/Lock.h"

#include <cerrno>
#include <ctime>

#include <pthread.h>

namespace Lathe::System {

// Its lock is not recursive. A waiting thread that is cancelled unwinds with the lock released.
class CCondition : public Core::ILock {
public:
    CCondition();
    ~CCondition() override;
    CCondition(const CCondition&) = delete;
    CCondition& operator=(const CCondition&) = delete;

    void Lock() override;
    void Unlock() override;
    bool TryLock() override;

    // Under the lock.
    void WakeOne();
    void WakeAll();
    // Under the lock: waits until isMet() is true, but no longer than the time, in milliseconds;
    // negative is without limit. True also when the time ran out, false when the wait failed.
    template <class TIsMet>
    bool Wait(int milliseconds, TIsMet isMet) {
        const timespec deadline = GetDeadline(milliseconds);
        while (!isMet()) {
            const int error = milliseconds < 0
                                  ? pthread_cond_wait(&m_Condition, &m_Mutex)
                                  : pthread_cond_timedwait(&m_Condition, &m_Mutex, &deadline);
            if (error != 0)
                return error == ETIMEDOUT;
        }
        return true;
    }

private:
    // On the wall clock: setting that clock while somebody waits moves the end of the wait.
    static timespec GetDeadline(int milliseconds);

    pthread_mutex_t m_Mutex = PTHREAD_MUTEX_INITIALIZER;
    pthread_cond_t m_Condition = PTHREAD_COND_INITIALIZER;
};

} // namespace Lathe::System
