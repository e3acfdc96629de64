#include "serialization/history/IncrementalHistoryManager.h"

#include "serialization/Serializable.h"

#include <cstddef>
#include <iterator>

namespace Lathe::Serialization {

bool CIncrementalHistoryManager::CanRedo() const {
    return !m_States.empty() && m_Current != std::prev(m_States.end());
}

bool CIncrementalHistoryManager::CanUndo() const {
    return !m_States.empty() && m_Current != m_States.begin();
}

void CIncrementalHistoryManager::RecordState() {
    const bool couldRedo = CanRedo();
    const bool couldUndo = CanUndo();
    if (!m_Target)
        return;
    States recorded;
    recorded.emplace_back(m_States.empty() ? nullptr : &*m_Current);
    m_Target->Serialize(recorded.front());
    if (recorded.front().IsSameAsPrevious())
        return;
    if (!m_States.empty())
        m_States.erase(std::next(m_Current), m_States.end());
    m_Current = recorded.begin();
    m_States.splice(m_States.end(), recorded);
    DropOldestStates();
    m_StateRecorded.Notify();
    NotifyUndo(couldUndo);
    NotifyRedo(couldRedo);
}

void CIncrementalHistoryManager::DropOldestStates() {
    if (m_MaxSteps < 0)
        return;
    while (m_States.size() > static_cast<std::size_t>(m_MaxSteps)) {
        const bool isCurrent = m_Current == m_States.begin();
        m_States.pop_front();
        if (isCurrent)
            m_Current = m_States.begin();
        if (!m_States.empty())
            m_States.front().ForgetPrevious();
    }
}

void CIncrementalHistoryManager::UpdateCurrentState() {
    if (!m_Target)
        return;
    if (m_States.empty()) {
        RecordState();
        return;
    }
    m_Current->Clear();
    m_Target->Serialize(*m_Current);
}

void CIncrementalHistoryManager::Undo() {
    if (!CanUndo() || !m_Target)
        return;
    const bool couldRedo = CanRedo();
    StepTo(std::prev(m_Current));
    NotifyUndo(true);
    NotifyRedo(couldRedo);
}

void CIncrementalHistoryManager::Redo() {
    if (!CanRedo() || !m_Target)
        return;
    const bool couldUndo = CanUndo();
    StepTo(std::next(m_Current));
    NotifyRedo(true);
    NotifyUndo(couldUndo);
}

void CIncrementalHistoryManager::StepTo(States::iterator state) {
    // Shares what it holds with the states, which the target may change while it reads.
    CIncrementalMemDataObject changes;
    if (!m_Incremental)
        changes.SetCopy(*state);
    else if (!changes.SetDifference(*m_Current, *state))
        return;
    m_Current = state;
    m_Target->DeSerialize(changes);
}

void CIncrementalHistoryManager::Clear() {
    const bool couldRedo = CanRedo();
    const bool couldUndo = CanUndo();
    m_States.clear();
    m_Current = m_States.end();
    NotifyRedo(couldRedo);
    NotifyUndo(couldUndo);
}

void CIncrementalHistoryManager::NotifyUndo(bool couldUndo) {
    if (CanUndo() != couldUndo)
        m_CanUndoChanged.Notify();
}

void CIncrementalHistoryManager::NotifyRedo(bool couldRedo) {
    if (CanRedo() != couldRedo)
        m_CanRedoChanged.Notify();
}

} // namespace Lathe::Serialization
