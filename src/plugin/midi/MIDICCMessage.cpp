#include "plugin/midi/MIDICCMessage.h"

namespace Lathe::Audio::Plugin {

void CMIDICCMessage::Set(const IConstMIDICCMessage& message, bool force) {
    const bool isEqual = m_Channel.IsEqual(message.GetChannel()) &&
                         m_Number.IsEqual(message.GetNumber()) &&
                         m_Value.IsEqual(message.GetValue());
    if (force || !isEqual) {
        Store(message.GetChannel(), message.GetNumber(), message.GetValue());
        m_ContentsChanged.Notify();
    }
    m_Received.Notify();
}

void CMIDICCMessage::Store(int channel, int number, int value) {
    m_Channel.Set(channel);
    m_Number.Set(number);
    m_Value.Set(value);
}

void CMIDICCMessage::Replace(Core::TValueStorage<int>& field, int value) {
    if (!field.IsEqual(value)) {
        field.Set(value);
        m_ContentsChanged.Notify();
    }
    m_Received.Notify();
}

} // namespace Lathe::Audio::Plugin
