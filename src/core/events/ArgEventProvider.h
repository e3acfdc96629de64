// Events that carry an argument to their commands.
#pragma once

#include "core/events/Command.h"

#include <list>

namespace Lathe::Core {

template <class A>
class TIArgNotify {
public:
    virtual void Notify(A argument) = 0;
    virtual ~TIArgNotify() = default;
};

template <class A>
class TIArgEventProvider {
public:
    virtual void AddCommand(TIArgCommand<A>* command) = 0;
    virtual void AddCommand(TIArgCommand<A>& command) = 0;
    // As IEventProvider::RemoveCommand.
    virtual void RemoveCommand(TIArgCommand<A>*& command, bool destroy) = 0;
    virtual void RemoveAllCommands(TIArgCommand<A>* command) = 0;
    virtual ~TIArgEventProvider() = default;
};

// Commands must not be removed while it notifies.
template <class A>
class TArgEventProvider : public TIArgEventProvider<A>, public TIArgNotify<A> {
public:
    TArgEventProvider() = default;
    // As with CEventProvider, a copy starts without subscriptions.
    TArgEventProvider(const TArgEventProvider&) : TIArgEventProvider<A>(), TIArgNotify<A>() {}
    TArgEventProvider& operator=(const TArgEventProvider&) { return *this; }

    void AddCommand(TIArgCommand<A>* command) override { m_Nodes.push_back({command, false}); }
    void AddCommand(TIArgCommand<A>& command) override { AddCommand(&command); }

    void RemoveCommand(TIArgCommand<A>*& command, bool destroy) override {
        if (!command)
            return;
        for (auto node = m_Nodes.begin(); node != m_Nodes.end(); ++node) {
            if (node->m_Command == command) {
                m_Nodes.erase(node);
                break;
            }
        }
        if (destroy) {
            delete command;
            command = nullptr;
        }
    }

    void RemoveAllCommands(TIArgCommand<A>* command) override {
        m_Nodes.remove_if([command](const SNode& node) { return node.m_Command == command; });
    }

    // A command that is running is skipped in a nested notification.
    void Notify(A argument) override {
        for (SNode& node : m_Nodes) {
            if (node.m_Running)
                continue;
            node.m_Running = true;
            node.m_Command->Execute(argument);
            node.m_Running = false;
        }
    }

private:
    struct SNode {
        TIArgCommand<A>* m_Command;
        bool m_Running;
    };

    std::list<SNode> m_Nodes;
};

} // namespace Lathe::Core
