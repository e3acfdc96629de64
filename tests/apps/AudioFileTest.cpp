// Audio files: what is written reads back as exactly as the format can hold it, and a file that
// can't be completed leaves nothing behind.
#include "apps/TestFiles.h"

#include <cmath>
#include <limits>
#include <random>

namespace CairnHostTests {
namespace {

using namespace CairnHost;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNoNumber = std::numeric_limits<float>::quiet_NaN();

// Frames beyond the writer's and reader's chunks, within full scale.
SAudio MakeNoise(int frames) {
    SAudio audio;
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> sample(-0.9f, 0.9f);
    for (int i = 0; i < frames; ++i) {
        audio.m_Left.push_back(sample(generator));
        audio.m_Right.push_back(sample(generator));
    }
    return audio;
}

class AudioFile : public CFolderTest {
protected:
    std::string GetOpenFault(const std::string& name, int sampleRate,
                             std::optional<ESubtype> subtype, std::int64_t frames = 0) {
        CAudioWriter writer;
        const CStatus status = writer.Open(In(name), sampleRate, subtype, frames);
        return status ? std::string() : status.GetFault().m_Text;
    }
};

TEST_F(AudioFile, EachFormatReadsBackWithinItsResolution) {
    struct SCase {
        const char* m_Name;
        std::optional<ESubtype> m_Subtype;
        double m_Tolerance; // Of one sample: a step of the coding; noise has little that the lossy
                            // coder keeps.
    };
    const double step24 = 1.0 / (1 << 23);
    const double step16 = 1.0 / (1 << 15);
    const SCase cases[] = {
        {"a.wav", std::nullopt, 0.0},        {"b.WAV", ESubtype::Pcm24, step24},
        {"c.wav", ESubtype::Pcm16, step16},  {"d.flac", std::nullopt, step24},
        {"e.flac", ESubtype::Pcm16, step16}, {"f.aiff", ESubtype::Float, 0.0},
        {"g.aif", ESubtype::Pcm24, step24},  {"h.ogg", std::nullopt, 2.0},
    };
    const SAudio audio = MakeNoise(10001);
    for (const SCase& row : cases) {
        SCOPED_TRACE(row.m_Name);
        WriteAudio(row.m_Name, audio, row.m_Subtype);
        const SAudio back = ReadAudio(row.m_Name);
        EXPECT_EQ(back.m_SampleRate, audio.m_SampleRate);
        ASSERT_EQ(back.m_Left.size(), audio.m_Left.size());
        for (std::size_t i = 0; i < audio.m_Left.size(); ++i) {
            ASSERT_NEAR(back.m_Left[i], audio.m_Left[i], row.m_Tolerance) << i;
            ASSERT_NEAR(back.m_Right[i], audio.m_Right[i], row.m_Tolerance) << i;
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
    EXPECT_NE(GetOpenFault("a.flac", 48000, ESubtype::Float).find("expected pcm24 or pcm16"),
              std::string::npos);
    EXPECT_NE(GetOpenFault("a.ogg", 48000, ESubtype::Pcm16).find("expected no --subtype"),
              std::string::npos);
    EXPECT_NE(GetOpenFault("a.mp9", 48000, std::nullopt).find("expected .wav, .flac"),
              std::string::npos);
    EXPECT_NE(GetOpenFault("wav", 48000, std::nullopt).find("unknown extension"),
              std::string::npos);
    for (const auto& [name, rate] : {std::pair{"a.flac", 655350}, {"a.ogg", 200000}}) {
        EXPECT_EQ(GetOpenFault(name, rate, std::nullopt), "");
        EXPECT_NE(GetOpenFault(name, rate + 1, std::nullopt).find("expected a .wav"),
                  std::string::npos);
    }
    // Half a billion frames of floats pass 4 GiB, and one more flavour of .wav holds them.
    EXPECT_NE(GetOpenFault("a.aiff", 48000, std::nullopt, 600000000).find("4 GiB"),
              std::string::npos);
    EXPECT_EQ(GetOpenFault("a.wav", 48000, std::nullopt, 600000000), "");
    EXPECT_TRUE(List().empty());
}

TEST_F(AudioFile, ValuesThatAFormatCantHoldAreLimitedAndCounted) {
    const SAudio audio = {48000, {2.0f, kInfinity, 0.25f, 1e30f}, {-2.0f, kNoNumber, 0.5f, -1e30f}};
    for (const char* name : {"a.flac", "b.ogg", "c.wav"}) {
        SCOPED_TRACE(name);
        CAudioWriter writer;
        ASSERT_TRUE(writer.Open(In(name), audio.m_SampleRate, std::nullopt, 0));
        ASSERT_TRUE(writer.Write(audio.m_Left.data(), audio.m_Right.data(), 4));
        ASSERT_TRUE(writer.Close());
        const SAudio back = ReadAudio(name);
        ASSERT_EQ(back.m_Left.size(), audio.m_Left.size());
        const bool keeps = std::string(name) == "c.wav";
        EXPECT_EQ(writer.GetLimitedCount() > 0, !keeps);
        EXPECT_EQ(std::isnan(back.m_Right[1]), keeps);
        EXPECT_EQ(std::isinf(back.m_Left[1]), keeps);
    }
    const SAudio clipped = ReadAudio("a.flac");
    EXPECT_NEAR(clipped.m_Left[0], 1.0f, 1e-6);
    EXPECT_EQ(clipped.m_Right[0], -1.0f);
    EXPECT_EQ(clipped.m_Right[1], 0.0f);
    EXPECT_EQ(clipped.m_Left[2], 0.25f);
}

TEST_F(AudioFile, AppearsOnlyWhenComplete) {
    const std::string old = "what was there before";
    Write("a.wav", old);
    const SAudio audio = MakeNoise(20000);
    {
        CAudioWriter writer;
        ASSERT_TRUE(writer.Open(In("a.wav"), 48000, std::nullopt, 0));
        ASSERT_TRUE(writer.Write(audio.m_Left.data(), audio.m_Right.data(), 20000));
        EXPECT_EQ(ReadBytes("a.wav"), old);
    }
    EXPECT_EQ(ReadBytes("a.wav"), old);
    EXPECT_EQ(List(), std::vector<std::string>{"a.wav"});
    WriteAudio("a.wav", audio);
    EXPECT_EQ(ReadAudio("a.wav"), audio);
}

TEST_F(AudioFile, FullDiskAndLinksAreSeen) {
    std::filesystem::create_symlink("/dev/full", In("full.wav"));
    CAudioWriter writer;
    const SAudio audio = MakeNoise(20000);
    CStatus status = writer.Open(In("full.wav"), 48000, std::nullopt, 0);
    if (status)
        status = writer.Write(audio.m_Left.data(), audio.m_Right.data(), 20000);
    if (status)
        status = writer.Close();
    ASSERT_FALSE(status);
    EXPECT_EQ(status.GetFault().m_Text,
              In("full.wav") + ": can't be written: No space left on device");

    std::filesystem::create_symlink(In("target.wav"), In("link.wav"));
    WriteAudio("target.wav", {48000, {1.0f}, {1.0f}});
    WriteAudio("link.wav", audio);
    EXPECT_TRUE(std::filesystem::is_symlink(In("link.wav")));
    EXPECT_EQ(ReadAudio("target.wav"), audio);
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
        CAudioReader reader;
        const CStatus status = reader.Open(path);
        ASSERT_FALSE(status) << path;
        EXPECT_EQ(status.GetFault().m_Text.rfind(path, 0), 0u);
        EXPECT_NE(status.GetFault().m_Text.find(fault), std::string::npos)
            << status.GetFault().m_Text;
    }
}

TEST_F(AudioFile, DamagedFileIsReportedWhereItEnds) {
    WriteAudio("whole.flac", MakeNoise(50000));
    const std::string bytes = ReadBytes("whole.flac");
    std::string damaged = bytes;
    for (std::size_t i = bytes.size() / 2; i < bytes.size(); ++i)
        damaged[i] = static_cast<char>(i * 7);
    for (const std::string& content : {bytes.substr(0, bytes.size() / 2), damaged}) {
        CAudioReader reader;
        ASSERT_TRUE(reader.Open(Write("damaged.flac", content)));
        std::vector<float> left(60000);
        std::vector<float> right(60000);
        const auto read = reader.Read(left.data(), right.data(), 60000);
        EXPECT_FALSE(read) << *read;
    }
}

} // namespace
} // namespace CairnHostTests
