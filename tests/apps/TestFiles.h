// Folders that go away with their test, and short ways to files and samples for the tests of the
// host.
#pragma once

#include "cairn-host/AudioReader.h"
#include "cairn-host/AudioWriter.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <random>
#include <sstream>
#include <stdlib.h>
#include <string>
#include <vector>

namespace CairnHostTests {

struct SAudio {
    int m_SampleRate = 48000;
    std::vector<float> m_Left;
    std::vector<float> m_Right;

    bool operator==(const SAudio&) const = default;
};

// White noise within +-0.9, the same on every run.
inline SAudio MakeNoise(std::size_t frames) {
    SAudio audio;
    std::mt19937 generator(1);
    std::uniform_real_distribution<float> sample(-0.9f, 0.9f);
    for (std::size_t i = 0; i < frames; ++i) {
        audio.m_Left.push_back(sample(generator));
        audio.m_Right.push_back(sample(generator));
    }
    return audio;
}

inline SAudio MakeLevel(std::size_t frames, float level) {
    return {48000, std::vector<float>(frames, level), std::vector<float>(frames, level)};
}

class CFolderTest : public testing::Test {
protected:
    CFolderTest() {
        std::string name = (std::filesystem::temp_directory_path() / "cairn-XXXXXX").string();
        m_Folder = ::mkdtemp(name.data());
        // The plug-in keeps presets and settings among the user's files: here it finds its own.
        ::setenv("HOME", GetHome().c_str(), 1);
        ::setenv("XDG_CONFIG_HOME", (GetHome() + "/config").c_str(), 1);
        ::setenv("XDG_DOCUMENTS_DIR", (GetHome() + "/documents").c_str(), 1);
    }
    ~CFolderTest() override {
        std::error_code ignored;
        std::filesystem::remove_all(m_Folder, ignored);
        std::filesystem::remove_all(GetHome(), ignored);
    }

    std::string In(const std::string& name) const { return (m_Folder / name).string(); }
    // Beside the test's folder, and made by who needs it.
    std::string GetHome() const { return m_Folder.string() + "-home"; }

    // The path.
    std::string Write(const std::string& name, const std::string& bytes) const {
        std::ofstream(In(name), std::ios::binary) << bytes;
        return In(name);
    }
    std::string ReadBytes(const std::string& name) const {
        std::ostringstream bytes;
        bytes << std::ifstream(In(name), std::ios::binary).rdbuf();
        return bytes.str();
    }

    void WriteAudio(const std::string& name, const SAudio& audio,
                    std::optional<CairnHost::ESubtype> subtype = std::nullopt) const {
        CairnHost::CAudioWriter writer;
        const int frames = static_cast<int>(audio.m_Left.size());
        EXPECT_TRUE(writer.Open(In(name), audio.m_SampleRate, subtype, frames));
        EXPECT_TRUE(writer.Write(audio.m_Left.data(), audio.m_Right.data(), frames));
        EXPECT_TRUE(writer.Close());
    }
    SAudio ReadAudio(const std::string& name) const {
        CairnHost::CAudioReader reader;
        const CairnHost::CStatus status = reader.Open(In(name));
        EXPECT_TRUE(status) << status.GetFault().m_Text;
        SAudio audio;
        audio.m_SampleRate = reader.GetSampleRate();
        // An odd size, so that the reader's own chunks never fit.
        constexpr std::size_t s_Piece = 777;
        for (std::size_t count = s_Piece; status && count == s_Piece;) {
            const std::size_t start = audio.m_Left.size();
            audio.m_Left.resize(start + s_Piece);
            audio.m_Right.resize(start + s_Piece);
            const auto read =
                reader.Read(&audio.m_Left[start], &audio.m_Right[start], static_cast<int>(s_Piece));
            EXPECT_TRUE(read) << read.GetFault().m_Text;
            count = read ? static_cast<std::size_t>(*read) : 0;
            audio.m_Left.resize(start + count);
            audio.m_Right.resize(start + count);
        }
        return audio;
    }

    std::vector<std::string> List() const {
        std::vector<std::string> names;
        for (const auto& entry : std::filesystem::directory_iterator(m_Folder))
            names.push_back(entry.path().filename().string());
        std::sort(names.begin(), names.end());
        return names;
    }

    std::filesystem::path m_Folder;
};

inline std::string Bytes(std::initializer_list<int> bytes) {
    std::string text;
    for (const int byte : bytes)
        text += static_cast<char>(byte);
    return text;
}

// A MIDI file of these tracks; the division is two bytes.
inline std::string MakeMidi(int format, std::initializer_list<int> division,
                            const std::vector<std::string>& tracks) {
    std::string file = "MThd" + Bytes({0, 0, 0, 6, 0, format, 0, static_cast<int>(tracks.size())});
    file += Bytes(division);
    for (const std::string& track : tracks)
        file += "MTrk" + Bytes({0, 0, 0, static_cast<int>(track.size())}) + track;
    return file;
}

// A RIFF file of 16-bit samples with whatever header a test wants.
inline std::string MakeWav(unsigned channels, unsigned sampleRate, const std::string& data) {
    const auto number = [](unsigned value, int bytes) {
        std::string text;
        for (int i = 0; i < bytes; ++i)
            text += static_cast<char>(value >> (8 * i) & 0xff);
        return text;
    };
    const std::string format = number(1, 2) + number(channels, 2) + number(sampleRate, 4) +
                               number(sampleRate * channels * 2, 4) + number(channels * 2, 2) +
                               number(16, 2);
    const std::string body = "WAVEfmt " + number(16, 4) + format + "data" +
                             number(static_cast<unsigned>(data.size()), 4) + data;
    return "RIFF" + number(static_cast<unsigned>(body.size()), 4) + body;
}

} // namespace CairnHostTests
