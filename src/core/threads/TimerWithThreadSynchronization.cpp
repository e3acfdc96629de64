#include "core/threads/TimerWithThreadSynchronization.h"

#include "core/events/Command.h"
#include "core/threads/Event.h"
#include "core/threads/ThreadInvoker.h"

#include <utility>

#include <pthread.h>

namespace Lathe::System {

// What the timer really runs. The timer's thread executes it, the invoker's thread runs OnTick.
// Shared with the posted ticks: so one that is older than the removal finds no command, even when
// the same command was added again.
class CTimerWithThreadSynchronization::CThreadSyncCommandAdapter
    : public Core::ICommand,
      public std::enable_shared_from_this<CThreadSyncCommandAdapter> {
public:
    CThreadSyncCommandAdapter(Core::ICommand* command, IThreadInvoker* invoker)
        : m_Command(command), m_Invoker(invoker) {}

    void Execute() override;
    void OnTick();
    // The command doesn't run after this.
    void Retire();

private:
    static constexpr int MaxSkippedTicks = 16;

    bool MustPost();
    Core::ICommand* BeginRun();
    void EndRun();

    Core::ICommand* m_Command; // Null once retired.
    IThreadInvoker* m_Invoker;
    // No posted tick is waiting.
    bool m_Finished = true;
    CCriticalSection m_Lock;
    int m_SkippedTicks = 0;
    // Runs in progress, nested ones of one thread, and that thread.
    int m_Runs = 0;
    pthread_t m_Runner = 0;
    CEvent m_Idle{true};
};

class CTimerWithThreadSynchronization::CTick : public Core::ICommand {
public:
    explicit CTick(AdapterPtr adapter) : m_Adapter(std::move(adapter)) {}
    void Execute() override { m_Adapter->OnTick(); }

private:
    AdapterPtr m_Adapter;
};

void CTimerWithThreadSynchronization::CThreadSyncCommandAdapter::Execute() {
    if (MustPost())
        m_Invoker->Post(new CTick(shared_from_this()), true);
}

void CTimerWithThreadSynchronization::CThreadSyncCommandAdapter::OnTick() {
    if (Core::ICommand* command = BeginRun()) {
        command->Execute(); // It may destroy itself.
        EndRun();
    }
}

void CTimerWithThreadSynchronization::CThreadSyncCommandAdapter::Retire() {
    {
        const Core::CAutoLock lock(m_Lock);
        m_Command = nullptr;
        if (m_Runs == 0 || pthread_equal(m_Runner, pthread_self()))
            return;
    }
    m_Idle.Wait(-1);
}

bool CTimerWithThreadSynchronization::CThreadSyncCommandAdapter::MustPost() {
    const Core::CAutoLock lock(m_Lock);
    if (!m_Finished && m_SkippedTicks < MaxSkippedTicks) {
        ++m_SkippedTicks;
        return false;
    }
    m_Finished = false;
    m_SkippedTicks = 0;
    return true;
}

Core::ICommand* CTimerWithThreadSynchronization::CThreadSyncCommandAdapter::BeginRun() {
    const Core::CAutoLock lock(m_Lock);
    if (!m_Command)
        return nullptr;
    m_Finished = true;
    ++m_Runs;
    m_Runner = pthread_self();
    m_Idle.Reset();
    return m_Command;
}

void CTimerWithThreadSynchronization::CThreadSyncCommandAdapter::EndRun() {
    const Core::CAutoLock lock(m_Lock);
    if (--m_Runs == 0)
        m_Idle.Set();
}

CTimerWithThreadSynchronization::CTimerWithThreadSynchronization(ITimerProvider* timerProvider,
                                                                 IThreadInvoker* invoker)
    : m_TimerProvider(timerProvider), m_Invoker(invoker) {}

CTimerWithThreadSynchronization::~CTimerWithThreadSynchronization() {
    while (!m_Adapters.empty())
        Retire(TakeAdapter(m_Adapters.begin()->first));
}

void CTimerWithThreadSynchronization::AddTimer(int milliseconds, Core::ICommand* command) {
    if (!command)
        return;
    const Core::CAutoLock lock(m_Lock);
    AdapterPtr& adapter = m_Adapters[command];
    if (!adapter)
        adapter = std::make_shared<CThreadSyncCommandAdapter>(command, m_Invoker);
    m_TimerProvider->AddTimer(milliseconds, adapter.get());
}

void CTimerWithThreadSynchronization::RemoveTimer(Core::ICommand* command, bool destroy) {
    if (const AdapterPtr adapter = TakeAdapter(command))
        Retire(adapter);
    if (destroy)
        delete command;
}

CTimerWithThreadSynchronization::AdapterPtr
CTimerWithThreadSynchronization::TakeAdapter(Core::ICommand* command) {
    const Core::CAutoLock lock(m_Lock);
    auto node = m_Adapters.extract(command);
    return node ? std::move(node.mapped()) : nullptr;
}

// The timer lets go of the adapter without destroying it: a posted tick may still hold it.
void CTimerWithThreadSynchronization::Retire(const AdapterPtr& adapter) {
    m_TimerProvider->RemoveTimer(adapter.get(), false);
    adapter->Retire();
}

} // namespace Lathe::System
