// Timers whose commands run on another thread than the one that keeps the time.
#pragma once

#include "core/threads/CriticalSection.h"
#include "core/threads/TimerProvider.h"

#include <memory>
#include <unordered_map>

namespace Lathe::System {

class IThreadInvoker;

// Each tick is posted to the invoker. While one waits there, up to 16 further ticks of the timer
// are lost, so that a slow thread is not flooded; the 17th is posted all the same.
class CTimerWithThreadSynchronization : public ITimerProvider {
public:
    // Neither is owned. Ticks that the invoker still holds may outlive this; they do nothing then.
    CTimerWithThreadSynchronization(ITimerProvider* timerProvider, IThreadInvoker* invoker);
    ~CTimerWithThreadSynchronization() override;
    CTimerWithThreadSynchronization(const CTimerWithThreadSynchronization&) = delete;
    CTimerWithThreadSynchronization& operator=(const CTimerWithThreadSynchronization&) = delete;

    // Null is ignored.
    void AddTimer(int milliseconds, Core::ICommand* command) override;
    // A tick that is posted already does nothing any more. Waits for the command when it is
    // running on another thread than the caller's.
    void RemoveTimer(Core::ICommand* command, bool destroy) override;

private:
    class CRuns;
    class CThreadSyncCommandAdapter;
    class CTick;
    using AdapterPtr = std::shared_ptr<CThreadSyncCommandAdapter>;

    // Null when there is none. What is posted of it does nothing from now on.
    AdapterPtr TakeAdapter(Core::ICommand* command);
    // With no lock in hand, since it may wait for the command.
    void Remove(Core::ICommand* command);

    ITimerProvider* m_TimerProvider;
    IThreadInvoker* m_Invoker;
    std::unordered_map<Core::ICommand*, AdapterPtr> m_Adapters;
    std::shared_ptr<CRuns> m_Runs;
    CCriticalSection m_Lock;
};

} // namespace Lathe::System
