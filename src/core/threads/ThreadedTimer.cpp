#include "core/threads/ThreadedTimer.h"

namespace Lathe::System {

CThreadedTimer::CThreadedTimer(IThreadInvoker* invoker, bool enabled)
    : m_Invoker(invoker), m_Synchronizer(&m_Loop, m_Invoker), m_Enabled(enabled) {
    if (enabled)
        m_Loop.Start();
}

void CThreadedTimer::AddTimer(int milliseconds, Core::ICommand* command) {
    m_Synchronizer.AddTimer(milliseconds, command);
}

void CThreadedTimer::RemoveTimer(Core::ICommand* command, bool destroy) {
    m_Synchronizer.RemoveTimer(command, destroy);
}

void CThreadedTimer::SetEnabled(bool enabled) {
    if (m_Enabled.exchange(enabled, std::memory_order_relaxed) == enabled)
        return;
    if (enabled)
        m_Loop.Start();
    else
        m_Loop.Stop();
    m_EnabledChanged.Notify();
}

} // namespace Lathe::System
