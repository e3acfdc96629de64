#include "plugin/midi/MIDILearner.h"

#include "plugin/interfaces/MIDICCMessage.h"
#include "plugin/interfaces/MIDICCSetting.h"

namespace Lathe::Audio::Plugin {

CMIDILearner::CMIDILearner(const IConstMIDICCMessage& message, IMIDICCSetting& setting,
                           bool enabled)
    : m_Message(message),
      m_Setting(setting),
      m_Enabled(enabled),
      m_MessageCommand(*this, &CMIDILearner::OnMessage) {
    m_Message.GetContentsChangedEvent().AddCommand(m_MessageCommand);
}

CMIDILearner::~CMIDILearner() {
    m_Message.GetContentsChangedEvent().RemoveCommand(m_MessageCommand);
}

void CMIDILearner::SetEnabled(bool enabled) {
    if (m_Enabled.exchange(enabled, std::memory_order_relaxed) != enabled)
        m_EnabledChanged.Notify();
}

void CMIDILearner::OnMessage() {
    if (!GetEnabled())
        return;
    m_Setting.SetNumber(m_Message.GetNumber());
    m_Setting.SetChannel(m_Message.GetChannel());
}

} // namespace Lathe::Audio::Plugin
