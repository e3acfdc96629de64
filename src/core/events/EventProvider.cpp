#include "core/events/EventProvider.h"

namespace Lathe::Core {

// The cursor of one walk over the list. Nested walks are chained, so that a removal in the inner
// one also moves the cursors of those around it.
struct CEventProvider::SNotification {
    SNode* m_Running;
    SNode* m_Next;
    SNotification* m_Outer;
};

void CEventProvider::AddCommand(ICommand* command) {
    auto* node = new SNode{command, false, m_Last, nullptr}; // Freed by Remove or the destructor.
    (m_Last ? m_Last->m_NextNode : m_First) = node;
    m_Last = node;
}

void CEventProvider::RemoveCommand(ICommand*& command, bool destroy) {
    if (!command)
        return;
    for (SNode* node = m_First; node; node = node->m_NextNode) {
        if (node->m_Command == command) {
            Remove(node);
            break;
        }
    }
    if (destroy) {
        delete command;
        command = nullptr;
    }
}

void CEventProvider::RemoveAllCommands(ICommand* command) {
    for (SNode* node = m_First; node;) {
        SNode* next = node->m_NextNode;
        if (node->m_Command == command)
            Remove(node);
        node = next;
    }
}

CEventProvider::~CEventProvider() {
    while (m_First)
        Remove(m_First);
}

void CEventProvider::Remove(SNode* node) {
    for (SNotification* walk = m_Current; walk; walk = walk->m_Outer) {
        if (walk->m_Running == node)
            walk->m_Running = nullptr;
        if (walk->m_Next == node)
            walk->m_Next = node->m_NextNode;
    }
    (node->m_Previous ? node->m_Previous->m_NextNode : m_First) = node->m_NextNode;
    (node->m_NextNode ? node->m_NextNode->m_Previous : m_Last) = node->m_Previous;
    delete node;
}

void CEventProvider::Notify() {
    if (!m_Enabled) {
        ++m_MissedNotifications;
        return;
    }
    SNotification walk{nullptr, m_First, m_Current};
    m_Current = &walk;
    while (SNode* node = walk.m_Next) {
        walk.m_Next = node->m_NextNode;
        if (node->m_Running)
            continue;
        node->m_Running = true;
        walk.m_Running = node;
        node->m_Command->Execute();
        if (walk.m_Running)
            node->m_Running = false;
        walk.m_Running = nullptr;
    }
    m_Current = walk.m_Outer;
}

} // namespace Lathe::Core
