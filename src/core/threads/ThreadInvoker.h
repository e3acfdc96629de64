// Calls onto another thread.
#pragma once

namespace Lathe::Core {
class ICommand;
}

namespace Lathe::System {

// Owned commands are destroyed once they have run. Any thread may call.
class IThreadInvoker {
public:
    // Runs the command on the invoker's thread and returns when it has finished. At once when the
    // caller is on that thread already.
    virtual void Invoke(Core::ICommand* command, bool owned) = 0;
    // Queues the command and returns. One that isn't owned must outlive the queue.
    virtual void Post(Core::ICommand* command, bool owned) = 0;
    virtual ~IThreadInvoker() = default;
};

} // namespace Lathe::System
