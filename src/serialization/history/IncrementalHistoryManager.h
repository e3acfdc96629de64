// The history of one object, whose states share all that is equal; a step back or forth reads only
// what differs into the object.
#pragma once

#include "core/events/EventProvider.h"
#include "serialization/history/HistoryManager.h"
#include "serialization/history/IncrementalMemDataObject.h"

#include <list>

namespace Lathe::Serialization {

class ISerializable;

// The object may call back from its DeSerialize.
class CIncrementalHistoryManager : public IHistoryManager {
public:
    // The target, not owned, outlives the history; with a null target nothing is recorded.
    explicit CIncrementalHistoryManager(ISerializable* target) : m_Target(target) {}
    CIncrementalHistoryManager(const CIncrementalHistoryManager&) = delete;
    CIncrementalHistoryManager& operator=(const CIncrementalHistoryManager&) = delete;

    bool CanRedo() const override;
    bool CanUndo() const override;
    void Redo() override;
    void Undo() override;
    void RecordState() override;
    void UpdateCurrentState() override;
    void Clear() override;
    Core::IEventProvider& GetCanRedoChanged() const override { return m_CanRedoChanged; }
    Core::IEventProvider& GetCanUndoChanged() const override { return m_CanUndoChanged; }
    Core::IEventProvider& GetStateRecorded() const override { return m_StateRecorded; }

    // How many states are kept; -1 sets no limit. Holds from the next recorded state on.
    void SetMaxSteps(int count) { m_MaxSteps = count; }
    // Whether a step reads only what differs, as at the start, or the whole state.
    void SetIncremental(bool incremental) { m_Incremental = incremental; }

private:
    using States = std::list<CIncrementalMemDataObject>;

    void DropOldestStates();
    // Makes the neighbour of the current state the current one.
    void StepTo(States::iterator state);
    void NotifyUndo(bool couldUndo);
    void NotifyRedo(bool couldRedo);

    // Oldest first.
    States m_States;
    States::iterator m_Current = m_States.end();
    ISerializable* m_Target;
    mutable Core::CEventProvider m_CanUndoChanged;
    mutable Core::CEventProvider m_CanRedoChanged;
    mutable Core::CEventProvider m_StateRecorded;
    int m_MaxSteps = -1;
    bool m_Incremental = true;
};

} // namespace Lathe::Serialization
