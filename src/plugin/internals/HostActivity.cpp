#include "plugin/internals/HostActivity.h"

namespace Lathe::Audio::Plugin {

namespace {

// A host that gave no sign for longer than this is taken not to be processing.
constexpr int SilentMilliseconds = 1499;

} // namespace

// The timer clears m_RunningFlag and then looks for signs, a block leaves its sign and then looks
// at the flag: one of the two sees the other.
void CHostActivity::BeginBlock() {
    m_InBlock = true;
    m_PrepareSeen.store(true, std::memory_order_relaxed);
    if (m_RunningFlag.m_Value)
        return;
    const System::CRealtimeAutoLock running(m_RunningFlag);
    m_RunningFlag.m_Value = true;
}

void CHostActivity::BeginPreparation() {
    m_PrepareSeen = true;
    m_RunningFlag.Lock();
    m_RunningFlag.m_Value = true;
}

void CHostActivity::EndPreparation() {
    m_RunningFlag.Unlock();
    m_PrepareSeen = true;
}

bool CHostActivity::BeginIdle() {
    CountTick();
    if (m_RunningFlag.m_Value || !m_RunningFlag.TryLock())
        return false;
    if (!m_RunningFlag.m_Value)
        return true;
    m_RunningFlag.Unlock();
    return false;
}

void CHostActivity::CountTick() {
    if (HasSign() || !m_RunningFlag.m_Value) {
        m_PrepareSeen = false;
        m_IdleTicks = 0;
        return;
    }
    ++m_IdleTicks;
    if (m_IdleTicks * s_TickMilliseconds <= SilentMilliseconds || !m_RunningFlag.TryLock())
        return;
    m_RunningFlag.m_Value = false;
    if (HasSign()) // The host came back meanwhile.
        m_RunningFlag.m_Value = true;
    m_IdleTicks = 0;
    m_RunningFlag.Unlock();
}

} // namespace Lathe::Audio::Plugin
