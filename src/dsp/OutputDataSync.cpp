#include "dsp/OutputDataSync.h"

#include "core/SaturatingCast.h"

#include <algorithm>
#include <limits>

namespace Lathe::Audio::DSP {

void COutputDataSync::SetRefreshRate(double rate) {
    m_RefreshRate = rate;
    ComputePeriod();
}

void COutputDataSync::SetSampleRate(double rate) {
    m_SampleRate = rate;
    ComputePeriod();
    m_Counter = m_Period;
}

void COutputDataSync::AddSamples(int samples) {
    // Nobody may ask for a long time: the counter stops at its largest value.
    const int room = std::numeric_limits<int>::max() - m_Counter;
    m_Counter += std::min(samples, room);
}

void COutputDataSync::ComputePeriod() {
    const double period = m_RefreshRate > 0.0 ? m_SampleRate / m_RefreshRate : 0.0;
    m_Period = std::max(Core::TruncateToInt(period), 0);
}

bool COutputDataSyncMux::IsTimeToSync() const {
    return (m_First && m_First->IsTimeToSync()) || (m_Second && m_Second->IsTimeToSync());
}

void COutputDataSyncMux::ResetCounter() {
    if (m_First)
        m_First->ResetCounter();
    if (m_Second)
        m_Second->ResetCounter();
}

void COutputDataSyncMux::SetRefreshRate(double rate) {
    if (m_First)
        m_First->SetRefreshRate(rate);
    if (m_Second)
        m_Second->SetRefreshRate(rate);
}

double COutputDataSyncMux::GetRefreshRate() const {
    const double first = m_First ? m_First->GetRefreshRate() : 0.0;
    const double second = m_Second ? m_Second->GetRefreshRate() : 0.0;
    return std::max(first, second);
}

} // namespace Lathe::Audio::DSP
