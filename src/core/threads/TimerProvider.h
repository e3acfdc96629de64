// Commands that run again and again.
#pragma once

namespace Lathe::Core {
class ICommand;
}

namespace Lathe::System {

// The command is the timer's identity, and must outlive the timer. Any thread may call.
class ITimerProvider {
public:
    // Runs the command every so many milliseconds. A command that is there already gets the new
    // period, from now.
    virtual void AddTimer(int milliseconds, Core::ICommand* command) = 0;
    // Once it has returned, the command doesn't run any more. Destroys the command when asked to,
    // whether or not it was known.
    virtual void RemoveTimer(Core::ICommand* command, bool destroy) = 0;
    virtual ~ITimerProvider() = default;
};

} // namespace Lathe::System
