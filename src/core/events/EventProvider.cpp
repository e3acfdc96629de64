#include "core/events/EventProvider.h"

namespace Lathe::Core {

// The cursor of one walk over the list. Nested walks are chained, so that a removal in the inner
// one also moves the cursors of those around it.
struct CEventProvider::SCursor {
    SNode* m_Current; // Null between commands, and once the running one is removed.
    SNode* m_Next;
    SCursor* m_Outer;
};

void CEventProvider::AddCommand(ICommand* command) {
    Append(new SNode{command}); // The list's.
}

void CEventProvider::RemoveCommand(ICommand*& command, bool destroy) {
    if (!command)
        return;
    delete Unlink(command);
    if (destroy) {
        delete command;
        command = nullptr;
    }
}

void CEventProvider::RemoveAllCommands(ICommand* command) {
    while (SNode* node = Unlink(command))
        delete node;
}

CEventProvider::~CEventProvider() {
    while (SNode* node = m_First) {
        Unlink(node);
        delete node;
    }
}

void CEventProvider::Append(SNode* node) {
    node->m_Previous = m_Last;
    (m_Last ? m_Last->m_NextNode : m_First) = node;
    m_Last = node;
}

CEventProvider::SNode* CEventProvider::Unlink(const ICommand* command) {
    for (SNode* node = m_First; node; node = node->m_NextNode) {
        if (node->m_Command == command) {
            Unlink(node);
            return node;
        }
    }
    return nullptr;
}

void CEventProvider::Unlink(SNode* node) {
    for (SCursor* cursor = m_Cursor; cursor; cursor = cursor->m_Outer) {
        if (cursor->m_Current == node)
            cursor->m_Current = nullptr;
        if (cursor->m_Next == node)
            cursor->m_Next = node->m_NextNode;
    }
    (node->m_Previous ? node->m_Previous->m_NextNode : m_First) = node->m_NextNode;
    (node->m_NextNode ? node->m_NextNode->m_Previous : m_Last) = node->m_Previous;
}

void CEventProvider::Notify() {
    if (!m_Enabled) {
        ++m_MissedNotifications;
        return;
    }
    SCursor cursor{nullptr, m_First, m_Cursor};
    m_Cursor = &cursor;
    while (SNode* node = cursor.m_Next) {
        cursor.m_Next = node->m_NextNode;
        if (node->m_Running)
            continue;
        node->m_Running = true;
        cursor.m_Current = node;
        node->m_Command->Execute();
        if (cursor.m_Current)
            node->m_Running = false;
        cursor.m_Current = nullptr;
    }
    m_Cursor = cursor.m_Outer;
}

} // namespace Lathe::Core
