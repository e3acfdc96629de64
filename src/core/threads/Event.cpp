#include "core/threads/Event.h"

namespace Lathe::System {

void CEvent::Set() {
    const Core::CAutoLock lock(m_Condition);
    m_Signaled = true;
    ++m_SetCount;
    m_Condition.WakeAll();
}

void CEvent::Reset() {
    const Core::CAutoLock lock(m_Condition);
    m_Signaled = false;
}

bool CEvent::Wait(int milliseconds) {
    const Core::CAutoLock lock(m_Condition);
    const unsigned count = m_SetCount;
    return m_Condition.Wait(milliseconds,
                            [this, count] { return m_Signaled || m_SetCount != count; });
}

bool CEvent::IsSignaled() {
    const Core::CAutoLock lock(m_Condition);
    return m_Signaled;
}

} // namespace Lathe::System
