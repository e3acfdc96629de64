#include "core/threads/CommandThread.h"

namespace Lathe::System {

// The base must not start before there is a command to run.
CCommandThread::CCommandThread(Core::ICommand* command, bool owned, bool startNow)
    : CThread(Execute, this, false), m_Command(command, owned) {
    if (startNow)
        CThread::Start();
}

void CCommandThread::Execute(void* thread) {
    if (Core::ICommand* command = static_cast<CCommandThread*>(thread)->m_Command.Get())
        command->Execute();
}

} // namespace Lathe::System
