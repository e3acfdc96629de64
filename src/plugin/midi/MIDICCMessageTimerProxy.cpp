#include "plugin/midi/MIDICCMessageTimerProxy.h"

#include "core/threads/TimerProvider.h"

namespace Lathe::Audio::Plugin {

CConstMIDICCMessageTimerProxy::CConstMIDICCMessageTimerProxy(const IConstMIDICCMessage& message,
                                                             System::ITimerProvider& timers)
    : m_Message(message),
      m_Timers(timers),
      m_ContentsChangedCommand(*this, &CConstMIDICCMessageTimerProxy::OnContentsChanged),
      m_ReceivedCommand(*this, &CConstMIDICCMessageTimerProxy::OnReceived),
      m_TimerCommand(*this, &CConstMIDICCMessageTimerProxy::OnTimer) {
    m_Message.GetContentsChangedEvent().AddCommand(m_ContentsChangedCommand);
    m_Message.GetReceivedEvent().AddCommand(m_ReceivedCommand);
    m_Timers.AddTimer(m_RefreshTime, &m_TimerCommand);
}

CConstMIDICCMessageTimerProxy::~CConstMIDICCMessageTimerProxy() {
    m_Timers.RemoveTimer(&m_TimerCommand, false);
    m_Message.GetReceivedEvent().RemoveCommand(m_ReceivedCommand);
    m_Message.GetContentsChangedEvent().RemoveCommand(m_ContentsChangedCommand);
}

void CConstMIDICCMessageTimerProxy::SetRefreshTime(int milliseconds) {
    if (milliseconds == m_RefreshTime)
        return;
    m_RefreshTime = milliseconds;
    m_Timers.AddTimer(m_RefreshTime, &m_TimerCommand);
}

// The order of the stores hands the message's numbers over with the flag.
void CConstMIDICCMessageTimerProxy::OnContentsChanged() {
    m_HasChanged.store(true, std::memory_order_release);
}

void CConstMIDICCMessageTimerProxy::OnReceived() {
    m_HasReceived.store(true, std::memory_order_release);
}

void CConstMIDICCMessageTimerProxy::OnTimer() {
    if (m_HasChanged.exchange(false, std::memory_order_acquire))
        m_ContentsChanged.Notify();
    if (m_HasReceived.exchange(false, std::memory_order_acquire))
        m_Received.Notify();
}

} // namespace Lathe::Audio::Plugin
