// A control change as it came in.
#pragma once

#include "core/Realtime.h"

namespace Lathe::Core {
class IEventProvider;
}

namespace Lathe::Audio::Plugin {

class IConstMIDICCMessage {
public:
    // 1 to 16.
    virtual int GetChannel() const LATHE_REALTIME = 0;
    // The controller, 0 to 127.
    virtual int GetNumber() const LATHE_REALTIME = 0;
    // 0 to 127.
    virtual int GetValue() const LATHE_REALTIME = 0;
    virtual Core::IEventProvider& GetContentsChangedEvent() const = 0;
    // Also for a message that equals the one before it.
    virtual Core::IEventProvider& GetReceivedEvent() const = 0;
    virtual ~IConstMIDICCMessage() = default;
};

} // namespace Lathe::Audio::Plugin
