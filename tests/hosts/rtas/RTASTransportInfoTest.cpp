// Proves what the filter hears of the host's time line, that nothing is asked twice that is told to
// be kept, and that a host without a time line reads as zeros.
#include "hosts/rtas/RTASTransportInfo.h"
#include "platform/rtas/HostTransport.h"

#include <gtest/gtest.h>

namespace LatheExt::RTASPlugin {
namespace {

// In 4/4 at the tick 100 of the third beat of a bar that began at the quarter note 8.
class CFakeTransport : public CHostTransport {
public:
    long GetTempo(double* tempo) override { return Answer(*tempo, 90.0); }
    long GetMeter(long* numerator, long* denominator) override {
        return Answer(*numerator, 3L) + Answer(*denominator, 8L);
    }
    long IsPlaying(bool* playing) override { return Answer(*playing, m_Playing); }
    long GetRealTimeSamplePosition(long long* samples) override {
        return Answer(*samples, 22050LL);
    }
    long GetTimeLineLocation(long long* samples) override { return Answer(*samples, -44100LL); }
    long GetTickPosition(long long* ticks) override { return Answer(*ticks, 9600100LL); }
    long GetLoop(bool* looping, long long* start, long long* end) override {
        ++m_LoopCalls;
        return Answer(*looping, true) + Answer(*start, 960000LL) + Answer(*end, 4800000LL);
    }
    long GetBarBeatTick(long long samples, long* bar, long* beat, long* tick) override {
        ++m_BarCalls;
        EXPECT_EQ(samples, m_Playing ? 22050 : -44100);
        return Answer(*bar, 3L) + Answer(*beat, 3L) + Answer(*tick, 100L);
    }

    long m_Error = 0;
    bool m_Playing = true;
    int m_LoopCalls = 0;
    int m_BarCalls = 0;

private:
    template <class T>
    long Answer(T& place, T value) {
        place = value;
        return m_Error;
    }
};

void CheckSilent(const CRTASTransportInfo& info) {
    EXPECT_EQ(info.GetTempo(), 0.0);
    EXPECT_EQ(info.GetTimeSignatureNumerator(), 0);
    EXPECT_EQ(info.GetTimeSignatureDenominator(), 0);
    EXPECT_FALSE(info.IsPlaying() || info.IsLooping() || info.IsRecording());
    EXPECT_EQ(info.GetSamplePosition(), 0);
    EXPECT_EQ(info.GetTimePosition(), 0.0);
    EXPECT_EQ(info.GetQuarterNotePosition(), 0.0);
    EXPECT_EQ(info.GetBarStart(), 0.0);
    EXPECT_EQ(info.GetLoopStart(), 0.0);
    EXPECT_EQ(info.GetLoopEnd(), 0.0);
    EXPECT_EQ(info.GetFrameRate(), 0);
    EXPECT_EQ(info.GetFrameOffset(), 0.0);
}

TEST(RTASTransportInfoTest, TellsWhatTheHostTells) {
    CFakeTransport host;
    const CRTASTransportInfo info(&host, 44100.0);
    EXPECT_EQ(info.GetTempo(), 90.0);
    EXPECT_EQ(info.GetTimeSignatureNumerator(), 3);
    EXPECT_EQ(info.GetTimeSignatureDenominator(), 8);
    EXPECT_TRUE(info.IsPlaying());
    EXPECT_EQ(info.GetTimePosition(), 0.5);
    EXPECT_EQ(info.GetQuarterNotePosition(), 9600100.0 / 960000.0);
    EXPECT_EQ(info.GetBarStart(), 8.0);
    host.m_Playing = false;
    EXPECT_EQ(info.GetSamplePosition(), -44100);
    EXPECT_EQ(CRTASTransportInfo(&host, 0.0).GetTimePosition(), 0.0);
    EXPECT_EQ(CRTASTransportInfo(&host, 44100.0).GetBarStart(), 8.0);
}

TEST(RTASTransportInfoTest, AsksOnceForABlock) {
    for (const long error : {0L, 1L}) {
        CFakeTransport host;
        host.m_Error = error;
        const CRTASTransportInfo info(&host, 44100.0);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(info.GetLoopStart(), error ? 0.0 : 1.0);
            EXPECT_EQ(info.IsLooping(), !error);
            EXPECT_EQ(info.GetLoopEnd(), error ? 0.0 : 5.0);
            info.GetBarStart();
        }
        EXPECT_EQ(host.m_LoopCalls, 1);
        EXPECT_LE(host.m_BarCalls, 1);
        if (error)
            CheckSilent(info);
    }
    CheckSilent(CRTASTransportInfo(nullptr, 44100.0));
}

} // namespace
} // namespace LatheExt::RTASPlugin
