#include "core/Enable.h"

namespace Lathe::Core {

void CEnable::SetEnabled(bool enabled) {
    if (enabled == m_Enabled)
        return;
    m_Enabled = enabled;
    m_EnabledChanged.Notify();
}

} // namespace Lathe::Core
