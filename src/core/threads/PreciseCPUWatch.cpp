#include "core/threads/PreciseCPUWatch.h"

#include <ctime>

namespace Lathe::System {

namespace {

constexpr std::uint64_t NanosecondsPerMillisecond = 1'000'000;

} // namespace

// This clock's ticks are nanoseconds.
CPreciseCPUWatch::CPreciseCPUWatch(TickSource getNow) : m_GetNow(getNow), m_TimeBase{1, 1} {}

void CPreciseCPUWatch::Start() {
    m_Start = m_GetNow();
    m_Running = true;
}

void CPreciseCPUWatch::Stop() {
    if (!m_Running)
        return;
    m_Stop = m_GetNow();
    m_Running = false;
}

std::uint64_t CPreciseCPUWatch::GetElapsedTicks() const {
    return (m_Running ? m_GetNow() : m_Stop) - m_Start;
}

std::uint64_t CPreciseCPUWatch::GetElapsedMilliseconds() const {
    return TicksToMilliseconds(GetElapsedTicks());
}

std::uint64_t CPreciseCPUWatch::MillisecondsToTicks(int milliseconds) const {
    const auto time = static_cast<std::uint64_t>(milliseconds > 0 ? milliseconds : 0);
    return time * NanosecondsPerMillisecond * m_TimeBase.m_Denominator / m_TimeBase.m_Numerator;
}

std::uint64_t CPreciseCPUWatch::TicksToMilliseconds(std::uint64_t ticks) const {
    return ticks * m_TimeBase.m_Numerator / (NanosecondsPerMillisecond * m_TimeBase.m_Denominator);
}

std::uint64_t CPreciseCPUWatch::GetNow() {
    timespec now{};
    clock_gettime(CLOCK_MONOTONIC, &now);
    return static_cast<std::uint64_t>(now.tv_sec) * 1'000'000'000U +
           static_cast<std::uint64_t>(now.tv_nsec);
}

} // namespace Lathe::System
