// Proves that a block reaches the filter as the host gave it, that controls, MIDI, rates and
// outputs go where they belong, and that the audio thread allocates nothing.
#include "hosts/rtas/TestProcess.h"

#include "dsp/PluginsFilters/DualCairnEQ.h"
#include "support/AllocationCounter.h"

#include <gtest/gtest.h>

#include <cstring>
#include <latch>
#include <random>
#include <thread>

namespace LatheExt::RTASPlugin {
namespace {

namespace Core = Lathe::Core;
using Plugin::STestFilterSetup;

RTASMIDIEvent MakeController(int number, int value) {
    return {0, 3, {0xB0, static_cast<std::uint8_t>(number), static_cast<std::uint8_t>(value)}};
}

// The filter with nothing around it, moved as an instance moves it.
class CBareFilter {
public:
    CBareFilter(double sampleRate, int maxBlockSize) {
        DSP::CFilterInitInfo info;
        info.m_MaxBlockSize = maxBlockSize;
        m_Variations.Setup(m_Filter, 1);
        m_Variations.GetEnd().SetDefaults(m_Filter);
        m_Filter.Init(sampleRate, info);
        m_Filter.SetInputValues(m_Variations.GetEnd());
        m_Variations.Commit();
    }
    void Move(int param, double value) {
        m_Variations.GetEnd().GetParams().SetValue(param, value);
        m_Variations.GetEnd().GetDirty(DSP::Params).GetElement(param).SetDirty();
        m_HasMoved = true;
    }
    // In place.
    void Process(std::vector<float>* channels, int frames) {
        DSP::CAudioStream streams[2];
        for (int c = 0; c < 2; ++c)
            streams[c].Aim(channels[c].data(), frames);
        DSP::CAudioStreams both(streams, 2, false);
        DSP::CFilterProcessData data;
        data.m_pInputs = data.m_pOutputs = &both;
        data.m_SamplesCount = frames;
        m_Variations.ComputeRates(frames);
        data.m_pVariations = std::exchange(m_HasMoved, false) ? &m_Variations : nullptr;
        m_Filter.Process(data);
        m_Variations.Commit();
    }

private:
    PluginsFilters::CDualCairnEQ m_Filter;
    DSP::CFilterPropertiesVariations m_Variations;
    bool m_HasMoved = false;
};

TEST(RTASEffectProcessTest, EqualsTheBareFilterToTheBit) {
    std::mt19937 random(7);
    CTestProcess host(std::make_unique<PluginsFilters::CDualCairnEQ>());
    host.m_Setup.m_SampleRate = 48000;
    host.Start();
    CBareFilter bare(48000.0, 512);
    const DSP::IConstParamInfos& infos = host.m_Filter->GetInputParamsInfo();
    for (const int frames : {64, 1, 512, 33, 64, 7, 200, 64}) {
        // The host's whole range is the parameter's.
        const int param = static_cast<int>(random() % 12) + 1;
        const long value = static_cast<std::int32_t>(random());
        host.m_Process.OnControlValueChanged(param + 2, value);
        bare.Move(param, infos.GetElement(param).GetPositionMapper().PositionToValue(
                             (static_cast<double>(value) + 2147483648.0) / 4294967295.0));
        std::vector<float> expected[2];
        for (std::size_t c = 0; c < 2; ++c) {
            for (float& sample : host.m_Inputs[c])
                sample = static_cast<float>(random() % 2001) / 1000.0f - 1.0f;
            expected[c] = host.m_Outputs[c] = host.m_Inputs[c];
        }
        bare.Process(expected, frames);
        host.Render(frames, {}, frames % 2 == 1);
        for (std::size_t c = 0; c < 2; ++c)
            ASSERT_EQ(std::memcmp(expected[c].data(), host.m_Outputs[c].data(),
                                  static_cast<std::size_t>(frames) * sizeof(float)),
                      0);
    }
}

TEST(RTASEffectProcessTest, OnlyTheChannelsInUseBreakTheSilence) {
    struct SLevels {
        float m_First, m_Second, m_Third;
        int m_Frames;
        bool m_IsSilent;
    };
    CTestProcess host;
    host.m_Setup.m_Inputs = 3;
    host.Start();
    for (const SLevels& levels :
         {SLevels{0.0f, 0.0f, 0.0f, 64, true}, SLevels{9.9e-11f, -9.9e-11f, 1.0f, 64, true},
          SLevels{0.0f, 1.1e-10f, 0.0f, 64, false}, SLevels{-1.1e-10f, 0.0f, 0.0f, 64, false},
          SLevels{1.0f, 1.0f, 1.0f, 0, true}}) {
        host.Fill(0, levels.m_First);
        host.Fill(1, levels.m_Second);
        host.Fill(2, levels.m_Third);
        host.GetFilter().m_Blocks = host.GetFilter().m_SilentBlocks = 0;
        host.Render(levels.m_Frames);
        EXPECT_EQ(host.GetFilter().m_SilentBlocks, levels.m_IsSilent ? 1 : 0);
        EXPECT_EQ(host.GetFilter().m_Blocks, levels.m_IsSilent ? 0 : 1);
    }
}

// All that a block leaves in the outputs; the filter doubles nothing.
void CheckChannels(STestFilterSetup setup, short inputs, short outputs,
                   const std::array<float, 3>& expected, bool isSilent) {
    CTestProcess host(setup);
    host.m_Setup.m_Inputs = inputs;
    host.m_Setup.m_Outputs = outputs;
    host.Start();
    for (std::size_t c = 0; c < 3; ++c) {
        host.Fill(c, static_cast<float>(c + 1));
        host.m_Outputs[c].assign(512, -1.0f);
    }
    host.Render();
    for (std::size_t c = 0; c < 3; ++c) {
        EXPECT_EQ(host.m_Outputs[c][0], expected[c]) << inputs << " to " << outputs;
        EXPECT_EQ(host.m_Outputs[c][CTestProcess::s_Frames - 1], expected[c]);
        EXPECT_EQ(host.m_Outputs[c][CTestProcess::s_Frames], -1.0f);
    }
    EXPECT_EQ(host.GetFilter().m_SilentBlocks, isSilent ? 1 : 0);
}

TEST(RTASEffectProcessTest, ChannelsThatOneSideLacks) {
    constexpr STestFilterSetup s_Stereo;
    CheckChannels(s_Stereo, 2, 2, {1.0f, 2.0f, -1.0f}, false);
    CheckChannels(s_Stereo, 1, 3, {1.0f, 0.0f, -1.0f}, false);
    CheckChannels(s_Stereo, 3, 1, {1.0f, -1.0f, -1.0f}, false);
    CheckChannels(s_Stereo, 0, 2, {0.0f, 0.0f, -1.0f}, true);
    // A source, of which this filter makes nothing, has no silence; a listener lets the audio pass.
    CheckChannels({.m_Inputs = 0, .m_Outputs = 2}, 0, 1, {-1.0f, -1.0f, -1.0f}, false);
    CheckChannels({.m_Inputs = 2, .m_Outputs = 0}, 2, 3, {1.0f, 2.0f, 0.0f}, false);
}

TEST(RTASEffectProcessTest, SettingsSeeEveryEventAndTheFilterTheFirst) {
    CTestProcess host;
    host.Start();
    EXPECT_EQ(host.Command("map-midi", "2\t20\t1\t\t\t"), "");
    std::vector<RTASMIDIEvent> events(3000, MakeController(20, 0));
    events[2990] = MakeController(20, 127);
    events[2999] = {63, 1, {0xF8}};
    std::fill(events.begin() + 2991, events.end() - 1, RTASMIDIEvent{63, 3, {0x90, 60, 100}});
    host.Render(64, events);
    EXPECT_EQ(host.GetFilter().m_Events, 2048);
    EXPECT_TRUE(host.GetFilter().m_HasTransport);
    EXPECT_EQ(host.GetValue(2), s_Top);
    // The gesture of a controller is the host's too, and nothing is echoed.
    EXPECT_EQ(host.m_Log.Take().substr(0, 31), "touch2 2=-2147483648 release2 t");
    host.Render(64);
    EXPECT_EQ(host.GetFilter().m_Events, 0);
    EXPECT_EQ(host.m_Log.Take(), "");
}

TEST(RTASEffectProcessTest, BypassCountsFromTheNextBlock) {
    CTestProcess host;
    host.Start();
    host.Fill(0, 0.25f);
    host.m_Process.OnControlValueChanged(2, s_Top); // Twice the level.
    const auto check = [&host](long control, long value, float expected) {
        host.m_Process.OnControlValueChanged(control, value);
        host.Render();
        host.Render();
        EXPECT_EQ(host.m_Outputs[0][0], expected);
    };
    check(1, s_Bottom, 0.5f);
    check(1, 1, 0.25f);
    check(1, 0, 0.5f);
    EXPECT_EQ(host.GetValue(1), 0);
    check(1, s_Bottom, 0.5f);
    // Numbers beyond the controls.
    for (const long control : {-1L, 0L, 5L, 99L})
        check(control, s_Top, 0.5f);
    // The instance's own bypass goes round by the host.
    EXPECT_EQ(host.Command("map-midi", "1\t7\t0\t\t\t"), "");
    host.Render(64, {MakeController(7, 127)});
    EXPECT_EQ(host.m_Log.Take(), "touch1 1=2147483647 release1 ");
    EXPECT_EQ(host.m_Outputs[0][0], 0.25f);
}

TEST(RTASEffectProcessTest, OutputsReachTheHostAsTheirSettingsSay) {
    for (const bool isAutomated : {false, true}) {
        CTestProcess host;
        auto& settings = host.m_Settings.GetDefaultSettings();
        Plugin::CMIDICCSettings outputs(2);
        host.Start();
        settings.GetOutputCCSettings(outputs);
        outputs[0].SetAutomationEnabled(isAutomated);
        outputs[0].SetMIDIEnabled(true);
        settings.SetOutputCCSettings(outputs);
        // Due with the first block, and then 50 times a second.
        host.m_Process.OnControlValueChanged(2, s_Bottom);
        host.Render();
        host.m_Process.OnControlValueChanged(2, s_Top);
        host.Render(512);
        EXPECT_EQ(host.GetValue(3), s_Bottom);
        EXPECT_EQ(host.m_SentCount, 0);
        host.m_Log.Take();
        host.Render(512);
        EXPECT_EQ(host.GetValue(3), s_Top);
        EXPECT_EQ(host.m_Log.Take(), isAutomated ? "3=2147483647 " : "");
        ASSERT_EQ(host.m_SentCount, 1);
        EXPECT_EQ(host.m_Sent[0].length, 3);
        EXPECT_EQ(host.m_Sent[0].data[2], 127);
        EXPECT_TRUE(host.m_Process.IsSpecialControl(1) && host.m_Process.IsSpecialControl(3));
        EXPECT_FALSE(host.m_Process.IsSpecialControl(2));
        for (int i = 0; i < 4; ++i)
            host.Render(512);
        EXPECT_EQ(host.m_SentCount + host.m_Log.Take().size(), 0U);
    }
}

TEST(RTASEffectProcessTest, OutputsThatMeetAReaderComeWithTheNextBlock) {
    CTestProcess host;
    host.Start();
    const Plugin::IPluginGUIConnections& connections =
        host.m_Process.GetInternals().GetConnections();
    const auto& shown = connections.GetOutputStrings()->GetElement(0);
    auto& lock = const_cast<Core::ILock&>(dynamic_cast<const Core::ILock&>(shown));
    const auto check = [&shown](const char* expected) {
        EXPECT_STREQ(std::unique_ptr<char[]>(shown.GetValue()).get(), expected);
    };
    std::latch isHeld(1), isDone(1);
    std::thread reader([&] {
        const Core::CAutoLock held(lock);
        isHeld.count_down();
        isDone.wait();
    });
    isHeld.wait();
    connections.GetInputStrings()->GetElement(0).SetValue("new");
    host.Render(); // Due, as the first one always is.
    isDone.count_down();
    reader.join();
    check("none");
    host.Render(1);
    check("new");
}

TEST(RTASEffectProcessTest, TheHostsThreadsDontDisturbTheBlocks) {
    CTestProcess host;
    host.m_Setup.m_Calls = {}; // The log is for one thread.
    host.Start();
    EXPECT_EQ(host.Command("map-midi", "2\t20\t0\t\t\t"), "");
    std::latch hasBegun(1);
    std::thread audio([&] {
        hasBegun.count_down();
        for (int i = 0; i < 500; ++i)
            host.Render(64, {MakeController(20, i % 128)});
    });
    hasBegun.wait();
    std::vector<char> chunk = host.GetChunk();
    for (int i = 0; i < 50; ++i) {
        char text[32];
        host.m_Process.OnControlValueChanged(i % 4 + 1, i * 1000);
        host.m_Process.GetControl(2)->GetValueString(text, 31, host.GetValue(2));
        host.m_Process.SetChunk(CTestProcess::s_Code,
                                reinterpret_cast<const SChunkRecord*>(chunk.data()));
        chunk = host.GetChunk();
    }
    audio.join();
    EXPECT_EQ(host.GetFilter().GetOverlaps(), 0);
}

TEST(RTASEffectProcessTest, RatesAndLayoutsReachTheFilter) {
    auto filter = std::make_unique<CSeenFilter>();
    filter->m_Info.m_IOConfigurations.SetCount(3);
    for (int i = 0; i < 3; ++i) // 1 to 1 by way of 0, twice, and 2 to 2.
        filter->m_Info.m_IOConfigurations[i].m_Outputs.SetCount(i < 2 ? 1 : 2);
    CTestProcess host(std::move(filter));
    host.m_Setup.m_Inputs = host.m_Setup.m_Outputs = 1;
    host.m_Setup.m_SampleRate = 96000;
    host.Start();
    host.m_Process.SetSampleRate(96000);
    host.m_Process.SetSampleRate(48000);
    host.m_Process.SetSampleRate(48000);
    EXPECT_EQ(host.GetFilter().m_Rates, (std::vector{44100.0, 96000.0, 48000.0}));
    EXPECT_EQ(host.GetFilter().m_InitInfo.m_IOConfigurationIndex, 0);
    host.GetFilter().SetLatency(77);
    long samples = 0;
    EXPECT_EQ(host.m_Process.GetDelaySamples(&samples), 0);
    EXPECT_EQ(samples, 77);
}

TEST(RTASEffectProcessTest, OfflineThereIsNeitherMIDINorTime) {
    CTestProcess host;
    host.m_Setup.m_IsAudioSuite = true;
    host.Start();
    host.Render(64, {MakeController(20, 0)});
    EXPECT_EQ(host.GetFilter().m_Events, 0);
    EXPECT_FALSE(host.GetFilter().m_HasTransport);
}

TEST(RTASEffectProcessTest, PagesHoldEightControls) {
    CTestProcess host(std::make_unique<PluginsFilters::CDualCairnEQ>());
    const auto code = MakeFourCharCode("PcTL");
    long size = -1;
    EXPECT_EQ(host.m_Process.QueryTable(code, &size), nullptr);
    host.Start();
    ASSERT_EQ(host.m_Process.GetControlCount(), 14);
    const std::vector<std::uint16_t> expected = {
        16, 2,  32,                                                  //
        1,  2,  3,  4,  5,  6,  7, 8, 0, 0, 0, 0, 0, 0, 0, 0,        //
        9,  10, 11, 12, 13, 14, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0}; // And four bytes.
    const void* const table = host.m_Process.QueryTable(code, &size);
    ASSERT_EQ(size, 2 * 32 + 10);
    EXPECT_EQ(std::memcmp(table, expected.data(), static_cast<std::size_t>(size)), 0);
    EXPECT_EQ(host.m_Process.QueryTable(code, &size), table);
    EXPECT_EQ(host.m_Process.QueryTable(MakeFourCharCode("none"), &size), nullptr);
}

TEST(RTASEffectProcessTest, ABlockAllocatesNothing) {
    CTestProcess host;
    host.Start();
    EXPECT_EQ(host.Command("map-midi", "2\t20\t0\t\t\t"), "");
    EXPECT_EQ(host.Command("map-midi", "3\t20\t1\t\t\t"), "");
    std::vector<RTASMIDIEvent> events(3000, MakeController(20, 0));
    host.m_Setup.m_Calls = {}; // The log allocates.
    host.m_Process.SetUp(host.m_Setup);
    const CAllocationScope scope;
    for (int i = 0; i < 100; ++i) {
        events.back().data[2] = static_cast<std::uint8_t>(i);
        host.m_Process.OnControlValueChanged(1, i % 20 < 10 ? s_Bottom : s_Top);
        host.Fill(0, i % 3 == 0 ? 0.0f : 0.5f);
        host.Render(256, events);
    }
    EXPECT_EQ(scope.GetCount(), 0);
}

} // namespace
} // namespace LatheExt::RTASPlugin
