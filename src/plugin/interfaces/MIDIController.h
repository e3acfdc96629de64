// The MIDI side of one instance: the settings of its parameters and the last message.
#pragma once

#include "plugin/interfaces/MIDICCMessage.h"
#include "plugin/interfaces/MIDICCSetting.h"

namespace Lathe::Audio::Plugin {

// Setting i of a list belongs to parameter i of the plug-in.
class IMIDIController {
public:
    virtual const IConstMIDICCSettings& GetInputSettings() const LATHE_REALTIME = 0;
    virtual IMIDICCSettings& GetInputSettings() LATHE_REALTIME = 0;
    virtual const IConstMIDICCSettings& GetOutputSettings() const LATHE_REALTIME = 0;
    virtual IMIDICCSettings& GetOutputSettings() LATHE_REALTIME = 0;
    // Its events run on the audio thread.
    virtual const IConstMIDICCMessage& GetLastMessage() const = 0;
    virtual ~IMIDIController() = default;
    // Raised when any setting changes.
    virtual Core::IEventProvider& GetSettingsChangedEvent() const = 0;
};

} // namespace Lathe::Audio::Plugin
