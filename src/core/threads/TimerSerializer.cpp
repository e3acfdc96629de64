#include "core/threads/TimerSerializer.h"

#include <algorithm>
#include <limits>
#include <numeric>

namespace Lathe::System {

namespace {

constexpr int Grid = 10; // ms

int RoundPeriod(int milliseconds) {
    constexpr int limit = std::numeric_limits<int>::max() / Grid * Grid;
    if (milliseconds > limit - Grid)
        return limit;
    return std::max((milliseconds + Grid - 1) / Grid * Grid, Grid);
}

} // namespace

CTimerSerializer::~CTimerSerializer() {
    LeaveProvider();
}

void CTimerSerializer::AddTimer(int milliseconds, Core::ICommand* command) {
    if (!command)
        return;
    const SEntry added{command, 0, RoundPeriod(milliseconds), true};
    const auto entry = Find(command);
    if (entry == m_Entries.end())
        m_Entries.push_back(added);
    else
        *entry = added;
    UpdateTick();
}

void CTimerSerializer::RemoveTimer(Core::ICommand* command, bool destroy) {
    if (!command)
        return;
    const auto entry = Find(command);
    if (entry != m_Entries.end())
        Erase(entry);
    if (destroy)
        delete command;
}

void CTimerSerializer::Erase(Entries::iterator entry) {
    if (m_Next == entry)
        ++m_Next;
    m_Entries.erase(entry);
    if (!m_Entries.empty())
        return UpdateTick();
    LeaveProvider();
    m_Tick = -1;
}

void CTimerSerializer::Execute() {
    const int tick = m_Tick; // That has passed, whatever the commands change.
    for (SEntry& entry : m_Entries)
        entry.m_New = false;
    m_Next = m_Entries.begin();
    while (m_Next != m_Entries.end()) {
        SEntry& entry = *m_Next++;
        if (entry.m_New)
            continue;
        if (entry.m_Period - entry.m_Elapsed > tick) {
            entry.m_Elapsed += tick;
            continue;
        }
        entry.m_Elapsed = 0;
        entry.m_Command->Execute(); // It may remove the entry.
    }
}

void CTimerSerializer::SetEnabled(bool enabled) {
    if (enabled == m_Enabled)
        return;
    m_Enabled = enabled;
    if (!enabled || m_Tick == -1)
        LeaveProvider();
    else if (m_Provider)
        m_Provider->AddTimer(m_Tick, this);
    m_EnabledChanged.Notify();
}

void CTimerSerializer::Restart() {
    for (SEntry& entry : m_Entries)
        entry.m_Elapsed = 0;
}

void CTimerSerializer::SetProvider(ITimerProvider* provider) {
    const bool enabled = m_Enabled;
    SetEnabled(false);
    m_Provider = provider;
    SetEnabled(enabled);
}

CTimerSerializer::Entries::iterator CTimerSerializer::Find(Core::ICommand* command) {
    return std::find_if(m_Entries.begin(), m_Entries.end(),
                        [command](const SEntry& entry) { return entry.m_Command == command; });
}

void CTimerSerializer::UpdateTick() {
    int tick = 0;
    for (const SEntry& entry : m_Entries)
        tick = std::gcd(tick, entry.m_Period);
    if (tick == m_Tick)
        return;
    m_Tick = tick;
    if (!m_Enabled)
        return;
    SetEnabled(false);
    SetEnabled(true);
}

void CTimerSerializer::LeaveProvider() {
    if (m_Provider)
        m_Provider->RemoveTimer(this, false);
}

} // namespace Lathe::System
