#include "datamodel/objects/Action.h"

namespace Lathe::DataModel::Objects {

void CAction::Execute() {
    if (m_Enabled && m_Command)
        m_Command->Execute();
}

void CAction::SetEnable(bool enabled) {
    if (enabled == m_Enabled)
        return;
    m_Enabled = enabled;
    m_EnabledChanged.Notify();
}

} // namespace Lathe::DataModel::Objects
