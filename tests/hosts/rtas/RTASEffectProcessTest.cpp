// Proves that a block reaches the filter as the host gave it, that controls, MIDI, rates and
// outputs go where they belong, and that the audio thread allocates nothing.
#include "hosts/rtas/TestProcess.h"

#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <random>
#include <thread>

namespace LatheExt::RTASPlugin {
namespace {

namespace Core = Lathe::Core;
using PluginsFilters::CDualCairnEQ;

RTASMIDIEvent MakeController(int number, int value) {
    return {0, 3, {0xB0, static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(value)}};
}

TEST(RTASEffectProcessTest, EqualsTheBareFilterToTheBit) {
    std::mt19937 random(7);
    CTestProcess host(std::make_unique<CDualCairnEQ>());
    host.Start();
    CDualCairnEQ bare;
    DSP::CFilterProperties values;
    values.Setup(bare);
    values.SetDefaults(bare);
    const auto& infos = bare.GetInputParamsInfo();
    for (int i = 1; i < infos.GetCount(); ++i) {
        const long value = static_cast<std::int32_t>(random());
        host.Move(i + 2, value);
        values.GetParams().SetValue(
            i, infos.GetElement(i).GetPositionMapper().PositionToValue(
                   (static_cast<double>(value) + 2147483648.0) / 4294967295.0));
    }
    host.m_Process.SetSampleRate(96000);
    bare.Init(96000.0, {});
    bare.SetInputValues(values);
    DSP::CAudioStream streams[2];
    DSP::CAudioStreams both(streams, 2, false);
    for (const bool isInPlace : {false, true}) {
        for (auto& input : host.m_Inputs)
            std::generate(input.begin(), input.end(),
                          [&] { return static_cast<float>(random() % 2001) / 1000.0f - 1.0f; });
        auto expected = host.m_Outputs = host.m_Inputs;
        for (std::size_t c = 0; c < 2; ++c)
            streams[c].Aim(expected[c].data(), 512);
        bare.Process({&both, &both, 512});
        host.Render(512, {}, isInPlace);
        EXPECT_TRUE(host.m_Outputs == expected);
    }
}

TEST(RTASEffectProcessTest, SilenceAndMissingChannels) {
    struct SCase {
        Plugin::STestFilterSetup m_Setup;
        short m_Inputs, m_Outputs;
        std::vector<float> m_Levels, m_Expected; // The outputs were -1 before.
        int m_SilentBlocks = 0;
    };
    for (const SCase& row : {
             SCase{{}, 2, 2, {1, 2, 3}, {1, 2, -1}},
             {{}, 1, 3, {1, 2, 3}, {1, 0, -1}},
             {{}, 3, 1, {1, 2, 3}, {1, -1, -1}},
             {{}, 0, 2, {1, 2, 3}, {0, 0, -1}, 1},
             {{}, 3, 2, {9.9e-11f, -9.9e-11f, 1}, {0, 0, -1}, 1},
             {{}, 2, 2, {0, -1.1e-10f, 0}, {0, -1.1e-10f, -1}},
             // A source, of which this filter makes nothing, has no silence; a listener lets audio
             // pass.
             {{.m_Inputs = 0}, 0, 1, {0, 0, 0}, {-1, -1, -1}},
             {{.m_Outputs = 0}, 2, 3, {1, 2, 3}, {1, 2, 0}},
         }) {
        CTestProcess host(row.m_Setup);
        host.m_Setup.m_Inputs = row.m_Inputs;
        host.m_Setup.m_Outputs = row.m_Outputs;
        for (std::size_t c = 0; c < 3; ++c)
            host.m_Inputs[c].assign(512, row.m_Levels[c]);
        host.Start().Render();
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_EQ(host.m_Outputs[c][63], row.m_Expected[c]);
            EXPECT_EQ(host.m_Outputs[c][64], -1.0f);
        }
        EXPECT_EQ(host.m_Seen->m_SilentBlocks, row.m_SilentBlocks);
        EXPECT_EQ(host.m_Seen->m_Blocks, 1 - row.m_SilentBlocks);
    }
}

TEST(RTASEffectProcessTest, SettingsSeeEveryEventAndTheFilterTheFirst) {
    CTestProcess host;
    host.Start().Command("map-midi", "2\t20\t1\t\t\t");
    std::vector<RTASMIDIEvent> events(3000, {63, 3, {0x90, 60, 100}});
    events[2998] = MakeController(20, 127);
    host.Render(64, events);
    EXPECT_TRUE(host.m_Seen->m_Events == 2048 && host.m_Seen->m_HasTransport);
    EXPECT_EQ(host.m_Process.GetInternals().GetMIDIController().GetLastMessage().GetNumber(), 20);
    EXPECT_EQ(host.m_Log.Take(), "touch2 2=2147483647 release2 ");
    host.Render();
    EXPECT_EQ(host.m_Seen->m_Events, 0);
}

TEST(RTASEffectProcessTest, BypassCountsFromTheNextBlock) {
    CTestProcess host;
    host.Start().Move(2, s_Top); // Twice the level.
    host.m_Inputs[0].assign(512, 0.25f);
    host.Render(); // The level gets there.
    for (const auto& [control, value, expected] : {std::tuple{1L, 1L, 0.25f},
                                                   {1L, 0L, 0.5f},
                                                   {1L, s_Bottom, 0.5f},
                                                   {0L, s_Top, 0.5f},
                                                   {-1L, s_Top, 0.5f},
                                                   {5L, s_Top, 0.5f}}) {
        host.Move(control, value);
        host.Render();
        EXPECT_EQ(host.m_Outputs[0][0], expected);
    }
    // The instance's own bypass goes round by the host, before the block that brings it.
    host.Command("map-midi", "1\t7\t0\t\t\t");
    host.Render(64, {MakeController(7, 127)});
    EXPECT_EQ(host.m_Outputs[0][0], 0.25f);
}

TEST(RTASEffectProcessTest, OutputsReachTheHostAsTheirSettingsSay) {
    for (const bool isAutomated : {false, true}) {
        CTestProcess host;
        host.Start().Command("map-midi", "3\t9\t1\t\t\t");
        auto& midi = host.m_Process.GetInternals().GetMIDIController();
        midi.GetOutputSettings()[0].SetAutomationEnabled(isAutomated);
        host.Render(); // Due with the first block, and then 50 times a second.
        host.Move(2, s_Top);
        const long before = host.GetValue(3);
        host.Render(512);
        EXPECT_EQ(host.GetValue(3), before);
        host.m_Log.Take();
        host.Render(512);
        EXPECT_EQ(host.GetValue(3), s_Top);
        EXPECT_EQ(host.m_Log.Take(), isAutomated ? "3=2147483647 " : "");
        EXPECT_TRUE(host.m_SentCount == 1 && host.m_Sent.length == 3 && host.m_Sent.data[2] == 127);
    }
}

TEST(RTASEffectProcessTest, OutputsThatMeetAReaderComeWithTheNextBlock) {
    CTestProcess host;
    const auto& connections = host.Start().m_Process.GetInternals().GetConnections();
    const auto& shown = connections.GetOutputStrings()->GetElement(0);
    const long changes = host.m_Process.GetChangeCount();
    connections.GetInputStrings()->GetElement(0).SetValue("new");
    EXPECT_EQ(host.m_Process.GetChangeCount(), changes + 1);
    {
        const Core::CAutoLock reading(
            const_cast<Core::ILock&>(dynamic_cast<const Core::ILock&>(shown)));
        std::thread([&] { host.Render(); }).join();
    }
    EXPECT_EQ(Plugin::TakeText(shown.GetValue()), "none");
    host.Render(1);
    EXPECT_EQ(Plugin::TakeText(shown.GetValue()), "new");
}

TEST(RTASEffectProcessTest, RatesReachTheFilterOnceAndOfflineThereIsNeitherMIDINorTime) {
    CTestProcess host;
    host.m_Setup.m_IsAudioSuite = true;
    host.Start();
    for (const long rate : {44100, 48000, 48000})
        host.m_Process.SetSampleRate(rate);
    EXPECT_EQ(host.m_Seen->m_Rates, (std::vector{44100.0, 44100.0, 48000.0}));
    host.Render(64, {MakeController(20, 0)});
    EXPECT_TRUE(host.m_Seen->m_Events == 0 && !host.m_Seen->m_HasTransport);
}

TEST(RTASEffectProcessTest, PagesHoldEightControls) {
    CTestProcess host(std::make_unique<CDualCairnEQ>());
    long size = -1;
    EXPECT_EQ(host.m_Process.QueryTable(MakeFourCharCode("PcTL"), &size), nullptr);
    const void* table = host.Start().m_Process.QueryTable(MakeFourCharCode("PcTL"), &size);
    const std::u16string expected = {16, 2,  32, 1,  2,  3,  4, 5, 6, 7, 8, 0, 0, 0, 0, 0, 0, 0, 0,
                                     9,  10, 11, 12, 13, 14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
    ASSERT_EQ(size, 2 * 32 + 10);
    EXPECT_EQ(std::memcmp(table, expected.data(), 74), 0);
}

// Beside the host's other threads, as it is.
TEST(RTASEffectProcessTest, ABlockAllocatesNothing) {
    CTestProcess host;
    host.m_Setup.m_Calls = {}; // The log allocates.
    host.Start().Command("map-midi", "2\t20\t0\t\t\t");
    std::thread audio([&] {
        std::vector<RTASMIDIEvent> events(3000, MakeController(20, 0));
        const CAllocationScope scope;
        for (int i = 0; i < 100; ++i) {
            events.back().data[2] = static_cast<std::uint8_t>(i);
            host.m_Inputs[0].assign(512, i % 3 == 0 ? 0.0f : 0.5f);
            host.Render(256, events);
        }
        EXPECT_EQ(scope.GetCount(), 0);
    });
    for (long i = 0, size = 0; i < 100; ++i) {
        host.Move(i % 4 + 1, i % 2 == 0 ? s_Bottom : s_Top);
        host.m_Process.GetChunkSize(MakeFourCharCode("mrws"), &size);
    }
    audio.join();
    EXPECT_EQ(host.m_Seen->GetOverlaps(), 0);
}

} // namespace
} // namespace LatheExt::RTASPlugin
