// The last MIDI message as the editor sees it: the events come from a timer.
#pragma once

#include "core/RefreshTime.h"
#include "core/events/Command.h"
#include "core/threads/MTEventProvider.h"
#include "plugin/interfaces/MIDICCMessage.h"

#include <atomic>

namespace Lathe::System {
class ITimerProvider;
}

namespace Lathe::Audio::Plugin {

// A message comes in: the audio thread raises a flag. At the next tick, on the timer's thread: the
// contents-changed event, then the received event, each once for all messages since the last tick.
class CConstMIDICCMessageTimerProxy : public IConstMIDICCMessage, public Core::IRefreshTime {
public:
    // Both outlive the proxy. Ticks every 50 ms until told otherwise.
    CConstMIDICCMessageTimerProxy(const IConstMIDICCMessage& message,
                                  System::ITimerProvider& timers);
    // Waits for a tick in progress.
    ~CConstMIDICCMessageTimerProxy() override;
    CConstMIDICCMessageTimerProxy(const CConstMIDICCMessageTimerProxy&) = delete;
    CConstMIDICCMessageTimerProxy& operator=(const CConstMIDICCMessageTimerProxy&) = delete;

    int GetChannel() const LATHE_REALTIME override { return m_Message.GetChannel(); }
    int GetNumber() const LATHE_REALTIME override { return m_Message.GetNumber(); }
    int GetValue() const LATHE_REALTIME override { return m_Message.GetValue(); }
    Core::IEventProvider& GetContentsChangedEvent() const override { return m_ContentsChanged; }
    Core::IEventProvider& GetReceivedEvent() const override { return m_Received; }
    void SetRefreshTime(int milliseconds) override;
    int GetRefreshTime() const override { return m_RefreshTime; }

private:
    void OnContentsChanged() LATHE_REALTIME;
    void OnReceived() LATHE_REALTIME;
    void OnTimer();

    const IConstMIDICCMessage& m_Message;
    std::atomic<bool> m_HasChanged{false};
    std::atomic<bool> m_HasReceived{false};
    mutable System::CMTEventProvider m_ContentsChanged;
    mutable System::CMTEventProvider m_Received;
    int m_RefreshTime = 50;
    System::ITimerProvider& m_Timers;
    Core::TCommand<CConstMIDICCMessageTimerProxy> m_ContentsChangedCommand;
    Core::TCommand<CConstMIDICCMessageTimerProxy> m_ReceivedCommand;
    Core::TCommand<CConstMIDICCMessageTimerProxy> m_TimerCommand;
};

} // namespace Lathe::Audio::Plugin
