// Undo and redo of the states of one object.
//
// Gesture ended in the editor: RecordState. Undo pressed: Undo reads what differs into the object.
// For one thread, with its events.
#pragma once

namespace Lathe::Core {
class IEventProvider;
}

namespace Lathe::Serialization {

class IHistoryManager {
public:
    // A state stands behind the current one.
    virtual bool CanRedo() const = 0;
    // A state stands before the current one.
    virtual bool CanUndo() const = 0;
    virtual void Redo() = 0;
    virtual void Undo() = 0;
    // Takes a new state from the object, and forgets those that could be redone. A state that
    // equals the current one is no step.
    virtual void RecordState() = 0;
    // Takes the current state anew; the first one, when there is none.
    virtual void UpdateCurrentState() = 0;
    virtual void Clear() = 0;
    virtual Core::IEventProvider& GetCanRedoChanged() const = 0;
    virtual Core::IEventProvider& GetCanUndoChanged() const = 0;
    virtual ~IHistoryManager() = default;
    virtual Core::IEventProvider& GetStateRecorded() const = 0;
};

} // namespace Lathe::Serialization
