#include "core/threads/TimerWithThreadSynchronization.h"

#include "core/events/Command.h"
#include "core/threads/Condition.h"
#include "core/threads/ThreadInvoker.h"

#include <algorithm>
#include <utility>
#include <vector>

#include <pthread.h>

namespace Lathe::System {

// The commands that are running: several where one lets the invoker run others meanwhile.
class CTimerWithThreadSynchronization::CRuns {
public:
    void Begin(Core::ICommand* command) {
        const Core::CAutoLock lock(m_Condition);
        m_Running.push_back({command, pthread_self()});
    }
    void End(Core::ICommand* command) {
        const Core::CAutoLock lock(m_Condition);
        const SRun ended{command, pthread_self()};
        m_Running.erase(std::find(m_Running.begin(), m_Running.end(), ended));
        m_Condition.WakeAll();
    }
    // Doesn't wait for those of the caller's thread.
    void WaitForEnd(Core::ICommand* command) {
        const Core::CAutoLock lock(m_Condition);
        m_Condition.Wait(-1, [this, command] {
            return std::none_of(m_Running.begin(), m_Running.end(), [command](const SRun& run) {
                return run.m_Command == command && run.m_Thread != pthread_self();
            });
        });
    }

private:
    struct SRun {
        bool operator==(const SRun&) const = default;
        Core::ICommand* m_Command;
        pthread_t m_Thread;
    };

    CCondition m_Condition;
    std::vector<SRun> m_Running;
};

// What the timer really runs. The timer's thread executes it, the invoker's thread runs OnTick.
// Shared with the posted ticks: so one that is older than the removal finds no command, even when
// the same command was added again.
class CTimerWithThreadSynchronization::CThreadSyncCommandAdapter
    : public Core::ICommand,
      public std::enable_shared_from_this<CThreadSyncCommandAdapter> {
public:
    CThreadSyncCommandAdapter(Core::ICommand* command, IThreadInvoker* invoker,
                              std::shared_ptr<CRuns> runs)
        : m_Command(command), m_Invoker(invoker), m_Runs(std::move(runs)) {}

    void Execute() override;
    void OnTick();
    // No run of the command begins after this.
    void Retire();

private:
    static constexpr int MaxSkippedTicks = 16;

    bool MustPost();
    Core::ICommand* BeginRun();

    Core::ICommand* m_Command; // Null once retired.
    IThreadInvoker* m_Invoker;
    std::shared_ptr<CRuns> m_Runs;
    // No posted tick is waiting.
    bool m_Finished = true;
    CCriticalSection m_Lock;
    int m_SkippedTicks = 0;
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
        m_Runs->End(command);
    }
}

void CTimerWithThreadSynchronization::CThreadSyncCommandAdapter::Retire() {
    const Core::CAutoLock lock(m_Lock);
    m_Command = nullptr;
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
    if (m_Command) {
        m_Finished = true;
        m_Runs->Begin(m_Command);
    }
    return m_Command;
}

CTimerWithThreadSynchronization::CTimerWithThreadSynchronization(ITimerProvider* timerProvider,
                                                                 IThreadInvoker* invoker)
    : m_TimerProvider(timerProvider), m_Invoker(invoker), m_Runs(std::make_shared<CRuns>()) {}

CTimerWithThreadSynchronization::~CTimerWithThreadSynchronization() {
    while (!m_Adapters.empty())
        Remove(m_Adapters.begin()->first);
}

void CTimerWithThreadSynchronization::AddTimer(int milliseconds, Core::ICommand* command) {
    if (!command)
        return;
    const Core::CAutoLock lock(m_Lock);
    AdapterPtr& adapter = m_Adapters[command];
    if (!adapter)
        adapter = std::make_shared<CThreadSyncCommandAdapter>(command, m_Invoker, m_Runs);
    m_TimerProvider->AddTimer(milliseconds, adapter.get());
}

void CTimerWithThreadSynchronization::RemoveTimer(Core::ICommand* command, bool destroy) {
    Remove(command);
    if (destroy)
        delete command;
}

CTimerWithThreadSynchronization::AdapterPtr
CTimerWithThreadSynchronization::TakeAdapter(Core::ICommand* command) {
    const Core::CAutoLock lock(m_Lock);
    auto node = m_Adapters.extract(command);
    if (!node)
        return nullptr;
    node.mapped()->Retire();
    return std::move(node.mapped());
}

// The timer lets go of the adapter without destroying it: a posted tick may still hold it. The
// command may be running also when somebody else has removed it already, or it itself.
void CTimerWithThreadSynchronization::Remove(Core::ICommand* command) {
    if (const AdapterPtr adapter = TakeAdapter(command))
        m_TimerProvider->RemoveTimer(adapter.get(), false);
    m_Runs->WaitForEnd(command);
}

} // namespace Lathe::System
