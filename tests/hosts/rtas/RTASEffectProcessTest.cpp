// Proves that a block reaches the filter as the host gave it, that controls, MIDI, rates and
// outputs go where they belong, and that the audio thread allocates nothing.
#include "hosts/rtas/TestProcess.h"

#include "dsp/FilterTestSupport.h"
#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstring>
#include <future>

namespace LatheExt::RTASPlugin {
namespace {

namespace Core = Lathe::Core;
using PluginsFilters::CDualCairnEQ;

RTASMIDIEvent MakeController(int number, int value) {
    return {0, 3, {0xB0, static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(value)}};
}

TEST(RTASEffectProcessTest, EqualsTheBareFilterToTheBit) {
    DSP::Testing::CRandom random;
    CTestProcess host(std::make_unique<CDualCairnEQ>());
    host.Start();
    CDualCairnEQ bare;
    DSP::Testing::CRig rig(bare, 96000.0);
    const auto& infos = bare.GetInputParamsInfo();
    for (int i = 1; i < infos.GetCount(); ++i) {
        const auto value = static_cast<std::int32_t>(random.Between(-2147483648.0, 2147483647.0));
        host.Move(i + 2, value);
        const double position = (value + 2147483648.0) / 4294967295.0;
        rig.Set({infos.GetElement(i).GetPositionMapper().PositionToValue(position)}, i);
    }
    host.m_Process.SetSampleRate(96000);
    for (const bool isInPlace : {false, true}) {
        const DSP::Testing::CSignals noise = random.Noise(2, 512);
        std::copy(noise.begin(), noise.end(), host.m_Inputs.begin());
        host.m_Outputs = host.m_Inputs;
        host.Render(512, {}, isInPlace);
        const DSP::Testing::CSignals expected = rig.Run(noise);
        EXPECT_TRUE(std::equal(expected.begin(), expected.end(), host.m_Outputs.begin()));
    }
}

TEST(RTASEffectProcessTest, SilenceAndMissingChannels) {
    using Levels = std::vector<float>;
    using Setup = Plugin::STestFilterSetup;
    // The filter; the host's channels; what goes in and, over -1, what comes out; silent blocks.
    const std::tuple<Setup, short, short, Levels, Levels, int> cases[] = {
        {{}, 2, 2, {1, 2, 3}, {1, 2, -1}, 0},
        {{}, 1, 3, {1, 2, 3}, {1, 0, -1}, 0},
        {{}, 3, 1, {1, 2, 3}, {1, -1, -1}, 0},
        {{}, 0, 2, {1, 2, 3}, {0, 0, -1}, 1},
        {{}, 3, 2, {9.9e-11f, -9.9e-11f, 1}, {0, 0, -1}, 1},
        {{}, 2, 2, {0, -1.1e-10f, 0}, {0, -1.1e-10f, -1}, 0},
        // A source, of which this filter makes nothing, has no silence; a listener lets audio pass.
        {{.m_Inputs = 0}, 0, 1, {0, 0, 0}, {-1, -1, -1}, 0},
        {{.m_Outputs = 0}, 2, 3, {1, 2, 3}, {1, 2, 0}, 0}};
    for (const auto& [setup, inputs, outputs, levels, expected, silentBlocks] : cases) {
        CTestProcess host(setup);
        host.m_Setup.m_Inputs = inputs;
        host.m_Setup.m_Outputs = outputs;
        for (std::size_t c = 0; c < 3; ++c)
            host.m_Inputs[c].assign(512, levels[c]);
        host.Start().Render();
        for (std::size_t c = 0; c < 3; ++c) {
            EXPECT_EQ(host.m_Outputs[c][63], expected[c]);
            EXPECT_EQ(host.m_Outputs[c][64], -1.0f);
        }
        EXPECT_EQ(host.m_Seen->m_SilentBlocks, silentBlocks);
        EXPECT_EQ(host.m_Seen->m_Blocks, 1 - silentBlocks);
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
    for (const auto& [value, expected] :
         {std::pair{1L, 0.25f}, {0L, 0.5f}, {s_Top, 0.25f}, {s_Bottom, 0.5f}}) {
        host.Move(1, value);
        host.Render();
        EXPECT_EQ(host.m_Outputs[0][0], expected);
    }
    for (const long control : {0L, -1L, 5L}) { // There are none of these.
        host.Move(control, s_Top);
        host.Render();
        EXPECT_EQ(host.m_Outputs[0][0], 0.5f);
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
        for (int block = 0; block < 4; ++block) {
            host.Render(512);
            EXPECT_EQ(host.m_SentCount, 0) << "the value stays";
        }
        host.m_Process.SetSampleRate(96000);
        host.Render();
        EXPECT_EQ(host.m_SentCount, 1) << "the receiver may have forgotten";
    }
}

TEST(RTASEffectProcessTest, OutputsThatMeetAReaderComeWithTheNextBlock) {
    CTestProcess host;
    const auto& connections = host.Start().m_Process.GetInternals().GetConnections();
    auto& text = connections.GetInputStrings()->GetElement(0);
    const auto& shown = connections.GetOutputStrings()->GetElement(0);
    auto& lock = const_cast<Core::ILock&>(dynamic_cast<const Core::ILock&>(shown));
    const auto onOtherThread = [](auto call) { return std::async(std::launch::async, call); };
    CActionCommand handler([&] {
        const bool isFree =
            onOtherThread([&] { return lock.TryLock() && (lock.Unlock(), true); }).get();
        EXPECT_TRUE(isFree) << "no lock in events";
    });
    shown.GetValueChangedEvent().AddCommand(handler);
    const long changes = host.m_Process.GetChangeCount();
    text.SetValue("new");
    EXPECT_EQ(host.m_Process.GetChangeCount(), changes + 1);
    lock.Lock();
    onOtherThread([&] { host.Render(); }).get();
    EXPECT_EQ(Plugin::TakeText(shown.GetValue()), "none");
    lock.Unlock();
    host.Render(1);
    EXPECT_EQ(Plugin::TakeText(shown.GetValue()), "new");
    // A preparation waits for the reader.
    text.SetValue("newer");
    lock.Lock();
    auto preparation = onOtherThread([&] { host.m_Process.SetSampleRate(96000); });
    EXPECT_EQ(preparation.wait_for(std::chrono::milliseconds(20)), std::future_status::timeout);
    EXPECT_EQ(Plugin::TakeText(shown.GetValue()), "new");
    lock.Unlock();
    preparation.get();
    EXPECT_EQ(Plugin::TakeText(shown.GetValue()), "newer");
    shown.GetValueChangedEvent().RemoveCommand(handler);
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

TEST(RTASEffectProcessTest, ABlockAllocatesNothing) {
    CTestProcess host;
    host.m_Setup.m_Calls = {}; // The log allocates.
    host.Start().Command("map-midi", "2\t20\t0\t\t\t");
    std::vector<RTASMIDIEvent> events(3000, MakeController(20, 0));
    for (int i = 0; i < 100; ++i) {
        events.back().data[2] = static_cast<std::uint8_t>(i);
        host.m_Inputs[0].assign(512, i % 3 == 0 ? 0.0f : 0.5f);
        const CAllocationScope scope;
        host.Move(i % 4 + 1, i % 2 == 0 ? s_Bottom : s_Top);
        host.Render(256, events);
        ASSERT_EQ(scope.GetCount(), 0);
    }
}

} // namespace
} // namespace LatheExt::RTASPlugin
