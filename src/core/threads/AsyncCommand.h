// A command whose work is done later, on an invoker's thread.
#pragma once

#include "core/events/Command.h"
#include "core/threads/ThreadInvoker.h"

namespace Lathe::System {

// Each Execute posts one run of the member function. The destructor doesn't wait for those that the
// invoker still holds: its owner must outlive them.
template <class T>
class TAsyncCommand : public Core::ICommand {
public:
    using Member = void (T::*)();

    // The invoker is not owned.
    TAsyncCommand(T& object, Member member, IThreadInvoker* invoker)
        : m_Command(object, member), m_Invoker(invoker) {}
    void Execute() override { m_Invoker->Post(&m_Command, false); }

private:
    Core::TCommand<T> m_Command;
    IThreadInvoker* m_Invoker;
};

} // namespace Lathe::System
