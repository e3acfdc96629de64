// A stopwatch on the monotonic clock.
#pragma once

#include <cstdint>

namespace Lathe::System {

class CPreciseCPUWatch {
public:
    // Gives the present in ticks, which only grow.
    using TickSource = std::uint64_t (*)();
    // The monotonic clock, in nanoseconds.
    static std::uint64_t GetNow();

    // Ticks of any other source are nanoseconds too.
    explicit CPreciseCPUWatch(TickSource getNow = &GetNow);

    // From zero, also when it is running.
    void Start();
    // Nothing when it isn't running.
    void Stop();
    // Since the start, up to now or to the stop; 0 before the first start.
    std::uint64_t GetElapsedTicks() const;
    // Truncated.
    std::uint64_t GetElapsedMilliseconds() const;

    // Negative times are 0.
    std::uint64_t MillisecondsToTicks(int milliseconds) const;
    // Truncated.
    std::uint64_t TicksToMilliseconds(std::uint64_t ticks) const;

private:
    // Ticks times numerator by denominator are nanoseconds.
    struct STimeBase {
        std::uint32_t m_Numerator;
        std::uint32_t m_Denominator;
    };

    TickSource m_GetNow;
    std::uint64_t m_Start = 0;
    std::uint64_t m_Stop = 0;
    bool m_Running = false;
    STimeBase m_TimeBase;
};

} // namespace Lathe::System
