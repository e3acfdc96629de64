// A timer with a thread of its own, whose commands run on another.
#pragma once

#include "core/Enable.h"
#include "core/threads/MTEventProvider.h"
#include "core/threads/MessageLoopThread.h"
#include "core/threads/TimerWithThreadSynchronization.h"

#include <atomic>

namespace Lathe::System {

// Switched off, it keeps its timers, and takes new ones; they run when it is switched on.
class CThreadedTimer : public ITimerProvider, public Core::IEnable {
public:
    // The commands run on the invoker's thread. The invoker is not owned.
    CThreadedTimer(IThreadInvoker* invoker, bool enabled);

    void AddTimer(int milliseconds, Core::ICommand* command) override;
    void RemoveTimer(Core::ICommand* command, bool destroy) override;

    bool GetEnabled() const override { return m_Enabled.load(std::memory_order_relaxed); }
    Core::IEventProvider& GetEnabledChangedEvent() const override { return m_EnabledChanged; }
    // By one thread at a time.
    void SetEnabled(bool enabled) override;

private:
    IThreadInvoker* m_Invoker;
    CMessageLoopThread m_Loop;
    CTimerWithThreadSynchronization m_Synchronizer;
    std::atomic<bool> m_Enabled;
    mutable CMTEventProvider m_EnabledChanged;
};

} // namespace Lathe::System
