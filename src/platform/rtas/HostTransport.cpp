#include "platform/rtas/HostTransport.h"

#include <cmath>
#include <limits>

namespace {

constexpr long long TicksPerQuarterNote = 960000;
// What the host doesn't tell.
constexpr long NotTold = RTAS_WRONG_ARGUMENT;
// Ticks beyond are no place on a time line.
constexpr double MaxTicks = 1e18;

// Rounds down, also where the dividend is negative.
long long DivideDown(long long dividend, long long divisor) {
    return dividend / divisor - (dividend % divisor < 0 ? 1 : 0);
}

} // namespace

void CBlockTransport::Attach(const RTASTransport* transport, long sampleRate) {
    m_Transport = transport;
    m_SampleRate = sampleRate;
}

long CBlockTransport::GetTempo(double* tempo) {
    if (!m_Transport || !(m_Transport->tempo > 0.0) || std::isinf(m_Transport->tempo))
        return NotTold;
    *tempo = m_Transport->tempo;
    return 0;
}

long CBlockTransport::GetMeter(long* numerator, long* denominator) {
    if (!m_Transport || m_Transport->meterNumerator < 1 || m_Transport->meterDenominator < 1)
        return NotTold;
    *numerator = m_Transport->meterNumerator;
    *denominator = m_Transport->meterDenominator;
    return 0;
}

long CBlockTransport::IsPlaying(bool* playing) {
    if (!m_Transport)
        return NotTold;
    *playing = m_Transport->isPlaying != 0;
    return 0;
}

long CBlockTransport::GetRealTimeSamplePosition(long long* samples) {
    if (!m_Transport || !m_Transport->isPlaying)
        return NotTold;
    *samples = m_Transport->samplePosition;
    return 0;
}

long CBlockTransport::GetTimeLineLocation(long long* samples) {
    if (!m_Transport)
        return NotTold;
    *samples = m_Transport->samplePosition;
    return 0;
}

long CBlockTransport::GetTickPosition(long long* ticks) {
    if (!m_Transport)
        return NotTold;
    *ticks = m_Transport->tickPosition;
    return 0;
}

long CBlockTransport::GetLoop(bool* looping, long long* startTicks, long long* endTicks) {
    if (!m_Transport)
        return NotTold;
    *looping = m_Transport->isLooping != 0;
    *startTicks = m_Transport->loopStartTicks;
    *endTicks = m_Transport->loopEndTicks;
    return 0;
}

long CBlockTransport::GetBarBeatTick(long long samples, long* bar, long* beat, long* tick) {
    long numerator = 0;
    long denominator = 0;
    if (GetMeter(&numerator, &denominator) != 0)
        return NotTold;
    const long long ticksPerBar = numerator * 4 * TicksPerQuarterNote / denominator;
    long long ticks = 0;
    if (ticksPerBar < 1 || !GetTicksAt(samples, &ticks))
        return NotTold;
    const long long bars = DivideDown(ticks, ticksPerBar);
    const long long inBar = ticks - bars * ticksPerBar;
    *bar = bars + 1;
    *beat = inBar / TicksPerQuarterNote + 1;
    *tick = inBar % TicksPerQuarterNote;
    return 0;
}

bool CBlockTransport::GetTicksAt(long long samples, long long* ticks) {
    *ticks = m_Transport->tickPosition;
    if (samples != m_Transport->samplePosition) {
        double tempo = 0.0;
        if (m_SampleRate < 1 || GetTempo(&tempo) != 0)
            return false;
        const double seconds =
            (static_cast<double>(samples) - static_cast<double>(m_Transport->samplePosition)) /
            static_cast<double>(m_SampleRate);
        const double moved = static_cast<double>(*ticks) +
                             seconds * tempo / 60.0 * static_cast<double>(TicksPerQuarterNote);
        // Also keeps the rounding within its type.
        *ticks = std::abs(moved) < MaxTicks ? std::llround(moved)
                                            : std::numeric_limits<long long>::max();
    }
    return std::abs(static_cast<double>(*ticks)) < MaxTicks;
}
