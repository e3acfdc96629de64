#include "dsp/OutputDataSync.h"

#include "core/Differs.h"
#include "core/SaturatingCast.h"

#include <algorithm>
#include <limits>

namespace Lathe::Audio::DSP {

COutputDataSync& COutputDataSync::operator=(const COutputDataSync& other) {
    m_Counter = other.m_Counter.load();
    m_Period = other.m_Period.load();
    m_RefreshRate = other.m_RefreshRate.load();
    m_SampleRate = other.m_SampleRate.load();
    return *this;
}

void COutputDataSync::SetRefreshRate(double rate) {
    m_RefreshRate = rate;
    ComputePeriod();
}

void COutputDataSync::SetSampleRate(double rate) {
    m_SampleRate = rate;
    ComputePeriod();
    m_Counter = m_Period.load();
}

void COutputDataSync::AddSamples(int samples) {
    // Nobody may ask for a long time: the counter stops at its largest value.
    const int counter = m_Counter.load(std::memory_order_relaxed);
    const int room = std::numeric_limits<int>::max() - counter;
    m_Counter.store(counter + std::min(samples, room), std::memory_order_relaxed);
}

void COutputDataSync::ComputePeriod() {
    // Another thread may set the other rate meanwhile: whoever stores last has seen both.
    double refreshRate = 0.0;
    double sampleRate = 0.0;
    do {
        refreshRate = m_RefreshRate;
        sampleRate = m_SampleRate;
        const double period = refreshRate > 0.0 ? sampleRate / refreshRate : 0.0;
        m_Period = std::max(Core::TruncateToInt(period), 0);
    } while (Core::Differs(refreshRate, m_RefreshRate) || Core::Differs(sampleRate, m_SampleRate));
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
