#include "core/threads/TimerCommandAdapter.h"

#include "core/threads/TimerProvider.h"

namespace Lathe::System {

CTimerCommandAdapter::CTimerCommandAdapter(ITimerProvider* provider, Core::ICommand* command,
                                           bool owned)
    : m_Provider(provider), m_Command(command, owned) {
    AddTimer();
}

CTimerCommandAdapter::~CTimerCommandAdapter() {
    m_Provider->RemoveTimer(m_TimerCommand, true);
}

// The tick must see what was done before each call: an exchange carries on what another thread's
// call released, where a store would cut it off.
void CTimerCommandAdapter::Execute() {
    m_Pending.exchange(true, std::memory_order_release);
}

void CTimerCommandAdapter::SetRefreshTime(int milliseconds) {
    m_Provider->RemoveTimer(m_TimerCommand, true);
    m_Period = milliseconds;
    AddTimer();
}

void CTimerCommandAdapter::OnTimer() {
    if (GetEnabled() && m_Pending.exchange(false, std::memory_order_acquire))
        m_Command->Execute();
}

void CTimerCommandAdapter::AddTimer() {
    m_TimerCommand =
        new Core::TCommand<CTimerCommandAdapter>(*this, &CTimerCommandAdapter::OnTimer);
    m_Provider->AddTimer(m_Period, m_TimerCommand);
}

} // namespace Lathe::System
