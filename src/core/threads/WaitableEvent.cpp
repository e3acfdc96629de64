#include "core/threads/WaitableEvent.h"

namespace Lathe::System {

void CWaitableEvent::Signal() {
    const Core::CAutoLock lock(m_Condition);
    m_Signaled = true;
    m_Condition.WakeOne();
}

bool CWaitableEvent::Wait(int milliseconds) {
    const Core::CAutoLock lock(m_Condition);
    const bool takesSignal = m_Signaled || milliseconds < 0;
    if (!m_Condition.Wait(milliseconds, [this] { return m_Signaled; }))
        return false;
    if (takesSignal)
        m_Signaled = false;
    return true;
}

} // namespace Lathe::System
