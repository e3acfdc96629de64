// Audio files: what is written reads back as exactly as the format can hold it, and a file that
// can't be completed leaves nothing behind.
#include "apps/TestFiles.h"

#include <cmath>
#include <limits>

namespace CairnHostTests {
namespace {

using namespace CairnHost;

constexpr float s_Infinity = std::numeric_limits<float>::infinity();
constexpr float s_NoNumber = std::numeric_limits<float>::quiet_NaN();

class AudioFile : public CFolderTest {};

TEST_F(AudioFile, EachFormatReadsBackWithinItsResolution) {
    const double step24 = 1.0 / (1 << 23);
    const double step16 = 1.0 / (1 << 15);
    // The tolerance of a sample is a step of the coding. Noise has little that the lossy one keeps.
    const std::tuple<const char*, std::optional<ESubtype>, double> cases[] = {
        {"a.wav", std::nullopt, 0.0},        {"b.WAV", ESubtype::Pcm24, step24},
        {"c.wav", ESubtype::Pcm16, step16},  {"d.flac", std::nullopt, step24},
        {"e.flac", ESubtype::Pcm16, step16}, {"f.aiff", ESubtype::Float, 0.0},
        {"g.aif", ESubtype::Pcm24, step24},  {"h.ogg", std::nullopt, 2.0},
    };
    const SAudio audio = MakeNoise(10001);
    for (const auto& [name, subtype, tolerance] : cases) {
        SCOPED_TRACE(name);
        WriteAudio(name, audio, subtype);
        const SAudio back = ReadAudio(name);
        ASSERT_EQ(back.m_Left.size(), audio.m_Left.size());
        for (std::size_t i = 0; i < audio.m_Left.size(); ++i) {
            ASSERT_NEAR(back.m_Left[i], audio.m_Left[i], tolerance) << i;
            ASSERT_NEAR(back.m_Right[i], audio.m_Right[i], tolerance) << i;
        }
    }
    EXPECT_EQ(List().size(), std::size(cases)) << "something was left beside the files";
}

TEST_F(AudioFile, OneChannelFeedsBothSides) {
    Write("mono.wav", MakeWav(1, 8000, std::string("\x00\x40\x00\xC0", 4)));
    const SAudio expected = {8000, {0.5f, -0.5f}, {0.5f, -0.5f}};
    EXPECT_EQ(ReadAudio("mono.wav"), expected);
}

TEST_F(AudioFile, ImpossibleCombinationsAreRefusedInOneLine) {
    // The file, the rate, the sample format, the frames; the fault, empty when it is possible.
    const std::tuple<const char*, int, std::optional<ESubtype>, std::int64_t, std::string> cases[] =
        {{"a.flac", 48000, ESubtype::Float, 0, "expected pcm24 or pcm16"},
         {"a.ogg", 48000, ESubtype::Pcm16, 0, "expected no --subtype"},
         {"wav", 48000, std::nullopt, 0, "unknown extension"},
         {"a.flac", 655350, std::nullopt, 0, ""},
         {"a.flac", 655351, std::nullopt, 0, "expected a .wav"},
         {"a.ogg", 200000, std::nullopt, 0, ""},
         {"a.ogg", 200001, std::nullopt, 0, "expected a .wav"},
         // So many frames of floats pass 4 GiB, and one more flavour of .wav holds them.
         {"a.aiff", 48000, std::nullopt, 600000000, "4 GiB"},
         {"a.wav", 48000, std::nullopt, 600000000, ""}};
    for (const auto& [name, rate, subtype, frames, expected] : cases) {
        CAudioWriter writer;
        const CStatus status = writer.Open(In(name), rate, subtype, frames);
        const std::string fault = status ? "" : status.GetFault().m_Text;
        EXPECT_EQ(fault.empty(), expected.empty()) << name << fault;
        EXPECT_NE(fault.find(expected), std::string::npos) << fault;
    }
    EXPECT_TRUE(List().empty());
}

TEST_F(AudioFile, WithoutFramesReadsBackOrIsRefused) {
    for (const char* name : {"a.wav", "b.flac", "c.aiff", "d.ogg"}) {
        CAudioWriter writer;
        ASSERT_TRUE(writer.Open(In(name), 44100, std::nullopt, 0));
        EXPECT_TRUE(!writer.Close() || ReadAudio(name) == (SAudio{44100, {}, {}})) << name;
    }
    EXPECT_EQ(List(), (std::vector<std::string>{"a.wav", "b.flac"}));
}

TEST_F(AudioFile, ValuesThatAFormatCantHoldAreLimitedAndCounted) {
    const SAudio audio = {
        48000, {2.0f, s_Infinity, 0.25f, 1e30f}, {-2.0f, s_NoNumber, 0.5f, -1e30f}};
    for (const std::string name : {"a.flac", "b.ogg", "c.wav"}) {
        CAudioWriter writer;
        ASSERT_TRUE(writer.Open(In(name), audio.m_SampleRate, std::nullopt, 0));
        ASSERT_TRUE(writer.Write(audio.m_Left.data(), audio.m_Right.data(), 4));
        ASSERT_TRUE(writer.Close());
        const bool keeps = name == "c.wav";
        EXPECT_EQ(writer.GetLimitedCount() > 0, !keeps) << name;
        EXPECT_EQ(std::isnan(ReadAudio(name).m_Right[1]), keeps) << name;
        EXPECT_EQ(std::isinf(ReadAudio(name).m_Left[1]), keeps) << name;
    }
    const SAudio clipped = ReadAudio("a.flac");
    EXPECT_NEAR(clipped.m_Left[0], 1.0f, 1e-6);
    EXPECT_EQ(clipped.m_Left[2], 0.25f);
    EXPECT_EQ(clipped.m_Right, (std::vector{-1.0f, 0.0f, 0.5f, -1.0f}));
}

TEST_F(AudioFile, LinksAndPermissionsOfTheOldFileStay) {
    namespace fs = std::filesystem;
    fs::create_symlink(In("target.wav"), In("link.wav"));
    WriteAudio("target.wav", MakeLevel(1, 1.0f));
    fs::permissions(In("target.wav"), fs::perms::owner_read | fs::perms::owner_write);
    WriteAudio("link.wav", MakeNoise(20000));
    EXPECT_TRUE(fs::is_symlink(In("link.wav")));
    EXPECT_EQ(ReadAudio("target.wav"), MakeNoise(20000));
    EXPECT_EQ(fs::status(In("target.wav")).permissions(),
              fs::perms::owner_read | fs::perms::owner_write);
}

TEST_F(AudioFile, WhatIsNoAudioIsRefused) {
    const std::pair<std::string, const char*> cases[] = {
        {In("missing.wav"), "No such file"},
        {In(""), "is a folder"},
        {Write("text.wav", "not audio at all, but some words\n"), "isn't an audio file"},
        {Write("empty.wav", ""), "is empty"},
        {Write("three.wav", MakeWav(3, 48000, std::string(12, '\0'))), "has 3 channels"},
        {Write("still.wav", MakeWav(2, 0, std::string(12, '\0'))), "sample rate of 0"},
        {Write("cut.flac", "fLaC"), "isn't an audio file"},
    };
    for (const auto& [path, fault] : cases) {
        const CStatus status = CAudioReader().Open(path);
        ASSERT_FALSE(status) << path;
        const std::string text = status.GetFault().m_Text;
        EXPECT_TRUE(text.starts_with(path) && text.find(fault) != std::string::npos) << text;
    }
}

} // namespace
} // namespace CairnHostTests
