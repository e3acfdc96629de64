#include "core/threads/MTEventProvider.h"

namespace Lathe::System {

void CMTEventProvider::AddCommand(Core::ICommand* command) {
    const Core::CAutoLock lock(m_Lock);
    CEventProvider::AddCommand(command);
}

void CMTEventProvider::RemoveCommand(Core::ICommand*& command, bool destroy) {
    const Core::CAutoLock lock(m_Lock);
    CEventProvider::RemoveCommand(command, destroy);
}

void CMTEventProvider::RemoveAllCommands(Core::ICommand* command) {
    const Core::CAutoLock lock(m_Lock);
    CEventProvider::RemoveAllCommands(command);
}

void CMTEventProvider::Notify() {
    const CRealtimeAutoLock lock(m_Lock);
    CEventProvider::Notify();
}

} // namespace Lathe::System
