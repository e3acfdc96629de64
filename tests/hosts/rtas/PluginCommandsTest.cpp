// Proves that a host gets at presets and MIDI mappings by name, and hears in one line what is wrong
// with a request, which then changes nothing.
#include "hosts/rtas/TestProcess.h"

#include "dsp/PluginsFilters/DualCairnEQ.h"

#include <gtest/gtest.h>

namespace LatheExt::RTASPlugin {
namespace {

class PluginCommands : public testing::Test {
protected:
    std::string Run(const char* name, const std::string& argument = "") {
        return m_Host.Command(name, argument);
    }
    std::string In(const std::string& name) { return m_Host.m_Home.In(name); }

    CTestProcess m_Host;
};

TEST_F(PluginCommands, PresetsAreListedSavedAndLoaded) {
    m_Host.Start();
    EXPECT_EQ(Run("list-presets"), "");
    const std::string presets = m_Host.m_Settings.GetDataPath().GetUserPresetsFolder();
    m_Host.m_Process.OnControlValueChanged(2, s_Top);
    std::filesystem::create_directories(presets + "/A/B");
    EXPECT_EQ(Run("save-preset", presets + "/A/B/Loud\t1.preset"), "");
    EXPECT_EQ(Run("current-preset"), "Loud?1");
    m_Host.m_Process.OnControlValueChanged(2, s_Bottom);
    EXPECT_EQ(Run("save-preset", presets + "/Default.preset"), "");
    EXPECT_EQ(Run("list-presets"), "0\tuser\tA/B\tLoud?1\t\n1\tuser\t\tDefault\tdefault\n");
    EXPECT_EQ(Run("apply-preset", "0"), "");
    EXPECT_EQ(m_Host.GetValue(2), s_Top);
    EXPECT_EQ(Run("load-preset", presets + "/Default.preset"), "");
    EXPECT_EQ(m_Host.GetValue(2), s_Bottom);
    EXPECT_EQ(Run("current-preset"), "Default");
}

TEST_F(PluginCommands, WhatCantBeReadOrWrittenIsNamed) {
    m_Host.Start();
    m_Host.m_Process.OnControlValueChanged(2, s_Top);
    m_Host.m_Home.Write("half.preset", "<Preset><inputParams");
    m_Host.m_Home.Write("other.preset", "<Settings/>");
    EXPECT_EQ(Run("load-preset", In("none")), "! " + In("none") + ": there is no such file");
    EXPECT_EQ(Run("load-preset", In("half.preset")),
              "! " + In("half.preset") + ": not a well-formed document");
    EXPECT_EQ(Run("load-preset", In("other.preset")), "! " + In("other.preset") + ": not a preset");
    EXPECT_EQ(Run("save-preset", In("none/a.preset")),
              "! " + In("none/a.preset") + ": can't be written");
    for (const char* index : {"0", "-1", "", "x", "0 "})
        EXPECT_EQ(Run("apply-preset", index),
                  std::string("! '") + index + "' is no index of a preset");
    EXPECT_EQ(Run("no-command")[0], '!');
    EXPECT_EQ(m_Host.GetValue(2), s_Top);
}

TEST(PluginCommandsTest, AMappingMovesItsControl) {
    CTestProcess host(std::make_unique<PluginsFilters::CDualCairnEQ>());
    host.Start();
    // Control 3 is a gain from -40 to 40 dB.
    const auto move = [&host](const char* mapping, int channel, int number) {
        EXPECT_EQ(host.Command("map-midi", mapping), "");
        host.m_Process.OnControlValueChanged(3, 1); // Some other value.
        host.Render(64, {{0,
                          3,
                          {static_cast<std::uint8_t>(0xB0 + channel - 1),
                           static_cast<std::uint8_t>(number), 127}}});
        char text[16];
        host.m_Process.GetControl(3)->GetValueString(text, 15, host.GetValue(3));
        return std::string(text);
    };
    EXPECT_EQ(move("3\t5\t0\t\t\t", 9, 5), "+40 dB");
    EXPECT_EQ(move("3\t127\t16\t10\t-20\tExp", 16, 127), "-20 dB");
    // Of the instance's own from now on.
    const std::vector<char> chunk = host.GetChunk();
    const std::string state(chunk.begin() + 56, chunk.end());
    EXPECT_NE(state.find("MIDIInputDefault=\"0\""), std::string::npos);
    EXPECT_NE(state.find("MIDIOutputDefault=\"1\""), std::string::npos);
    EXPECT_NE(state.find("curve=\"Exp\""), std::string::npos);
}

TEST_F(PluginCommands, TheOffendingPartIsNamed) {
    m_Host.Start();
    constexpr std::pair<const char*, const char*> s_Faults[] = {
        {"", "a mapping has six fields with tabs between them"},
        {"2\t1\t1\t\t\t\t", "a mapping has six fields with tabs between them"},
        {"5\t1\t1\t\t\t", "control '5' is not a number from 1 to 4"},
        {"0\t1\t1\t\t\t", "control '0' is not a number from 1 to 4"},
        {"2\t128\t1\t\t\t", "controller '128' is not a number from 0 to 127"},
        {"2\t1x\t1\t\t\t", "controller '1x' is not a number from 0 to 127"},
        {"2\t1\t17\t\t\t", "channel '17' is not a number from 0 to 16"},
        {"3\t1\t0\t\t\t", "channel '0' is not a number from 1 to 16"},
        {"2\t1\t1\tlow\t\t", "minimum 'low' is not a value of the control"},
        {"2\t1\t1\t\t2.5\t", "maximum '2.5' is not a value of the control"},
        {"2\t1\t1\t\t\tSteep", "curve 'Steep' is not a curve"},
    };
    const std::vector<char> before = m_Host.GetChunk();
    for (const auto& [mapping, fault] : s_Faults)
        EXPECT_EQ(Run("map-midi", mapping), std::string("! ") + fault);
    EXPECT_EQ(m_Host.GetChunk(), before);
}

} // namespace
} // namespace LatheExt::RTASPlugin
