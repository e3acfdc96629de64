// Many commands on one timer of another provider, so that few system timers are needed.
#pragma once

#include "core/Enable.h"
#include "core/events/Command.h"
#include "core/threads/TimerProvider.h"

#include <list>

namespace Lathe::System {

// For one thread at a time: the one on which the provider runs its commands. Periods are rounded up
// to multiples of 10 ms; the one timer ticks at their greatest common divisor. Changing that tick
// switches it off and on, and tells so.
class CTimerSerializer : public ITimerProvider, public Core::ICommand, public Core::IEnable {
public:
    // The provider is not owned; null keeps the timers without running them.
    explicit CTimerSerializer(ITimerProvider* provider) : m_Provider(provider) {}
    ~CTimerSerializer() override;
    CTimerSerializer(const CTimerSerializer&) = delete;
    CTimerSerializer& operator=(const CTimerSerializer&) = delete;

    // A running command may add and remove any command; one that it adds waits for the next tick.
    void AddTimer(int milliseconds, Core::ICommand* command) override;
    void RemoveTimer(Core::ICommand* command, bool destroy) override;

    // One tick.
    void Execute() override;

    bool GetEnabled() const override { return m_Enabled; }
    Core::IEventProvider& GetEnabledChangedEvent() const override { return m_EnabledChanged; }
    void SetEnabled(bool enabled) override;

    // All timers begin their periods anew.
    void Restart();
    void SetProvider(ITimerProvider* provider);
    // In milliseconds; -1 without timers.
    int GetTick() const { return m_Tick; }

private:
    struct SEntry {
        Core::ICommand* m_Command;
        int m_Elapsed;
        int m_Period;
        // No tick has begun since it was added.
        bool m_New;
    };
    using Entries = std::list<SEntry>;

    Entries::iterator Find(Core::ICommand* command);
    void Erase(Entries::iterator entry);
    // Takes over what the periods give, and restarts the provider's timer if that has changed.
    void UpdateTick();
    void LeaveProvider();

    Entries m_Entries;
    // The entry that the tick in progress comes to next.
    Entries::iterator m_Next = m_Entries.end();
    int m_Tick = -1;
    ITimerProvider* m_Provider;
    bool m_Enabled = true;
    mutable Core::CEventProvider m_EnabledChanged;
};

} // namespace Lathe::System
