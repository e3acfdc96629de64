// Events for any thread: a subscriber is never removed while it runs.
//
// A notification holds the lock, so whoever removes a command waits for a notification in progress.
// A command may add and remove on its own thread. A copy starts without subscribers.
#pragma once

#include "core/events/EventProvider.h"
#include "core/threads/CriticalSection.h"

namespace Lathe::System {

class CMTEventProvider : public Core::CEventProvider {
public:
    CMTEventProvider() = default;
    CMTEventProvider(const CMTEventProvider& other) : CEventProvider(other) {}
    CMTEventProvider& operator=(const CMTEventProvider&) { return *this; }

    using CEventProvider::AddCommand;
    using CEventProvider::RemoveCommand;
    void AddCommand(Core::ICommand* command) override;
    void RemoveCommand(Core::ICommand*& command, bool destroy) override;
    void RemoveAllCommands(Core::ICommand* command) override;
    // The audio thread may call this where it knows that the handlers don't block; it waits no
    // longer than a subscription takes. Without the mark, since most callers' handlers may.
    void Notify() override;

private:
    SNode* Take(const Core::ICommand* command);

    CCriticalSection m_Lock;
};

} // namespace Lathe::System
