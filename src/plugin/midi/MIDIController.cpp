#include "plugin/midi/MIDIController.h"

namespace Lathe::Audio::Plugin {

namespace {

void Subscribe(const IConstMIDICCSettings& settings, Core::ICommand& command) {
    for (int i = 0; i < settings.GetCount(); ++i)
        settings.GetElement(i).GetChangedEvent().AddCommand(command);
}

void Unsubscribe(const IConstMIDICCSettings& settings, Core::ICommand& command) {
    for (int i = 0; i < settings.GetCount(); ++i)
        settings.GetElement(i).GetChangedEvent().RemoveCommand(command);
}

} // namespace

CMIDIController::CMIDIController(int inputCount, int outputCount)
    : m_SettingChangedCommand(*this, &CMIDIController::OnSettingChanged),
      m_InputSettings(inputCount),
      m_OutputSettings(outputCount) {
    Subscribe(m_InputSettings, m_SettingChangedCommand);
    Subscribe(m_OutputSettings, m_SettingChangedCommand);
}

CMIDIController::~CMIDIController() {
    Unsubscribe(m_InputSettings, m_SettingChangedCommand);
    Unsubscribe(m_OutputSettings, m_SettingChangedCommand);
}

} // namespace Lathe::Audio::Plugin
