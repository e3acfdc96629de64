// Rendering through the plug-in: MIDI arrives at its frame, state and presets carry all that
// shapes the audio, and the files beside the audio hold what they promise.
#include "apps/TestFiles.h"
#include "cairn-host/MidiFile.h"
#include "cairn-host/StateFile.h"

namespace CairnHostTests {
namespace {

using namespace CairnHost;

constexpr int s_Rate = 8000;

class PluginRender : public CRenderTest {};

SRenderOptions WithSettings(const std::vector<std::string>& settings) {
    SRenderOptions options;
    options.m_Settings = settings;
    return options;
}

TEST_F(PluginRender, ControllerMovesTheGainAtItsFrame) {
    SAudio level = MakeLevel(s_Rate, 0.05f);
    level.m_SampleRate = s_Rate;
    WriteAudio("in.wav", level);
    // To tick 480 in half a second, and to tick 960 in a quarter: frame 6000.
    const std::string tempo = Bytes({0x83, 0x60, 0xff, 0x51, 3, 3, 0xd0, 0x90});
    const std::string end = Bytes({0, 0xff, 0x2f, 0});
    const std::string files[] = {
        MakeMidi(0, {1, 0xe0}, {tempo + Bytes({0x83, 0x60, 0xb2, 7, 127}) + end}),
        MakeMidi(1, {1, 0xe0}, {tempo + end, Bytes({0x87, 0x40, 0xb2, 7, 127}) + end})};
    SRenderOptions options;
    options.m_BlockSizes = "1";
    options.m_MidiMaps = {"Gain (1)=cc:7,channel:3,min:-20,max:20",
                          "Gain (2)=cc:7,channel:4,min:-20,max:20"};
    for (const std::string& file : files) {
        options.m_Midi = Write("in.mid", file);
        const SAudio output = Run(options);
        for (std::size_t i = 0; i < output.m_Left.size(); ++i)
            ASSERT_NEAR(output.m_Left[i], i < 6000 ? 0.05 : 0.5, i == 6000 ? 0.5 : 1e-6) << i;
        EXPECT_EQ(output.m_Right, level.m_Right) << "the channel didn't count";
    }
    EXPECT_TRUE(m_Notes.empty());
    options.m_Midi =
        Write("in.mid", MakeMidi(0, {1, 0xe0}, {Bytes({0x8f, 0x00, 0xb2, 7, 9}) + end}));
    EXPECT_EQ(Run(options), level);
    EXPECT_EQ(m_Notes.size(), 1u) << "an event behind the end passed unsaid";
}

TEST_F(PluginRender, BypassPassesTheInput) {
    WriteAudio("in.wav", MakeNoise(2000));
    EXPECT_EQ(RunWith({"Gain (1)=20", "Bypass=On"}), MakeNoise(2000));
    SRenderOptions options = WithSettings({"Gain (1)=20"});
    options.m_Automation = Write("a.csv", "frame,parameter,value\n1000,Bypass,On\n");
    options.m_BlockSizes = "500";
    const SAudio output = Run(options);
    EXPECT_EQ(output.m_Left[1000], MakeNoise(2000).m_Left[1000]);
    EXPECT_NEAR(output.m_Left[999], 10.0f * MakeNoise(2000).m_Left[999], 1e-4);
}

TEST_F(PluginRender, MapBoundsAutomationButNotSettings) {
    WriteAudio("in.wav", MakeLevel(1000, 0.05f));
    SRenderOptions options = WithSettings({"Gain (1)=20"});
    options.m_BlockSizes = "1";
    options.m_MidiMaps = {"Gain (1)=cc:7,max:6"};
    EXPECT_NEAR(Run(options).m_Left[0], 0.5, 1e-6);
    options.m_Automation = Write("a.csv", "frame,parameter,value\n9,Gain (1),7\n");
    EXPECT_EQ(Try(options),
              In("a.csv") + ": \"Gain (1)\" can't be +7: its controller map ends at +6 dB");
}

TEST_F(PluginRender, StateAndPresetHoldAllThatShapesTheAudio) {
    WriteAudio("in.wav", MakeNoise(5000));
    SRenderOptions store = WithSettings({"Stereo Mode=Mid-Side", "Frequency (1)=123.456",
                                         "Bandwidth (1)=0.7", "Mid (1)=7.77", "Low (2)=-12.3"});
    store.m_MidiMaps = {"Mid (1)=cc:7,max:11"};
    store.m_StateOut = In("a.state");
    store.m_SavePreset = In("a.preset");
    const SAudio expected = Run(store);
    SRenderOptions load;
    load.m_StateIn = In("a.state");
    load.m_StateOut = In("b.state");
    EXPECT_EQ(Run(load), expected);
    EXPECT_EQ(ReadBytes("b.state"), ReadBytes("a.state"));
    EXPECT_EQ(ReadStateFile(In("a.state"))->size(), 3u);
    // What is stored is the state at the end, with what automation and controllers did.
    store.m_Automation = Write("a.csv", "frame,parameter,value\n0,High (2),9\n");
    store.m_SavePreset.clear();
    Run(store);
    const SAudio other = Run(load);
    EXPECT_NE(other, expected);
    // The preset comes behind the state, and the settings behind the preset.
    load.m_Preset = In("a.preset");
    EXPECT_EQ(Run(load), expected);
    EXPECT_EQ(RunWith({"High (2)=9"}, load), other);
}

TEST_F(PluginRender, DelayIsTakenAwayAndTheTimeLineRuns) {
    const SAudio noise = MakeNoise(1000);
    WriteAudio("in.wav", noise);
    SRenderOptions options;
    options.m_Module = FAKE_MODULES "Good.so";
    options.m_BlockSizes = "64";
    options.m_TailSeconds = 0.001;
    options.m_Tempo = 90.0;
    options.m_Meter = "6/8";
    options.m_StateOut = In("a.state");
    options.m_Midi = Write("in.mid", MakeMidi(0, {0, 96}, {Bytes({0, 0x90, 60, 1, 1, 60, 0})}));
    options.m_MidiOut = In("out.mid");
    SAudio output = Run(options);
    ASSERT_EQ(output.m_Left.size(), 1048u);
    EXPECT_EQ(output.m_Left.back(), 0.0f);
    output.m_Left.resize(1000);
    output.m_Right.resize(1000);
    EXPECT_EQ(output, noise);
    // 1148 frames went through: the last block begins at 1088, which is 0.034 quarter notes.
    EXPECT_EQ(ReadBytes("a.state").substr(56), "1 90 6/8 1088 32640");
    const auto sent = ReadMidiFile(In("out.mid"));
    ASSERT_TRUE(sent) << sent.GetFault().m_Text;
    ASSERT_EQ(sent->size(), 2u);
    EXPECT_EQ((*sent)[1].m_Data, (std::array<std::uint8_t, 4>{0x90, 60, 0}));
    EXPECT_NEAR((*sent)[1].m_Seconds, 0.5 / 96, 0.5 / 48000);
}

TEST_F(PluginRender, HostileStatesAreRefusedInOneLine) {
    WriteAudio("in.wav", MakeLevel(100, 0.1f));
    SRenderOptions options;
    options.m_StateOut = In("good.state");
    Run(options);
    const std::string good = ReadBytes("good.state");
    const auto withSize = [&](std::initializer_list<int> size) {
        return Bytes(size) + good.substr(4);
    };
    std::string unknown = good;
    unknown[20] = 'X';
    const std::pair<std::string, const char*> cases[] = {
        {"", "is empty"},
        {good.substr(0, 55), "the chunk at byte 0 is cut short"},
        {good + "tail", "is cut short"},
        {withSize({55, 0, 0, 0}), "the chunk at byte 0 claims 55 bytes: expected 56 to"},
        {withSize({0, 0, 0, 0x80}), "claims -2147483648 bytes"},
        {unknown, "taking the chunk"},
        {withSize({56, 0, 0, 0}).substr(0, 56), "taking the chunk \"elck\" failed"},
    };
    for (const auto& [bytes, fault] : cases) {
        options = {};
        options.m_StateIn = Write("bad.state", bytes);
        const std::string text = Try(options);
        EXPECT_TRUE(text.starts_with(options.m_StateIn + ": ")) << text;
        EXPECT_NE(text.find(fault), std::string::npos) << text;
    }
    // What the plug-in drops without a word is told at least.
    options.m_StateIn = In("good.state");
    Run(options);
    EXPECT_TRUE(m_Notes.empty());
    std::string garbled = good;
    garbled[good.find("<Preset")] = '>';
    options.m_StateIn = Write("bad.state", garbled);
    Run(options);
    ASSERT_EQ(m_Notes.size(), 1u);
    EXPECT_TRUE(m_Notes[0].ends_with("didn't take the chunk \"mrws\" as it is")) << m_Notes[0];
}

} // namespace
} // namespace CairnHostTests
