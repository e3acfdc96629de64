// Proves what the filter hears of the host's time line, that nothing is asked twice that is told to
// be kept, and that a host without a time line reads as zeros.
#include "hosts/rtas/RTASTransportInfo.h"
#include "platform/rtas/HostTransport.h"

#include <gtest/gtest.h>

#include <tuple>

namespace LatheExt::RTASPlugin {
namespace {

// At the tick 100 of the third beat of a bar that began at the quarter note 8.
class CFakeTransport : public CHostTransport {
public:
    long GetTempo(double* tempo) override { return *tempo = 90.0, m_Error; }
    long GetMeter(long* above, long* below) override { return *above = 3, *below = 8, m_Error; }
    long IsPlaying(bool* playing) override { return *playing = m_Playing, m_Error; }
    long GetRealTimeSamplePosition(long long* at) override { return *at = 22050, m_Error; }
    long GetTimeLineLocation(long long* at) override { return *at = -44100, m_Error; }
    long GetTickPosition(long long* ticks) override { return *ticks = 9600100, m_Error; }
    long GetLoop(bool* looping, long long* start, long long* end) override {
        ++m_Calls;
        return *looping = true, *start = 960000, *end = 4800000, m_Error;
    }
    long GetBarBeatTick(long long at, long* bar, long* beat, long* tick) override {
        EXPECT_EQ(at, m_Playing ? 22050 : -44100);
        ++m_Calls;
        return *bar = *beat = 3, *tick = 100, m_Error;
    }

    long m_Error = 0;
    bool m_Playing = true;
    int m_Calls = 0;
};

auto ReadAll(const CRTASTransportInfo& info) {
    return std::tuple(info.GetTempo(), info.GetTimeSignatureNumerator(),
                      info.GetTimeSignatureDenominator(), info.IsPlaying(), info.IsLooping(),
                      info.IsRecording(), info.GetSamplePosition(), info.GetTimePosition(),
                      info.GetQuarterNotePosition(), info.GetBarStart(), info.GetLoopStart(),
                      info.GetLoopEnd(), info.GetFrameRate(), info.GetFrameOffset());
}

TEST(RTASTransportInfoTest, TellsWhatTheHostTells) {
    const decltype(ReadAll({nullptr, 0.0})) silence;
    const decltype(silence) playing(90.0, 3, 8, true, true, false, 22050, 0.5, 9600100.0 / 960000.0,
                                    8.0, 1.0, 5.0, 0, 0.0);
    CFakeTransport host;
    const CRTASTransportInfo info(&host, 44100.0);
    EXPECT_EQ(ReadAll(info), playing);
    EXPECT_EQ(ReadAll(info), playing);
    EXPECT_EQ(host.m_Calls, 2); // Of the loop and of the bar.
    host.m_Playing = false;
    EXPECT_EQ(CRTASTransportInfo(&host, 44100.0).GetBarStart(), 8.0);
    EXPECT_EQ(info.GetTimePosition(), -1.0);
    EXPECT_EQ(CRTASTransportInfo(&host, 0.0).GetTimePosition(), 0.0);
    host.m_Error = 1;
    host.m_Calls = 0;
    const CRTASTransportInfo failing(&host, 44100.0);
    EXPECT_EQ(ReadAll(failing), silence);
    EXPECT_EQ(ReadAll(failing), silence);
    EXPECT_EQ(host.m_Calls, 1); // An error isn't asked for again.
    EXPECT_EQ(ReadAll(CRTASTransportInfo(nullptr, 44100.0)), silence);
}

} // namespace
} // namespace LatheExt::RTASPlugin
