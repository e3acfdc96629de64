// Time and threads in the hand of a test: a timer provider whose time it advances, and an invoker
// whose queue it runs.
#pragma once

#include "core/events/Command.h"
#include "core/ownership/Ownership.h"
#include "core/threads/ThreadInvoker.h"
#include "core/threads/TimerProvider.h"

#include <algorithm>
#include <deque>
#include <mutex>
#include <utility>
#include <vector>

// For one thread. A command that runs may add and remove any command, itself too.
class CManualTimerProvider : public Lathe::System::ITimerProvider {
public:
    void AddTimer(int milliseconds, Lathe::Core::ICommand* command) override {
        Erase(command);
        m_Timers.push_back({command, milliseconds, 0, ++m_LastId});
    }
    void RemoveTimer(Lathe::Core::ICommand* command, bool destroy) override {
        Erase(command);
        if (destroy)
            delete command;
    }

    // Lets the time pass in steps of a millisecond.
    void Advance(int milliseconds) {
        for (int i = 0; i < milliseconds; ++i)
            RunEach([](STimer& timer) { return ++timer.m_Elapsed >= timer.m_Period; });
    }
    // Runs each timer once, as if it had just fallen due.
    void Fire() {
        RunEach([](STimer&) { return true; });
    }

    int GetCount() const { return static_cast<int>(m_Timers.size()); }
    // In milliseconds; -1 for a command that has no timer.
    int GetPeriod(const Lathe::Core::ICommand* command) const {
        for (const STimer& timer : m_Timers)
            if (timer.m_Command == command)
                return timer.m_Period;
        return -1;
    }

private:
    struct STimer {
        Lathe::Core::ICommand* m_Command;
        int m_Period, m_Elapsed, m_Id;
    };

    void Erase(const Lathe::Core::ICommand* command) {
        std::erase_if(m_Timers, [&](const STimer& timer) { return timer.m_Command == command; });
    }
    // By number: a command may have gone, and another come in its place.
    template <class TIsDue>
    void RunEach(TIsDue isDue) {
        const std::vector<STimer> present = m_Timers;
        for (const STimer& wanted : present) {
            const auto timer =
                std::find_if(m_Timers.begin(), m_Timers.end(),
                             [&](const STimer& other) { return other.m_Id == wanted.m_Id; });
            if (timer == m_Timers.end() || !isDue(*timer))
                continue;
            timer->m_Elapsed = 0;
            timer->m_Command->Execute();
        }
    }

    std::vector<STimer> m_Timers;
    int m_LastId = 0;
};

// Any thread may post; one thread runs. Invoke runs at once, on the caller's thread.
class CQueueInvoker : public Lathe::System::IThreadInvoker {
public:
    void Invoke(Lathe::Core::ICommand* command, bool owned) override {
        const Message message(command, owned);
        ++m_Invoked;
        if (command)
            command->Execute();
    }
    void Post(Lathe::Core::ICommand* command, bool owned) override {
        const std::lock_guard lock(m_Mutex);
        m_Queue.emplace_back(command, owned);
        ++m_Posted;
    }

    // Runs what waits, and what that posts; tells how many ran.
    int RunAll() {
        int count = 0;
        for (Message message; Take(message); ++count)
            if (message)
                message->Execute();
        return count;
    }
    int GetWaiting() const {
        const std::lock_guard lock(m_Mutex);
        return static_cast<int>(m_Queue.size());
    }
    int GetPosted() const {
        const std::lock_guard lock(m_Mutex);
        return m_Posted;
    }
    int GetInvoked() const { return m_Invoked; }

private:
    using Message = Lathe::Core::TOwnership<Lathe::Core::ICommand>;

    bool Take(Message& message) {
        const std::lock_guard lock(m_Mutex);
        if (m_Queue.empty())
            return false;
        message = std::move(m_Queue.front());
        m_Queue.pop_front();
        return true;
    }

    mutable std::mutex m_Mutex;
    std::deque<Message> m_Queue;
    int m_Posted = 0, m_Invoked = 0;
};
