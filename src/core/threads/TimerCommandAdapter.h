// Calls gathered up to the next tick of a timer: however many there are, the command runs once.
#pragma once

#include "core/RefreshTime.h"
#include "core/events/Command.h"
#include "core/ownership/Ownership.h"

#include <atomic>

namespace Lathe::System {

class ITimerProvider;

// Any thread may execute it; the command runs on the timer's thread.
class CTimerCommandAdapter : public Core::ICommand, public Core::IRefreshTime {
public:
    // Ticks every 50 ms from now on. The provider is not owned.
    CTimerCommandAdapter(ITimerProvider* provider, Core::ICommand* command, bool owned);
    ~CTimerCommandAdapter() override;
    CTimerCommandAdapter(const CTimerCommandAdapter&) = delete;
    CTimerCommandAdapter& operator=(const CTimerCommandAdapter&) = delete;

    // Asks for the command at the next tick.
    void Execute() override;

    void SetRefreshTime(int milliseconds) override;
    int GetRefreshTime() const override { return m_Period; }

    // Switched off, it keeps what is asked for until it is switched on.
    void SetEnabled(bool enabled) { m_Enabled.store(enabled, std::memory_order_relaxed); }
    bool GetEnabled() const { return m_Enabled.load(std::memory_order_relaxed); }

private:
    void OnTimer();
    void AddTimer();

    std::atomic<bool> m_Pending{false};
    ITimerProvider* m_Provider;
    Core::TOwnership<Core::ICommand> m_Command;
    // Owned; the provider destroys it.
    Core::ICommand* m_TimerCommand = nullptr;
    std::atomic<bool> m_Enabled{true};
    int m_Period = 50; // ms
};

} // namespace Lathe::System
