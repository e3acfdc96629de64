// Posted commands that wait for a timer, and run together on its thread.
#pragma once

#include "core/events/Command.h"
#include "core/ownership/Ownership.h"
#include "core/threads/CriticalSection.h"
#include "core/threads/ThreadInvoker.h"

#include <atomic>
#include <list>

namespace Lathe::System {

class ITimerProvider;

// Starts, stops and changes of the period are for one thread at a time.
class CThreadInvokerSerializer : public IThreadInvoker, public Core::ICommand {
public:
    // Neither the invoker nor the provider is owned. The period is in milliseconds. Stopped.
    CThreadInvokerSerializer(IThreadInvoker* invoker, ITimerProvider* provider, int period);
    // Stops, and clears.
    ~CThreadInvokerSerializer() override;
    CThreadInvokerSerializer(const CThreadInvokerSerializer&) = delete;
    CThreadInvokerSerializer& operator=(const CThreadInvokerSerializer&) = delete;

    // Past the queue, straight to the invoker.
    void Invoke(Core::ICommand* command, bool owned) override;
    // Also while it is stopped.
    void Post(Core::ICommand* command, bool owned) override;

    // Runs all that is queued, and what that posts meanwhile, unless it is stopped.
    void Execute() override;

    void Start();
    void Stop();
    void SetPeriod(int milliseconds);
    // Destroys the owned commands of the queue unexecuted. Waits for a run in progress.
    void Clear();

private:
    using Queue = std::list<Core::TOwnership<Core::ICommand>>;

    bool IsEnabled() const { return m_Enabled.load(std::memory_order_relaxed); }
    // Empty when there is none.
    Queue TakeFirst();

    Queue m_Queue;
    ITimerProvider* m_Provider;
    IThreadInvoker* m_Invoker;
    CCriticalSection m_QueueLock;
    // Taken before the lock of the queue, and held while the commands run.
    CCriticalSection m_RunLock;
    int m_Period;
    std::atomic<bool> m_Enabled{false};
};

} // namespace Lathe::System
