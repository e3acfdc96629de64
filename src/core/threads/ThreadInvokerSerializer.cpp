#include "core/threads/ThreadInvokerSerializer.h"

#include "core/threads/TimerProvider.h"

namespace Lathe::System {

CThreadInvokerSerializer::CThreadInvokerSerializer(IThreadInvoker* invoker,
                                                   ITimerProvider* provider, int period)
    : m_Provider(provider), m_Invoker(invoker), m_Period(period) {}

CThreadInvokerSerializer::~CThreadInvokerSerializer() {
    Stop();
    Clear();
}

void CThreadInvokerSerializer::Invoke(Core::ICommand* command, bool owned) {
    m_Invoker->Invoke(command, owned);
}

void CThreadInvokerSerializer::Post(Core::ICommand* command, bool owned) {
    const Core::CAutoLock lock(m_QueueLock);
    m_Queue.emplace_back(command, owned);
}

void CThreadInvokerSerializer::Execute() {
    const Core::CAutoLock lock(m_RunLock);
    while (IsEnabled()) {
        const Queue message = TakeFirst();
        if (message.empty())
            return;
        if (Core::ICommand* command = message.front().Get())
            command->Execute();
    }
}

void CThreadInvokerSerializer::Start() {
    m_Enabled.store(true, std::memory_order_relaxed);
    m_Provider->AddTimer(m_Period, this);
}

void CThreadInvokerSerializer::Stop() {
    m_Enabled.store(false, std::memory_order_relaxed);
    m_Provider->RemoveTimer(this, false);
}

void CThreadInvokerSerializer::SetPeriod(int milliseconds) {
    const bool enabled = IsEnabled();
    if (enabled)
        Stop();
    m_Period = milliseconds;
    if (enabled)
        Start();
}

void CThreadInvokerSerializer::Clear() {
    const Core::CAutoLock run(m_RunLock);
    const Core::CAutoLock lock(m_QueueLock);
    Queue cleared; // What goes may post.
    cleared.swap(m_Queue);
}

CThreadInvokerSerializer::Queue CThreadInvokerSerializer::TakeFirst() {
    const Core::CAutoLock lock(m_QueueLock);
    Queue first;
    if (!m_Queue.empty())
        first.splice(first.begin(), m_Queue, m_Queue.begin());
    return first;
}

} // namespace Lathe::System
