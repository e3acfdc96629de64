// Blocks: audio and MIDI through the plug-in, what a block must not carry, and what the audio
// thread must not do.

#include "platform/rtas/TestPlugin.h"
#include "support/AllocationCounter.h"
#include "support/LockLog.h"

#include <algorithm>
#include <atomic>
#include <iterator>
#include <limits>
#include <thread>

namespace {

using Texts = std::vector<std::string>;

using CRenderTest = CModuleTest;

TEST_F(CRenderTest, AudioAndMIDIGoThroughWithTheBlock) {
    m_Render.numSamples = 2;
    m_Render.midiInCount = 2;
    EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), RTAS_OK);
    EXPECT_EQ(m_Samples[1][1], 4.0f);
    EXPECT_EQ(m_Samples[0][2], 3.0f);
    ASSERT_EQ(m_Render.midiOutCount, 2);
    EXPECT_EQ(m_Out[1].offset, 1);
    EXPECT_EQ(m_HostHeard, (Texts{"touch", "2=1", "release", "touch", "2=2", "release"}));
    EXPECT_EQ(GetValue(m_Process, 2), 2);
    // The plug-in's buffer takes 4 events, then as many as the stream has shown.
    m_Render.numSamples = 64;
    m_Render.midiInCount = 6;
    for (const int taken : {4, 6}) {
        EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), RTAS_OK);
        EXPECT_EQ(GetValue(m_Process, 3), taken);
        EXPECT_EQ(m_Render.midiOutCount, 3);
    }
    // What didn't fit doesn't come later; and without events there is a stream, an empty one.
    m_Render.midiIn = nullptr;
    m_Render.midiInCount = 0;
    EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), RTAS_OK);
    EXPECT_EQ(m_Render.midiOutCount, 0);
    EXPECT_EQ(GetValue(m_Process, 3), 0);
}

TEST_F(CRenderTest, WithoutNodesOrOfflineThereIsNoMIDIAndNoTransport) {
    CEffectMIDINode input("In", 4);
    input.AttachStream(m_Events, 2);
    EXPECT_NE(input.FetchEvents(64), 0);
    CEffectMIDIRTASBufferedOutputNode output("Out", 1);
    EXPECT_FALSE(output.Post(m_Events[0]));
    m_Render.process = New(true);
    m_Render.midiInCount = 1;
    bool isPlaying = false;
    long status = 0;
    g_Plan.m_LastProcess->m_InBlock = [&] {
        status = g_Plan.m_LastProcess->GetHostTransport().IsPlaying(&isPlaying);
    };
    EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), RTAS_OK);
    EXPECT_NE(status, 0);
    EXPECT_TRUE(m_HostHeard.empty());
}

TEST_F(CRenderTest, UnsoundBlocksNeverReachThePlugin) {
    int blocks = 0;
    m_Plugin.m_InBlock = [&blocks] { ++blocks; };
    m_Render.midiInCount = 6;
    // The last event is at 5.
    const std::pair<std::int32_t RTASRender::*, int> numbers[]{
        {&RTASRender::numSamples, -1},
        {&RTASRender::numSamples, 5},
        {&RTASRender::midiInCount, -1},
        {&RTASRender::midiOutRoom, -1},
    };
    for (const auto& [field, number] : numbers) {
        RTASRender render = m_Render;
        render.*field = number;
        EXPECT_EQ(Dispatch(RTAS_RENDER, render), RTAS_WRONG_ARGUMENT) << number;
    }
    for (const RTASMIDIEvent event :
         {RTASMIDIEvent{-1, 3, {}}, {3, 3, {}}, {1, 5, {}}, {1, 0, {}}}) {
        m_Events[1] = event;
        EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), RTAS_WRONG_ARGUMENT) << event.offset;
    }
    m_Events[1] = m_Events[0];
    m_Buffers[1] = nullptr;
    EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), RTAS_WRONG_ARGUMENT);
    m_Buffers[1] = m_Samples[1];
    m_Render.midiIn = nullptr;
    EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), RTAS_WRONG_ARGUMENT);
    EXPECT_EQ(blocks, 0);
    m_Render.numSamples = m_Render.midiInCount = 0;
    EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), RTAS_OK);
    EXPECT_EQ(blocks, 1);
}

// The main thread makes, moves and deletes instances meanwhile.
TEST_F(CRenderTest, NeitherAllocatesNorWaits) {
    m_Render.midiInCount = 6;
    m_HostHeard.reserve(100);
    m_Plugin.m_InBlock = [this] {
        m_HostHeard.clear();
        m_Plugin.CountChange();
    };
    std::atomic<bool> isOver{false};
    std::thread audio([&] {
        const CAllocationScope allocations;
        const CLockScope locks;
        int failures = 0;
        do
            failures += Dispatch(RTAS_RENDER, m_Render) != RTAS_OK;
        while (!isOver.load());
        EXPECT_EQ(allocations.GetCount(), 0);
        EXPECT_EQ(locks.GetCount(), 0);
        EXPECT_EQ(failures, 0);
    });
    auto change = MakeCall<RTASControlText>(m_Process);
    auto count = MakeCall<RTASProcessCall>(m_Process);
    change.control = 2;
    for (; change.value < 50; ++change.value) {
        auto other = MakeCall<RTASProcessCall>(New());
        EXPECT_EQ(Dispatch(RTAS_DELETE_PROCESS, other), RTAS_OK);
        EXPECT_EQ(Dispatch(RTAS_SET_CONTROL_VALUE, change), RTAS_OK);
        EXPECT_EQ(Dispatch(RTAS_GET_CHANGE_COUNT, count), RTAS_OK);
    }
    isOver = true;
    audio.join();
}

TEST_F(CRenderTest, NothingOfTheTimeLineIsToldWithoutOrBesideWhatTheHostGave) {
    double tempo = 0.0;
    bool flag = false;
    long n[3]{};
    long long place = 0;
    CBlockTransport transport;
    const auto countTold = [&](const RTASTransport* told) {
        transport.Attach(told, 48000);
        const long statuses[]{transport.GetTempo(&tempo),
                              transport.GetMeter(n, n + 1),
                              transport.IsPlaying(&flag),
                              transport.GetRealTimeSamplePosition(&place),
                              transport.GetTimeLineLocation(&place),
                              transport.GetTickPosition(&place),
                              transport.GetLoop(&flag, &place, &place),
                              transport.GetBarBeatTick(48000, n, n + 1, n + 2)};
        return std::count(std::begin(statuses), std::end(statuses), 0);
    };
    EXPECT_EQ(countTold(nullptr), 0);
    EXPECT_EQ(countTold(&m_Transport), 8);
    EXPECT_NE(transport.GetBarBeatTick(std::numeric_limits<long long>::min(), n, n + 1, n + 2), 0);
    // Each unsound field silences what needs it, and no more.
    RTASTransport told = m_Transport;
    told.isPlaying = 0;
    EXPECT_EQ(countTold(&told), 7);
    told = m_Transport;
    told.tempo = std::numeric_limits<double>::quiet_NaN();
    EXPECT_EQ(countTold(&told), 7);
    EXPECT_NE(transport.GetBarBeatTick(48001, n, n + 1, n + 2), 0);
    told.meterDenominator = 0;
    EXPECT_EQ(countTold(&told), 5);
    told.meterDenominator = std::numeric_limits<int>::max();
    EXPECT_EQ(countTold(&told), 6);
}

TEST_F(CRenderTest, BarsBeatsAndTicksAddUpToThePosition) {
    for (const auto& [numerator, denominator] : {std::pair{4, 4}, {3, 4}, {7, 8}, {1, 16}}) {
        RTASTransport told = m_Transport;
        told.meterNumerator = numerator;
        told.meterDenominator = denominator;
        const long long barTicks = 3840000LL * numerator / denominator;
        for (const long long ticks :
             {0LL, 959999LL, 960000LL, barTicks - 1, 17 * barTicks + 5, -1LL, -barTicks}) {
            told.tickPosition = ticks;
            CBlockTransport transport;
            transport.Attach(&told, 48000);
            // The place itself, and a second later: two quarter notes.
            for (const long long moved : {0LL, 1920000LL}) {
                long n[3]{};
                transport.GetBarBeatTick(told.samplePosition + moved / 40, n, n + 1, n + 2);
                const long long inBar = (n[1] - 1) * 960000LL + n[2];
                EXPECT_EQ((n[0] - 1) * barTicks + inBar, ticks + moved);
                EXPECT_TRUE(inBar >= 0 && inBar < barTicks && n[2] >= 0 && n[2] < 960000);
            }
        }
    }
}

} // namespace
