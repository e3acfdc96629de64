// Rendering of files: what comes out depends on the audio, the settings and the automation, and on
// nothing else.
#include "apps/TestFiles.h"

#include <cmath>
#include <limits>

namespace CairnHostTests {
namespace {

using namespace CairnHost;

constexpr double s_TwoPi = 6.283185307179586;

class RenderTest : public CRenderTest {
protected:
    SAudio Automate(const std::string& events, const std::string& blockSizes) {
        SRenderOptions options;
        options.m_Automation = Write("events.csv", "frame,parameter,value\n" + events);
        options.m_BlockSizes = blockSizes;
        return Run(options);
    }
};

TEST_F(RenderTest, BlockSizeDoesNotMatterWithoutAutomation) {
    WriteAudio("in.wav", MakeNoise(5000));
    for (const char* mode : {"Stereo Mode=Stereo", "Stereo Mode=Mid-Side"}) {
        const std::vector<std::string> settings = {mode, "Mid (1)=9", "Low (2)=-12", "High (1)=4"};
        const SAudio expected = RunWith(settings);
        EXPECT_NE(expected, ReadAudio("in.wav"));
        for (const char* sizes : {"1", "7,64,1000", "5000", "1048576"}) {
            SRenderOptions options;
            options.m_BlockSizes = sizes;
            EXPECT_EQ(RunWith(settings, options), expected) << mode << ", blocks of " << sizes;
        }
    }
}

TEST_F(RenderTest, SineAtTheCentreTakesTheMidGain) {
    SAudio input;
    input.m_SampleRate = 44000;
    for (int i = 0; i < 88000; ++i)
        input.m_Left.push_back(0.1f * static_cast<float>(std::sin(s_TwoPi * 440.0 * i / 44000.0)));
    input.m_Right = input.m_Left;
    WriteAudio("in.wav", input);
    const SAudio output = RunWith({"Frequency (1)=440", "Mid (1)=+6"});
    const auto level = [](const std::vector<float>& samples) {
        // Of the last second, with the transient long gone.
        return 20.0 * std::log10(*std::max_element(samples.begin() + 44000, samples.end()));
    };
    EXPECT_EQ(output.m_SampleRate, 44000);
    EXPECT_NEAR(level(output.m_Left) - level(input.m_Left), 6.0, 0.001);
    EXPECT_NEAR(level(output.m_Right) - level(input.m_Right), 0.0, 0.001);
}

TEST_F(RenderTest, MidSideModeKeepsTheMiddleFromTheSideSettings) {
    WriteAudio("in.wav", MakeLevel(2000, 0.25f));
    const std::vector<std::string> side = {"Stereo Mode=1", "Gain (2)=-40", "High (2)=20"};
    EXPECT_EQ(RunWith(side), MakeLevel(2000, 0.25f));
    EXPECT_NE(RunWith({side[1], side[2]}), MakeLevel(2000, 0.25f));
}

// The gain of a level goes from 1 to 10 over the frames from `begin` to `end`, in equal ratios.
void CheckRamp(const SAudio& output, std::size_t begin, std::size_t end) {
    for (std::size_t i = 0; i < output.m_Left.size(); ++i) {
        const double part = i < begin ? 0.0
                            : i >= end
                                ? 1.0
                                : static_cast<double>(i - begin) / static_cast<double>(end - begin);
        // The ramp multiplies in float, sample by sample.
        ASSERT_NEAR(output.m_Left[i], 0.05 * std::pow(10.0, part), 1e-4) << i;
        ASSERT_EQ(output.m_Right[i], 0.05f) << i;
    }
}

TEST_F(RenderTest, AutomationRampsOverTheBlockOfItsFrameAndSettingsDont) {
    WriteAudio("in.wav", MakeLevel(3000, 0.05f));
    CheckRamp(RunWith({"Gain (1)=-3", "Gain (1)=20"}), 0, 0);
    CheckRamp(Automate("1023,Gain (1),20\n", "512"), 512, 1024);
    CheckRamp(Automate("1024,Gain (1),20\n", "512"), 1024, 1536);
    CheckRamp(Automate("0,Gain (1),20\n", "1000"), 0, 1000);
    // Blocks of 100, 300, 100, 300...
    CheckRamp(Automate("450,Gain (1),20\n", "100,300"), 400, 500);
    CheckRamp(Automate("2990,Gain (1),20\n", "1600"), 1600, 3000);
    // The last of several in one block is the one that holds.
    CheckRamp(Automate("600,Gain (1),-9\n700,Gain (1),7\n700,Gain (1),20\n", "512"), 512, 1024);
    EXPECT_TRUE(m_Notes.empty());
    EXPECT_EQ(Automate("3000,Gain (1),20\n", "512"), MakeLevel(3000, 0.05f));
    EXPECT_EQ(m_Notes.size(), 1u) << "an event behind the end passed unsaid";
}

TEST_F(RenderTest, TailAddsItsSecondsOfSilence) {
    WriteAudio("in.wav", MakeLevel(1000, 0.5f));
    SRenderOptions options;
    options.m_TailSeconds = 0.1;
    options.m_BlockSizes = "64";
    const SAudio output = RunWith({"Low (1)=12", "Low (2)=12"}, options);
    ASSERT_EQ(output.m_Left.size(), 5800u);
    EXPECT_EQ(output.m_Left.back(), 0.0f);
    WriteAudio("in.wav", MakeLevel(0, 0.0f));
    EXPECT_EQ(Run(options), MakeLevel(4800, 0.0f));
}

TEST_F(RenderTest, NoNumbersPassWithoutHarm) {
    SAudio input = MakeNoise(2000);
    input.m_Left[700] = std::numeric_limits<float>::quiet_NaN();
    input.m_Right[900] = std::numeric_limits<float>::infinity();
    WriteAudio("in.wav", input);
    const SAudio clean = RunWith({"Mid (1)=6"});
    ASSERT_EQ(clean.m_Left.size(), 2000u);
    EXPECT_TRUE(std::isfinite(clean.m_Left[699]));
    EXPECT_TRUE(std::isnan(clean.m_Left[700]));
}

TEST_F(RenderTest, OutputCanBeTheInput) {
    WriteAudio("in.wav", MakeLevel(20000, 0.05f));
    SRenderOptions options;
    options.m_Input = options.m_Output = In("in.wav");
    options.m_Settings = {"Gain (1)=20"};
    ASSERT_EQ(Try(options), "");
    ASSERT_EQ(ReadAudio("in.wav").m_Left.size(), 20000u);
    CheckRamp(ReadAudio("in.wav"), 0, 0);
}

TEST_F(RenderTest, DamagedInputLeavesTheOldOutput) {
    SRenderOptions options;
    WriteAudio("in.flac", MakeNoise(50000));
    options.m_Input = Write("in.flac", ReadBytes("in.flac").substr(0, 100000));
    options.m_Output = Write("out.wav", "old");
    EXPECT_NE(Try(options).find("is damaged after frame"), std::string::npos);
    EXPECT_EQ(ReadBytes("out.wav"), "old");
    EXPECT_EQ(List(), (std::vector<std::string>{"in.flac", "out.wav"}));
}

TEST(Progress, BarFills) {
    EXPECT_EQ(ProgressText(240000, 480000, 48000),
              "[###############...............]  50%  0:05 of 0:10");
    EXPECT_EQ(ProgressText(500000, 480000, 48000),
              "[##############################] 100%  0:10 of 0:10");
    EXPECT_EQ(ProgressText(48000LL * 3600 * 100, 0, 48000), "6000:00");
}

} // namespace
} // namespace CairnHostTests
