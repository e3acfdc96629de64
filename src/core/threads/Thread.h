// A system thread that runs a procedure.
#pragma once

#include "core/threads/CriticalSection.h"

#include <pthread.h>

namespace Lathe::System {

// Its destruction doesn't end the system thread, and doesn't wait for it: join first where the
// procedure uses what is about to go.
class CThread {
public:
    using Procedure = void (*)(void*);

    // The context stays the caller's. Without a procedure or a context, the thread ends at once.
    CThread(Procedure procedure, void* context, bool startNow);
    CThread(const CThread&) = delete;
    CThread& operator=(const CThread&) = delete;

    // On failure there is no handle. A system thread of an earlier start that nobody has joined
    // goes on by itself.
    virtual void Start();
    // The system thread ends where it next waits. Nothing once a join has begun.
    virtual void Cancel();
    virtual bool IsCurrent();
    // Waits for the end of the thread when the time is -1; returns at once with any other time, on
    // the thread itself, when it doesn't run, and when somebody else is joining it.
    virtual void Join(int milliseconds);
    // 0 before the start and after a join.
    virtual pthread_t GetHandle();
    virtual ~CThread();

private:
    static void* Run(void* start);
    // Under the lock.
    void Detach();

    pthread_t m_Handle = 0;
    void* m_Context;
    Procedure m_Procedure;
    CCriticalSection m_Lock;
    // The handle waits to be joined or detached.
    bool m_Joinable = false;
};

} // namespace Lathe::System
