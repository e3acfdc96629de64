// The last control change that came in, for whoever watches it.
#pragma once

#include "core/events/ValueStorage.h"
#include "core/threads/MTEventProvider.h"
#include "plugin/interfaces/MIDICCMessage.h"

namespace Lathe::Audio::Plugin {

// One thread writes, any thread reads, each number whole. Every setter raises the received event,
// and before it the contents-changed event if something differs. Built once and kept: a message
// holds two locks.
class CMIDICCMessage : public IConstMIDICCMessage {
public:
    int GetChannel() const LATHE_REALTIME override { return m_Channel.Get(); }
    int GetNumber() const LATHE_REALTIME override { return m_Number.Get(); }
    int GetValue() const LATHE_REALTIME override { return m_Value.Get(); }
    Core::IEventProvider& GetContentsChangedEvent() const override { return m_ContentsChanged; }
    Core::IEventProvider& GetReceivedEvent() const override { return m_Received; }

    void SetChannel(int channel) LATHE_REALTIME { Replace(m_Channel, channel); }
    void SetNumber(int number) LATHE_REALTIME { Replace(m_Number, number); }
    void SetValue(int value) LATHE_REALTIME { Replace(m_Value, value); }
    // With force, also contents that equal the present ones count as changed.
    void Set(const IConstMIDICCMessage& message, bool force) LATHE_REALTIME;
    // Raises nothing: for messages that nobody watches.
    void Store(int channel, int number, int value) LATHE_REALTIME;

private:
    void Replace(Core::TValueStorage<int>& field, int value) LATHE_REALTIME;

    Core::TValueStorage<int> m_Channel{1};
    Core::TValueStorage<int> m_Number;
    Core::TValueStorage<int> m_Value;
    mutable System::CMTEventProvider m_ContentsChanged;
    mutable System::CMTEventProvider m_Received;
};

} // namespace Lathe::Audio::Plugin
