// Time in the hand of a test: a timer provider whose time it advances. For one thread.
#pragma once

#include "core/events/Command.h"
#include "core/threads/TimerProvider.h"

#include <algorithm>
#include <cstdint>
#include <vector>

// A command that runs may add and remove any command, itself too.
class CManualTimerProvider : public Lathe::System::ITimerProvider {
public:
    void AddTimer(int milliseconds, Lathe::Core::ICommand* command) override {
        RemoveTimer(command, false);
        m_Timers.push_back({command, milliseconds, 0});
    }
    void RemoveTimer(Lathe::Core::ICommand* command, bool destroy) override {
        std::erase_if(m_Timers, [&](const STimer& timer) { return timer.m_Command == command; });
        if (destroy)
            delete command;
    }
    // Lets the time pass in steps of a millisecond.
    void Advance(int milliseconds) {
        for (; milliseconds > 0; --milliseconds) {
            s_Now += 1'000'000;
            for (const STimer& present : std::vector(m_Timers)) {
                const auto timer =
                    std::ranges::find(m_Timers, present.m_Command, &STimer::m_Command);
                if (timer == m_Timers.end() || ++timer->m_Elapsed < timer->m_Period)
                    continue;
                timer->m_Elapsed = 0;
                present.m_Command->Execute();
            }
        }
    }
    // Nanoseconds that have passed, for a stopwatch that goes with the timers.
    static std::uint64_t GetNow() { return s_Now; }
    int GetCount() const { return static_cast<int>(m_Timers.size()); }

private:
    struct STimer {
        Lathe::Core::ICommand* m_Command;
        int m_Period, m_Elapsed;
    };

    static inline std::uint64_t s_Now = 0;
    std::vector<STimer> m_Timers;
};
