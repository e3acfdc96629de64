// Proves what the filter hears of the host's time line, that nothing is asked twice that is told to
// be kept, and that a host without a time line reads as zeros.
#include "hosts/rtas/RTASTransportInfo.h"
#include "platform/rtas/HostTransport.h"

#include <gtest/gtest.h>

#include <tuple>

namespace LatheExt::RTASPlugin {
namespace {

auto ReadAll(const CRTASTransportInfo& info) {
    return std::tuple(info.GetTempo(), info.GetTimeSignatureNumerator(),
                      info.GetTimeSignatureDenominator(), info.IsPlaying(), info.IsLooping(),
                      info.IsRecording(), info.GetSamplePosition(), info.GetTimePosition(),
                      info.GetQuarterNotePosition(), info.GetBarStart(), info.GetLoopStart(),
                      info.GetLoopEnd(), info.GetFrameRate(), info.GetFrameOffset());
}

TEST(RTASTransportInfoTest, TellsWhatTheHostTells) {
    const decltype(ReadAll({nullptr, 0.0})) silence,
        playing(90.0, 4, 4, true, true, false, 22050, 0.5, 9600100.0 / 960000.0, 8.0, 1.0, 5.0, 0,
                0.0);
    // At the tick 100 of the third beat of a bar that began at the quarter note 8.
    RTASTransport told{1, 90.0, 4, 4, 22050, 9600100, 1, 960000, 4800000};
    CBlockTransport host;
    host.Attach(&told, 44100);
    const CRTASTransportInfo info(&host, 44100.0), failing(&host, 44100.0);
    EXPECT_EQ(ReadAll(info), playing);
    const RTASTransport before = told;
    told.isLooping = 0;
    told.tickPosition = 0;
    EXPECT_TRUE(info.IsLooping() && info.GetBarStart() > 7.0) << "not asked for again";
    told = before;
    told.isPlaying = 0;
    told.samplePosition = -44100;
    EXPECT_EQ(CRTASTransportInfo(&host, 44100.0).GetBarStart(), 8.0);
    EXPECT_EQ(info.GetTimePosition(), -1.0);
    EXPECT_EQ(CRTASTransportInfo(&host, 0.0).GetTimePosition(), 0.0);
    host.Attach(nullptr, 44100);
    EXPECT_EQ(ReadAll(failing), silence);
    host.Attach(&told, 44100);
    EXPECT_FALSE(failing.IsLooping()) << "an error isn't asked for again";
    EXPECT_EQ(ReadAll(CRTASTransportInfo(nullptr, 44100.0)), silence);
}

} // namespace
} // namespace LatheExt::RTASPlugin
