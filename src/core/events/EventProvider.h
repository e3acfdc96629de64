// Events: lists of commands that are run, in the order of adding, on the notifier's thread.
//
// Used from one thread at a time. A command may remove itself, or any other command, during a
// notification; one that notifies its own provider is skipped in the nested run.
#pragma once

#include "core/events/Command.h"

namespace Lathe::Core {

class IEventProvider {
public:
    // Appends the command, which stays its owner's; the same command may be added twice.
    virtual void AddCommand(ICommand* command) = 0;
    virtual void AddCommand(ICommand& command) = 0;
    // Removes the first entry of the command; destroys it and nulls the pointer when asked to.
    // Null is ignored.
    virtual void RemoveCommand(ICommand*& command, bool destroy) = 0;
    // Removes every entry of the command and destroys nothing.
    virtual void RemoveAllCommands(ICommand* command) = 0;
    virtual ~IEventProvider() = default;

    // RemoveCommand for a command that is somebody's member.
    void RemoveCommand(ICommand& command) {
        ICommand* pointer = &command;
        RemoveCommand(pointer, false);
    }
};

class INotify {
public:
    virtual void Notify() = 0;
    virtual ~INotify() = default;
};

class CEventProvider : public IEventProvider, public INotify {
public:
    CEventProvider() = default;
    // Subscriptions belong to the provider that they were made with: a copy starts without any.
    CEventProvider(const CEventProvider&) {}
    CEventProvider& operator=(const CEventProvider&) { return *this; }

    using IEventProvider::RemoveCommand;
    void AddCommand(ICommand* command) override;
    void AddCommand(ICommand& command) override { AddCommand(&command); }
    void RemoveCommand(ICommand*& command, bool destroy) override;
    void RemoveAllCommands(ICommand* command) override;
    ~CEventProvider() override;

    // While suspended, counts instead of running commands.
    void Notify() override;

    // Notifications between the two are counted as missed and not delivered later.
    void Suspend() { m_Enabled = false; }
    void Resume() { m_Enabled = true; }
    int GetMissedNotifications() const { return m_MissedNotifications; }

protected:
    // An entry of the list. Subclasses with a lock make and delete entries without it.
    struct SNode {
        ICommand* m_Command;
        bool m_Running = false;
        SNode* m_Previous = nullptr;
        SNode* m_NextNode = nullptr;
    };
    // Takes the entry, which Unlink gives back.
    void Append(SNode* node);
    // The first entry of the command, out of the list, for the caller to delete; null without any.
    SNode* Unlink(const ICommand* command);

private:
    struct SCursor;

    void Unlink(SNode* node);

    SNode* m_First = nullptr;
    SNode* m_Last = nullptr;
    // The cursor of the innermost notification in progress, which leads to those around it.
    SCursor* m_Cursor = nullptr;
    int m_MissedNotifications = 0;
    bool m_Enabled = true;
};

} // namespace Lathe::Core
