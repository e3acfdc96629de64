// A thread that runs messages and timers, one at a time.
//
// Messages run in the order of posting. Between two messages one due timer runs, so that neither
// can starve the other. Between them the thread sleeps until the next timer.
//
// Locks: a timer's lock is held while its command runs, and whoever removes the timer meanwhile
// waits for that lock with no other lock of the loop in hand. So a command may add and remove any
// timer, itself too, while others remove it. m_TimersLock and m_MessagesLock are held for no
// command, and take no other lock; m_ControlLock is never taken on the loop's thread.
#pragma once

#include "core/ownership/Ownership.h"
#include "core/threads/CommandThread.h"
#include "core/threads/CriticalSection.h"
#include "core/threads/Event.h"
#include "core/threads/PreciseCPUWatch.h"
#include "core/threads/ThreadInvoker.h"
#include "core/threads/TimerProvider.h"
#include "core/threads/TimerSerializer.h"
#include "core/threads/WaitableEvent.h"

#include <atomic>
#include <cstdint>
#include <list>
#include <memory>
#include <unordered_map>

namespace Lathe::System {

class CMessageLoop : public IThreadInvoker, public ITimerProvider {
public:
    CMessageLoop();
    // Stops the loop and destroys, unexecuted, the owned commands that it didn't come to. Not from
    // the loop's thread.
    ~CMessageLoop() override;
    CMessageLoop(const CMessageLoop&) = delete;
    CMessageLoop& operator=(const CMessageLoop&) = delete;

    // Where the loop doesn't run, or stops before it comes to the command, this returns without
    // having run it, and no sooner than the command that is running at the stop has ended. On
    // return, an owned command has gone. Null is ignored.
    void Invoke(Core::ICommand* command, bool owned) override;
    // A command that the loop hasn't come to when it stops waits for the next start. Null is
    // ignored.
    void Post(Core::ICommand* command, bool owned) override;

    // Timers run only while the loop does. A period counts from when the command last began to
    // run; a command that takes longer runs again at once, and no ticks are saved up.
    void AddTimer(int milliseconds, Core::ICommand* command) override;
    // Waits for the command if it is running; not so from the command itself.
    void RemoveTimer(Core::ICommand* command, bool destroy) override;

    // One timer of this loop for many commands. For the loop's thread, or while it is stopped.
    CTimerSerializer& GetTimerSerializer() { return m_TimerSerializer; }

protected:
    // Returns with the thread running, or with nothing changed when there is none to be had.
    // Nothing when it runs already, and on the loop's thread.
    void Start();
    // Returns when the thread has ended; within a command of the loop at once, the thread then ends
    // behind that command. Nothing when it doesn't run. It can be started again.
    void Stop();

private:
    struct SMessage {
        Core::TOwnership<Core::ICommand> m_Command;
        // Null for a posted message.
        CEvent* m_Done;
    };
    struct STimer {
        CPreciseCPUWatch m_Watch;
        std::uint64_t m_Period; // In ticks; as the watch under m_TimersLock.
        Core::ICommand* m_Command;
        CCriticalSection m_Lock;
        bool m_Removed = false; // Under m_Lock.
    };
    using Messages = std::list<SMessage>;
    using TimerPtr = std::shared_ptr<STimer>;

    bool IsRunning() const { return m_Running.load(std::memory_order_relaxed); }
    bool IsLoopThread() const;

    void Run();
    // Each is false when there was nothing to run.
    bool RunMessageAndTimer();
    bool RunMessage();
    static void FinishFirst(Messages& messages);
    bool RunDueTimer();
    TimerPtr TakeDueTimer();
    void FindDueTimers();
    int GetWaitTime(std::uint64_t ticks) const;
    void Leave();

    CCriticalSection m_MessagesLock;
    Messages m_Messages;
    std::unordered_map<Core::ICommand*, TimerPtr> m_Timers;
    std::list<TimerPtr> m_DueTimers;
    // The timer whose turn it is, from before it is looked at until after its command has run.
    TimerPtr m_RunningTimer;
    CCriticalSection m_TimersLock;
    std::atomic<bool> m_Running{false};
    // The thread hasn't left yet. Cleared under m_MessagesLock.
    std::atomic<bool> m_Started{false};
    CWaitableEvent m_Wake;
    CEvent m_StartedEvent;
    CCommandThread m_Thread;
    int m_WaitTime = -1;
    CTimerSerializer m_TimerSerializer;
    std::atomic<pthread_t> m_ThreadId{0};
    // One start or stop from outside at a time.
    CCriticalSection m_ControlLock;
};

} // namespace Lathe::System
