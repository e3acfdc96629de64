// A thread that runs one command.
#pragma once

#include "core/events/Command.h"
#include "core/ownership/Ownership.h"
#include "core/threads/Thread.h"

namespace Lathe::System {

// Must be joined, or have ended otherwise, before it is destroyed.
class CCommandThread : public CThread {
public:
    // Each start runs the command once.
    CCommandThread(Core::ICommand* command, bool owned, bool startNow);

private:
    static void Execute(void* thread);

    Core::TOwnership<Core::ICommand> m_Command;
};

} // namespace Lathe::System
