// The host's time line as a block sees it.

#include "platform/rtas/TestPlugin.h"

#include <algorithm>
#include <iterator>
#include <limits>

namespace {

constexpr RTASTransport Playing{1, 120.0, 4, 4, 48000, 1920000, 1, 960000, 3840000};

TEST(TransportTest, NothingIsToldWithoutOrBesideWhatTheHostGave) {
    double tempo = 0.0;
    bool flag = false;
    long a = 0;
    long b = 0;
    long c = 0;
    long long position = 0;
    long long end = 0;
    CBlockTransport transport;
    const auto countTold = [&] {
        const long statuses[]{transport.GetTempo(&tempo),
                              transport.GetMeter(&a, &b),
                              transport.IsPlaying(&flag),
                              transport.GetRealTimeSamplePosition(&position),
                              transport.GetTimeLineLocation(&position),
                              transport.GetTickPosition(&position),
                              transport.GetLoop(&flag, &position, &end),
                              transport.GetBarBeatTick(48000, &a, &b, &c)};
        return std::count(std::begin(statuses), std::end(statuses), 0);
    };
    EXPECT_EQ(countTold(), 0);
    transport.Attach(&Playing, 48000);
    EXPECT_EQ(countTold(), 8);
    EXPECT_EQ(tempo, 120.0);
    EXPECT_EQ(end, 3840000);
    // Each unsound field silences what needs it, and no more.
    RTASTransport stopped = Playing;
    stopped.isPlaying = 0;
    transport.Attach(&stopped, 48000);
    EXPECT_EQ(countTold(), 7);
    for (const double unsound : {0.0, -1.0, std::numeric_limits<double>::infinity(),
                                 std::numeric_limits<double>::quiet_NaN()}) {
        RTASTransport other = Playing;
        other.tempo = unsound;
        transport.Attach(&other, 48000);
        EXPECT_EQ(countTold(), 7);
        EXPECT_NE(transport.GetBarBeatTick(48001, &a, &b, &c), 0);
    }
    for (const auto& [numerator, denominator] : {std::pair{0, 4}, {4, 0}, {1, 2147483647}}) {
        RTASTransport other = Playing;
        other.meterNumerator = numerator;
        other.meterDenominator = denominator;
        transport.Attach(&other, 48000);
        EXPECT_LT(countTold(), 8);
        EXPECT_NE(transport.GetBarBeatTick(48000, &a, &b, &c), 0);
    }
    for (const long rate : {0L, 48000L}) {
        transport.Attach(&Playing, rate);
        EXPECT_NE(transport.GetBarBeatTick(std::numeric_limits<long long>::min(), &a, &b, &c), 0);
    }
}

TEST(TransportTest, BarsBeatsAndTicksAddUpToThePosition) {
    for (const auto& [numerator, denominator] :
         {std::pair{4, 4}, {3, 4}, {6, 8}, {7, 8}, {1, 16}}) {
        RTASTransport told = Playing;
        told.meterNumerator = numerator;
        told.meterDenominator = denominator;
        const long long barTicks = 3840000LL * numerator / denominator;
        for (const long long ticks : {0LL, 1LL, 959999LL, 960000LL, barTicks - 1, barTicks,
                                      17 * barTicks + 5, -1LL, -barTicks, -3 * barTicks + 2}) {
            told.tickPosition = ticks;
            CBlockTransport transport;
            transport.Attach(&told, 48000);
            // The place itself, and a second later: two quarter notes.
            for (const long long moved : {0LL, 1920000LL}) {
                long bar = 0;
                long beat = 0;
                long tick = 0;
                ASSERT_EQ(
                    transport.GetBarBeatTick(told.samplePosition + moved / 40, &bar, &beat, &tick),
                    0);
                const long long inBar = (beat - 1) * 960000LL + tick;
                EXPECT_EQ((bar - 1) * barTicks + inBar, ticks + moved);
                EXPECT_TRUE(inBar >= 0 && inBar < barTicks && beat >= 1 && tick >= 0 &&
                            tick < 960000);
            }
        }
    }
}

} // namespace
