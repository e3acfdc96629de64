#include "hosts/rtas/RTASTransportInfo.h"

#include "core/Differs.h"
#include "platform/rtas/HostTransport.h"

#include <cmath>

namespace LatheExt::RTASPlugin {

namespace {

constexpr double TicksPerQuarterNote = 960000.0;

} // namespace

double CRTASTransportInfo::GetTempo() const {
    double tempo = 0.0;
    return m_HostTransport && m_HostTransport->GetTempo(&tempo) == 0 ? tempo : 0.0;
}

CRTASTransportInfo::SMeter CRTASTransportInfo::FetchMeter() const {
    SMeter meter;
    const bool isTold =
        m_HostTransport && m_HostTransport->GetMeter(&meter.m_Numerator, &meter.m_Denominator) == 0;
    return isTold ? meter : SMeter();
}

int CRTASTransportInfo::GetTimeSignatureNumerator() const {
    return static_cast<int>(FetchMeter().m_Numerator);
}

int CRTASTransportInfo::GetTimeSignatureDenominator() const {
    return static_cast<int>(FetchMeter().m_Denominator);
}

bool CRTASTransportInfo::IsPlaying() const {
    bool playing = false;
    return m_HostTransport && m_HostTransport->IsPlaying(&playing) == 0 && playing;
}

bool CRTASTransportInfo::IsLooping() const {
    FetchLoop();
    return m_Looping;
}

bool CRTASTransportInfo::FetchSamplePosition(long long& samples) const {
    if (!m_HostTransport)
        return false;
    return (IsPlaying() ? m_HostTransport->GetRealTimeSamplePosition(&samples)
                        : m_HostTransport->GetTimeLineLocation(&samples)) == 0;
}

long long CRTASTransportInfo::GetSamplePosition() const {
    long long samples = 0;
    return FetchSamplePosition(samples) ? samples : 0;
}

double CRTASTransportInfo::GetTimePosition() const {
    if (!Lathe::Core::Differs(m_SampleRate, 0.0))
        return 0.0;
    return static_cast<double>(GetSamplePosition()) / m_SampleRate;
}

double CRTASTransportInfo::GetQuarterNotePosition() const {
    long long ticks = 0;
    const bool isTold = m_HostTransport && m_HostTransport->GetTickPosition(&ticks) == 0;
    return isTold ? static_cast<double>(ticks) / TicksPerQuarterNote : 0.0;
}

double CRTASTransportInfo::GetBarStart() const {
    if (!m_BarStartRead)
        m_BarStart = FetchBarStart();
    m_BarStartRead = true;
    return m_BarStart;
}

// The beats since the bar began and the ticks since the beat did, taken from the present place.
double CRTASTransportInfo::FetchBarStart() const {
    long long ticks = 0, samples = 0;
    long bar = 0, beat = 0, tick = 0;
    if (!m_HostTransport || m_HostTransport->GetTickPosition(&ticks) != 0 ||
        !FetchSamplePosition(samples) ||
        m_HostTransport->GetBarBeatTick(samples, &bar, &beat, &tick) != 0)
        return 0.0;
    const double beats = std::trunc(static_cast<double>(beat - 1) * TicksPerQuarterNote + 0.5);
    return (static_cast<double>(ticks) - beats - static_cast<double>(tick)) / TicksPerQuarterNote;
}

double CRTASTransportInfo::GetLoopStart() const {
    FetchLoop();
    return m_LoopStart;
}

double CRTASTransportInfo::GetLoopEnd() const {
    FetchLoop();
    return m_LoopEnd;
}

void CRTASTransportInfo::FetchLoop() const {
    if (m_LoopRead)
        return;
    m_LoopRead = true;
    bool looping = false;
    long long start = 0, end = 0;
    if (!m_HostTransport || m_HostTransport->GetLoop(&looping, &start, &end) != 0)
        return;
    m_Looping = looping;
    m_LoopStart = static_cast<double>(start) / TicksPerQuarterNote;
    m_LoopEnd = static_cast<double>(end) / TicksPerQuarterNote;
}

} // namespace LatheExt::RTASPlugin
