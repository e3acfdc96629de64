// The stock MIDI side of one instance.
#pragma once

#include "core/events/Command.h"
#include "plugin/interfaces/MIDIController.h"
#include "plugin/midi/MIDICCMessage.h"
#include "plugin/midi/MIDICCSettings.h"

namespace Lathe::Audio::Plugin {

// The lists keep their sizes for life. Handlers of the settings-changed event run under the lock of
// the setting's own event, and so neither change settings themselves nor ask the default settings
// for a list, which are copied to here under the lock of that list.
class CMIDIController : public IMIDIController {
public:
    CMIDIController(int inputCount, int outputCount);
    ~CMIDIController() override;
    CMIDIController(const CMIDIController&) = delete;
    CMIDIController& operator=(const CMIDIController&) = delete;

    const CInputMIDICCSettings& GetInputSettings() const LATHE_REALTIME override {
        return m_InputSettings;
    }
    CInputMIDICCSettings& GetInputSettings() LATHE_REALTIME override { return m_InputSettings; }
    const CMIDICCSettings& GetOutputSettings() const LATHE_REALTIME override {
        return m_OutputSettings;
    }
    CMIDICCSettings& GetOutputSettings() LATHE_REALTIME override { return m_OutputSettings; }
    const CMIDICCMessage& GetLastMessage() const override { return m_LastMessage; }
    // For the audio thread, which alone writes it.
    CMIDICCMessage& GetLastMessage() LATHE_REALTIME { return m_LastMessage; }
    Core::IEventProvider& GetSettingsChangedEvent() const override { return m_SettingsChanged; }

private:
    void OnSettingChanged() { m_SettingsChanged.Notify(); }

    mutable System::CMTEventProvider m_SettingsChanged;
    Core::TCommand<CMIDIController> m_SettingChangedCommand;
    CInputMIDICCSettings m_InputSettings;
    CMIDICCSettings m_OutputSettings;
    CMIDICCMessage m_LastMessage;
};

} // namespace Lathe::Audio::Plugin
