#include "core/threads/MessageLoop.h"

#include <algorithm>
#include <limits>

namespace Lathe::System {

CMessageLoop::CMessageLoop()
    : m_Thread(new Core::TCommand<CMessageLoop>(*this, &CMessageLoop::Run), true, false),
      m_TimerSerializer(this) {}

CMessageLoop::~CMessageLoop() {
    CMessageLoop::Stop();
    // While all else is there: what goes with them may remove timers, and post.
    while (!m_Messages.empty())
        m_Messages.pop_front();
}

void CMessageLoop::Start() {
    if (IsLoopThread())
        return;
    const Core::CAutoLock lock(m_ControlLock);
    if (IsRunning())
        return;
    m_Thread.Join(-1); // A loop that stopped itself may still be ending.
    // Not when the loop ends: one that is stopped by its first command could have ended before the
    // wait below.
    m_StartedEvent.Reset();
    m_Running.store(true, std::memory_order_relaxed);
    m_Wake.Signal(); // For what was left when it stopped.
    m_Thread.Start();
    if (m_Thread.GetHandle() != 0)
        m_StartedEvent.Wait(-1);
    else
        m_Running.store(false, std::memory_order_relaxed);
}

void CMessageLoop::Stop() {
    if (IsLoopThread()) {
        m_Running.store(false, std::memory_order_relaxed);
        return;
    }
    const Core::CAutoLock lock(m_ControlLock);
    m_Running.store(false, std::memory_order_relaxed);
    m_Wake.Signal();
    m_Thread.Join(-1);
}

void CMessageLoop::Invoke(Core::ICommand* command, bool owned) {
    Core::TOwnership<Core::ICommand> invoked(command, owned);
    if (!command)
        return;
    if (IsLoopThread())
        return command->Execute();
    CEvent done;
    {
        // Where this sees the thread, the thread sees the message, at the latest as it leaves.
        const Core::CAutoLock lock(m_MessagesLock);
        if (!m_Started.load(std::memory_order_relaxed))
            return;
        m_Messages.push_back({std::move(invoked), &done});
    }
    m_Wake.Signal();
    done.Wait(-1);
}

void CMessageLoop::Post(Core::ICommand* command, bool owned) {
    if (!command)
        return;
    {
        const Core::CAutoLock lock(m_MessagesLock);
        m_Messages.push_back({Core::TOwnership<Core::ICommand>(command, owned), nullptr});
    }
    m_Wake.Signal();
}

void CMessageLoop::AddTimer(int milliseconds, Core::ICommand* command) {
    if (!command)
        return;
    {
        const Core::CAutoLock lock(m_TimersLock);
        TimerPtr& timer = m_Timers[command];
        if (timer)
            m_DueTimers.remove(timer);
        else
            timer = std::make_shared<STimer>();
        timer->m_Command = command;
        timer->m_Period = timer->m_Watch.MillisecondsToTicks(milliseconds);
        timer->m_Watch.Start();
    }
    m_Wake.Signal();
}

void CMessageLoop::RemoveTimer(Core::ICommand* command, bool destroy) {
    TimerPtr running;
    {
        const Core::CAutoLock lock(m_TimersLock);
        const auto timer = m_Timers.find(command);
        if (timer != m_Timers.end()) {
            m_DueTimers.remove(timer->second);
            m_Timers.erase(timer);
        }
        // Also one that was removed, or was added anew, since it began to run.
        if (m_RunningTimer && m_RunningTimer->m_Command == command)
            running = m_RunningTimer;
    }
    if (running) {
        const Core::CAutoLock lock(running->m_Lock);
        running->m_Removed = true;
    }
    if (destroy)
        delete command;
}

bool CMessageLoop::IsLoopThread() const {
    return m_ThreadId.load(std::memory_order_relaxed) == pthread_self();
}

void CMessageLoop::Run() {
    m_ThreadId.store(pthread_self(), std::memory_order_relaxed);
    m_Started.store(true, std::memory_order_relaxed);
    m_StartedEvent.Set();
    while (true) {
        m_Wake.Wait(m_WaitTime);
        while (IsRunning() && RunMessageAndTimer()) {
        }
        if (!IsRunning())
            break;
        FindDueTimers();
    }
    Leave();
}

bool CMessageLoop::RunMessageAndTimer() {
    const bool message = RunMessage();
    if (message)
        FindDueTimers(); // Before the next message: the queue may never be empty.
    const bool timer = RunDueTimer();
    return message || timer;
}

bool CMessageLoop::RunMessage() {
    Messages taken;
    {
        const Core::CAutoLock lock(m_MessagesLock);
        if (m_Messages.empty())
            return false;
        taken.splice(taken.begin(), m_Messages, m_Messages.begin());
    }
    taken.front().m_Command->Execute();
    FinishFirst(taken);
    return true;
}

// An owned command goes before the caller goes on: what goes with it may be the caller's.
void CMessageLoop::FinishFirst(Messages& messages) {
    CEvent* done = messages.front().m_Done;
    messages.pop_front();
    if (done)
        done->Set();
}

bool CMessageLoop::RunDueTimer() {
    const TimerPtr timer = TakeDueTimer();
    if (!timer)
        return false;
    {
        const Core::CAutoLock lock(timer->m_Lock);
        if (!timer->m_Removed)
            timer->m_Command->Execute(); // It may destroy itself.
    }
    const Core::CAutoLock lock(m_TimersLock);
    m_RunningTimer.reset();
    return true;
}

CMessageLoop::TimerPtr CMessageLoop::TakeDueTimer() {
    const Core::CAutoLock lock(m_TimersLock);
    if (m_DueTimers.empty())
        return nullptr;
    m_RunningTimer = m_DueTimers.front();
    m_DueTimers.pop_front();
    m_RunningTimer->m_Watch.Start();
    return m_RunningTimer;
}

void CMessageLoop::FindDueTimers() {
    const Core::CAutoLock lock(m_TimersLock);
    if (!m_DueTimers.empty())
        return; // These first.
    CPreciseCPUWatch scan;
    scan.Start();
    std::uint64_t next = std::numeric_limits<std::uint64_t>::max();
    for (const auto& [command, timer] : m_Timers) {
        const std::uint64_t elapsed = timer->m_Watch.GetElapsedTicks();
        std::uint64_t remaining = 0;
        if (elapsed < timer->m_Period) {
            remaining = timer->m_Period - elapsed;
        } else {
            timer->m_Watch.Start();
            m_DueTimers.push_back(timer);
        }
        next = std::min(next, scan.GetElapsedTicks() + remaining);
    }
    if (m_Timers.empty())
        m_WaitTime = -1;
    else
        m_WaitTime = GetWaitTime(next - std::min(next, scan.GetElapsedTicks()));
}

// In milliseconds, rounded up: rounded down, the loop would be awake for the last of them.
int CMessageLoop::GetWaitTime(std::uint64_t ticks) const {
    if (!m_DueTimers.empty())
        return 0;
    const CPreciseCPUWatch watch;
    const std::uint64_t milliseconds =
        watch.TicksToMilliseconds(ticks + watch.MillisecondsToTicks(1) - 1);
    constexpr auto limit = static_cast<std::uint64_t>(std::numeric_limits<int>::max());
    return static_cast<int>(std::min(milliseconds, limit));
}

// Posted messages stay for the next start; who waits for an invoked one is let go.
void CMessageLoop::Leave() {
    Messages invoked;
    {
        const Core::CAutoLock lock(m_MessagesLock);
        for (auto message = m_Messages.begin(); message != m_Messages.end();) {
            const auto next = std::next(message);
            if (message->m_Done)
                invoked.splice(invoked.end(), m_Messages, message);
            message = next;
        }
        m_Started.store(false, std::memory_order_relaxed);
    }
    while (!invoked.empty())
        FinishFirst(invoked);
    m_ThreadId.store(0, std::memory_order_relaxed);
}

} // namespace Lathe::System
