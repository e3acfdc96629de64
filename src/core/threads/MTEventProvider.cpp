#include "core/threads/MTEventProvider.h"

namespace Lathe::System {

// Entries are made and deleted without the lock, so that the audio thread waits for assignments
// alone.

void CMTEventProvider::AddCommand(Core::ICommand* command) {
    auto* node = new SNode{command}; // The list's.
    const Core::CAutoLock lock(m_Lock);
    Append(node);
}

void CMTEventProvider::RemoveCommand(Core::ICommand*& command, bool destroy) {
    if (!command)
        return;
    delete Take(command);
    if (destroy) {
        delete command;
        command = nullptr;
    }
}

void CMTEventProvider::RemoveAllCommands(Core::ICommand* command) {
    while (SNode* node = Take(command))
        delete node;
}

void CMTEventProvider::Notify() {
    const CRealtimeAutoLock lock(m_Lock);
    CEventProvider::Notify();
}

CMTEventProvider::SNode* CMTEventProvider::Take(const Core::ICommand* command) {
    const Core::CAutoLock lock(m_Lock);
    return Unlink(command);
}

} // namespace Lathe::System
