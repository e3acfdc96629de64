// Folders that go away with their test, and short ways to files and samples for the tests of the
// host.
#pragma once

#include "cairn-host/AudioReader.h"
#include "cairn-host/AudioWriter.h"
#include "cairn-host/Render.h"

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
            count = static_cast<std::size_t>(
                *reader.Read(&audio.m_Left[start], &audio.m_Right[start], s_Piece));
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

class CRenderTest : public CFolderTest {
protected:
    // From in.wav to out.wav unless told otherwise; the fault, or nothing.
    std::string Try(CairnHost::SRenderOptions options) {
        if (options.m_Input.empty())
            options.m_Input = In("in.wav");
        if (options.m_Output.empty())
            options.m_Output = In("out.wav");
        CairnHost::CProgress progress(nullptr);
        const auto report = CairnHost::Render(options, progress);
        m_Notes = report ? report->m_Notes : std::vector<std::string>();
        return report.GetFault().m_Text;
    }
    SAudio Run(const CairnHost::SRenderOptions& options) {
        EXPECT_EQ(Try(options), "");
        return ReadAudio("out.wav");
    }
    SAudio RunWith(const std::vector<std::string>& settings,
                   CairnHost::SRenderOptions options = {}) {
        options.m_Settings = settings;
        return Run(options);
    }

    std::vector<std::string> m_Notes;
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

// A RIFF file of 16-bit samples; a rate below 65536.
inline std::string MakeWav(int channels, int rate, const std::string& data) {
    const int size = static_cast<int>(data.size());
    return "RIFF" + Bytes({36 + size, 0, 0, 0}) + "WAVEfmt " +
           Bytes({16, 0, 0, 0, 1, 0, channels,     0, rate, rate >> 8,
                  0,  0, 0, 0, 0, 0, 2 * channels, 0, 16,   0}) +
           "data" + Bytes({size, 0, 0, 0}) + data;
}

} // namespace CairnHostTests
