// Blocks: MIDI through the plug-in, what a block must not carry, and what the audio
// thread must not do.

#include "platform/rtas/TestPlugin.h"
#include "support/AllocationCounter.h"
#include "support/LockLog.h"

#include <atomic>
#include <limits>
#include <thread>

namespace {

using CRenderTest = CModuleTest;

TEST_F(CRenderTest, MIDIGoesThroughAsFarAsThereIsRoom) {
    // The plug-in's buffer takes 4 events, then as many as the stream has shown. What didn't fit
    // doesn't come later; and without events there is a stream, an empty one.
    for (const auto& [events, taken, sent] :
         {std::tuple{2, 2, 2}, {6, 4, 3}, {6, 6, 3}, {0, 0, 0}}) {
        m_Render.midiInCount = events;
        m_Render.midiIn = events > 0 ? m_Events : nullptr;
        EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), RTAS_OK);
        EXPECT_TRUE(GetValue(m_Process, 3) == taken && m_Render.midiOutCount == sent);
    }
    EXPECT_EQ(m_Out[1].offset, 1);
}

TEST_F(CRenderTest, UnsoundBlocksNeverReachThePlugin) {
    int blocks = 0;
    m_Plugin.m_InBlock = [&blocks] { ++blocks; };
    const RTASRender sound = m_Render;
    const auto check = [&](auto RTASRender::*field, auto value, int expected) {
        m_Render = sound;
        m_Render.midiInCount = 6; // The last event is at 5.
        m_Render.*field = value;
        EXPECT_EQ(Dispatch(RTAS_RENDER, m_Render), expected);
    };
    check(&RTASRender::numSamples, -1, RTAS_WRONG_ARGUMENT);
    check(&RTASRender::numSamples, 5, RTAS_WRONG_ARGUMENT);
    check(&RTASRender::midiInCount, -1, RTAS_WRONG_ARGUMENT);
    check(&RTASRender::midiOutRoom, -1, RTAS_WRONG_ARGUMENT);
    check(&RTASRender::midiIn, nullptr, RTAS_WRONG_ARGUMENT);
    check(&RTASRender::inputs, nullptr, RTAS_WRONG_ARGUMENT);
    for (const RTASMIDIEvent event : {RTASMIDIEvent{-1, 3, {}}, {3, 3, {}}, {1, 5, {}}, {1, 0, {}}})
        check(&RTASRender::midiIn, (m_Events[1] = event, m_Events), RTAS_WRONG_ARGUMENT);
    m_Buffers[1] = nullptr;
    check(&RTASRender::midiInCount, 0, RTAS_WRONG_ARGUMENT);
    EXPECT_EQ(blocks, 0);
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

// Each silences what needs it, and no more.
TEST_F(CRenderTest, UnsoundFieldsOfTheTimeLineAreNotTold) {
    double tempo = 0.0;
    long n[3]{};
    CBlockTransport transport;
    transport.Attach(&m_Transport, 48000);
    EXPECT_NE(transport.GetBarBeatTick(std::numeric_limits<long long>::min(), n, n + 1, n + 2), 0);
    m_Transport.tempo = std::numeric_limits<double>::quiet_NaN();
    EXPECT_NE(transport.GetTempo(&tempo), 0);
    EXPECT_EQ(transport.GetBarBeatTick(48000, n, n + 1, n + 2), 0);
    EXPECT_NE(transport.GetBarBeatTick(48001, n, n + 1, n + 2), 0);
    m_Transport.meterDenominator = 0;
    EXPECT_NE(transport.GetMeter(n, n + 1), 0);
    m_Transport.meterDenominator = std::numeric_limits<int>::max();
    EXPECT_EQ(transport.GetMeter(n, n + 1), 0);
    EXPECT_NE(transport.GetBarBeatTick(48000, n, n + 1, n + 2), 0);
}

TEST_F(CRenderTest, BarsBeatsAndTicksAddUpToThePosition) {
    for (const auto& [numerator, denominator] : {std::pair{4, 4}, {7, 8}, {1, 16}}) {
        const long long bar = 3840000LL * numerator / denominator;
        for (const long long ticks : {0LL, 959999LL, bar - 1, 17 * bar + 5, -1LL, -bar}) {
            m_Transport.meterNumerator = numerator;
            m_Transport.meterDenominator = denominator;
            m_Transport.tickPosition = ticks;
            CBlockTransport transport;
            transport.Attach(&m_Transport, 48000);
            // The place itself, and a second later: two quarter notes.
            for (const long long moved : {0LL, 1920000LL}) {
                long n[3]{};
                transport.GetBarBeatTick(48000 + moved / 40, n, n + 1, n + 2);
                const long long inBar = (n[1] - 1) * 960000LL + n[2];
                EXPECT_EQ((n[0] - 1) * bar + inBar, ticks + moved);
                EXPECT_TRUE(inBar >= 0 && inBar < bar && n[2] >= 0 && n[2] < 960000);
            }
        }
    }
}

} // namespace
