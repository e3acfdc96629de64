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
    // Whoever hears of the number may end the learner.
    IMIDICCSetting& setting = m_Setting;
    const int channel = m_Message.GetChannel();
    setting.SetNumber(m_Message.GetNumber());
    setting.SetChannel(channel);
}

} // namespace Lathe::Audio::Plugin
