// Proves that a host gets at presets and MIDI mappings by name, and hears in one line what is wrong
// with a request, which then changes nothing.
#include "hosts/rtas/TestProcess.h"

#include <gtest/gtest.h>

namespace LatheExt::RTASPlugin {
namespace {

TEST(PluginCommandsTest, PresetsAreSavedAndListed) {
    CTestProcess host;
    const std::string presets = host.m_Settings.GetDataPath().GetUserPresetsFolder();
    host.Start();
    std::filesystem::create_directories(presets + "/A/B");
    EXPECT_EQ(host.Command("save-preset", presets + "/Default.preset"), "");
    EXPECT_EQ(host.Command("save-preset", presets + "/A/B/Loud\t1.preset"), "");
    EXPECT_EQ(host.Command("current-preset"), "Loud?1");
    EXPECT_EQ(host.Command("list-presets"),
              "0\tuser\tA/B\tLoud?1\t\n1\tuser\t\tDefault\tdefault\n");
    EXPECT_EQ(host.Command("load-preset", presets + "/Default.preset"), "");
    EXPECT_EQ(host.Command("current-preset"), "Default");
}

TEST(PluginCommandsTest, AMappingHasARangeAndACurve) {
    CTestProcess host;
    auto& internals = host.Start().m_Process.GetInternals();
    EXPECT_EQ(host.Command("map-midi", "2\t127\t0\t1.5\t0.5\tExp"), "");
    EXPECT_FALSE(internals.GetConnections().GetMIDIInputDefault()->GetValue());
    EXPECT_TRUE(internals.GetConnections().GetMIDIOutputDefault()->GetValue());
    const auto& setting = internals.GetMIDIController().GetInputSettings()[1];
    EXPECT_EQ(std::tuple(setting.GetNumber(), setting.GetMin(), setting.GetMax()),
              std::tuple(127, 1.5, 0.5));
    EXPECT_EQ(setting.GetCurve(), Lathe::Math::EParamValueCurve::Exp);
}

TEST(PluginCommandsTest, WhatIsWrongIsNamed) {
    CTestProcess host;
    host.Start().m_Home.Write("half", "<Preset><inputParams");
    host.m_Home.Write("other", "<Settings/>");
    const std::string home = host.m_Home.In("");
    const std::string before = host.Command("current-preset");
    for (const auto& [command, argument, fault] : {
             std::tuple{"load-preset", home + "none", home + "none: there is no such file"},
             {"load-preset", home + "half", home + "half: not a well-formed document"},
             {"load-preset", home + "other", home + "other: not a preset"},
             {"apply-preset", "0", "'0' is no index of a preset"},
             {"map-midi", "2\t1\t1\t\t\t\t", "a mapping has six fields with tabs between them"},
             {"map-midi", "5\t1\t1\t\t\t", "control '5' is not a number from 1 to 4"},
             {"map-midi", "2\t128\t1\t\t\t", "controller '128' is not a number from 0 to 127"},
             {"map-midi", "2\t1\t1x\t\t\t", "channel '1x' is not a number from 0 to 16"},
             {"map-midi", "3\t1\t0\t\t\t", "channel '0' is not a number from 1 to 16"},
             {"map-midi", "2\t1\t1\tlow\t\t", "minimum 'low' is not a value of the control"},
             {"map-midi", "2\t1\t1\t\t2.5\t", "maximum '2.5' is not a value of the control"},
             {"map-midi", "2\t1\t1\t\t\tSteep", "curve 'Steep' is not a curve"},
         })
        EXPECT_EQ(host.Command(command, argument), "! " + std::string(fault));
    EXPECT_EQ(host.Command("current-preset"), before);
    EXPECT_EQ(host.Command("save-preset", home + "no/a"), "! " + home + "no/a: can't be written");
}

} // namespace
} // namespace LatheExt::RTASPlugin
