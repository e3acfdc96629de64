// The program as its user meets it: exit status, one-line messages, and the files that it leaves.
#include "apps/TestFiles.h"
#include "cairn-host/Text.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sys/wait.h>

namespace CairnHostTests {
namespace {

class Program : public CFolderTest {
protected:
    // In the test's folder; the arguments are for the shell.
    int Run(const std::string& arguments, const std::string& before = {}) {
        const std::string command = "cd '" + m_Folder.string() + "' && " + before + " '" +
                                    CAIRN_HOST_PATH + "' " + arguments + " >stdout 2>stderr";
        const int status = std::system(command.c_str());
        m_Output = ReadBytes("stdout");
        m_Error = ReadBytes("stderr");
        std::filesystem::remove(In("stdout"));
        std::filesystem::remove(In("stderr"));
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    void CheckFails(const std::string& arguments, int status, const std::string& part) {
        SCOPED_TRACE(arguments);
        const std::vector<std::string> before = List();
        EXPECT_EQ(Run(arguments), status);
        EXPECT_EQ(m_Output, "");
        EXPECT_EQ(m_Error.rfind("cairn-host: ", 0), 0u) << m_Error;
        EXPECT_EQ(std::count(m_Error.begin(), m_Error.end(), '\n'), 1) << m_Error;
        EXPECT_NE(m_Error.find(part), std::string::npos) << m_Error;
        EXPECT_EQ(List(), before) << "a failure left files behind";
    }

    std::string m_Output;
    std::string m_Error;
};

TEST_F(Program, FaultsAreOneLineEachAndLeaveNothing) {
    WriteAudio("in.wav", MakeLevel(2000, 0.1f));
    WriteAudio("none.wav", {});
    Write("bad.csv", "frame,parameter,value\n0,Mid (1),99\n");
    Write("events.csv", "frame,parameter,value\n0,Mid (1),9\n");
    Write("file", "");
    for (const char* name : {"full.wav", "full.png", "full.svg"})
        std::filesystem::create_symlink("/dev/full", In(name));
    std::filesystem::create_symlink("file", In("link"));
    std::filesystem::copy_file(FAKE_MODULES "Good.so", In("alone.so"));
    struct SCase {
        const char* m_Arguments;
        int m_Status;
        const char* m_Part;
    };
    const SCase cases[] = {
        {"", 2, "--help"},
        {"polish", 2, "\"polish\": expected render"},
        {"render in.wav", 2, "OUTPUT"},
        {"render in.wav out.wav --louder", 2, "--louder"},
        {"render in.wav out.wav --tail soon", 2, "--tail"},
        {"response", 2, "--output"},
        {"response -o a.csv --points many", 2, "--points"},
        {"render missing.wav out.wav", 1, "missing.wav: can't be read: No such file"},
        {"render none.wav out.ogg", 1, "out.ogg: such files can't be empty"},
        {"render in.wav out.xyz", 1, "out.xyz: unknown extension"},
        {"render in.wav nowhere/out.wav", 1, "nowhere/out.wav: can't be written: No such file"},
        {"render in.wav file/out.wav", 1, "file/out.wav: can't be written: Not a directory"},
        {"render in.wav full.wav", 1, "full.wav: can't be written: No space left"},
        {"render in.wav out.wav --subtype mp3", 1, "expected float, pcm24 or pcm16"},
        {"render in.wav out.wav --block-size 0", 1, "--block-size \"0\""},
        {"render in.wav out.wav --block-size 99999999999", 1, "from 1 to 1048576"},
        {"render in.wav out.wav --tail -1", 1, "--tail -1: expected seconds"},
        {"render in.wav out.wav --tail nan", 1, "--tail nan"},
        {"render in.wav out.wav --set 'Mid (1)=+60'", 1, "expected -40 to 40 dB"},
        {"render in.wav out.wav --set 'Mid (1)=1' --set 'x\ny=1'", 1, "\"x?y\""},
        {"render in.wav out.wav --automation bad.csv", 1, "bad.csv, line 2: \"99\""},
        {"render in.wav out.wav --automation none.csv", 1, "none.csv: can't be read"},
        {"response -o full.png", 1, "full.png: can't be written: No space left"},
        {"response -o full.svg", 1, "full.svg: can't be written: No space left"},
        {"response -o a.txt", 1, "expected .csv, .png or .svg"},
        {"response -o a.csv --points 1", 1, "--points 1: expected 2 to"},
        {"response -o a.csv --from 500 --to 500", 1, "--from 500: expected less than --to"},
        {"response -o a.csv --from 1e-9", 1, "--from 1e-09: expected Hz from 0.001"},
        {"response -o a.csv --rate 0", 1, "--rate 0"},
        {"response -o nowhere/a.png", 1, "nowhere/a.png: can't be written"},
        {"response -o a.png --set Loud=1", 1, "no parameter is called \"Loud\""},
        {"demo file", 1, "file: "},
        {"render in.wav out.wav --midi bad.csv", 1, "bad.csv: isn't a MIDI file"},
        {"render in.wav out.wav --midi-map 0=cc:7,curve:Bent", 1, "curve \"Bent\": expected Log3, "},
        {"render in.wav out.wav --preset none", 1, "none: can't be read: No such file"},
        {"render in.wav out.wav --preset bad.csv", 1,
         "bad.csv: can't be loaded: not a well-formed"},
        {"render in.wav out.wav --tempo 0", 1, "--tempo 0: expected quarter notes a minute from 4"},
        {"render in.wav out.wav --meter 4", 1, "--meter \"4\": expected N/M"},
        {"render in.wav out.wav --meter 4/3", 1, "--meter \"4/3\""},
        {"render in.wav out.wav --midi-out ./out.wav", 1, "by both OUTPUT and --midi-out"},
        {"render in.wav out.wav --save-preset in.wav", 1, "by both --save-preset and INPUT"},
        {"render in.wav out.wav --preset link --state-out file", 1, "--state-out and --preset"},
        {"render in.wav out.wav --midi-out nowhere/a", 1, "nowhere/a: can't be written"},
        {"render in.wav out.wav --state-out full.png", 1, "full.png: can't be written: No space"},
        {"render in.wav out.wav --module none.so", 1,
         "none.so: the plug-in's module can't be read"},
        {"presets --module file", 1, "file: can't be loaded as a module: file too short"},
        {"info --module .", 1, ".: is a folder"},
        {"info --module alone.so", 1, "its data folder isn't there: expected"},
        {"info --module " FAKE_MODULES "Version.so", 1, "is of another version: expected 1"},
        {"info --module " FAKE_MODULES "Entry.so", 1, "no entry point CDSPDoHostCommand"},
        {"render in.wav out.wav --module " FAKE_MODULES "Start.so", 1,
         "Start.so: can't start (-7003)"},
    };
    for (const SCase& row : cases)
        CheckFails(row.m_Arguments, row.m_Status, row.m_Part);
}

TEST_F(Program, DiskThatFillsUpHalfWayLeavesTheOldFile) {
    WriteAudio("in.wav", MakeLevel(200000, 0.1f));
    Write("out.wav", "old");
    EXPECT_EQ(Run("render in.wav out.wav", "ulimit -f 100 &&"), 1);
    EXPECT_EQ(m_Error, "cairn-host: out.wav: can't be written: File too large\n");
    EXPECT_EQ(ReadBytes("out.wav"), "old");
    EXPECT_EQ(List(), (std::vector<std::string>{"in.wav", "out.wav"}));
}

TEST_F(Program, RendersQuietlyWhereNobodyWatches) {
    WriteAudio("in.wav", MakeLevel(2000, 0.5f));
    EXPECT_EQ(Run("render in.wav out.flac --set 'Gain (1)=+1 dB' --set 7=1"), 0);
    EXPECT_EQ(m_Output + m_Error, "");
    EXPECT_NEAR(ReadAudio("out.flac").m_Right.back(), 0.5 * std::pow(10.0, 0.05), 1e-5);
    EXPECT_EQ(Run("render in.wav out.flac --set 'Gain (1)=+20'"), 0);
    EXPECT_NE(m_Error.find("2000 samples beyond full scale, or no numbers, were limited"),
              std::string::npos);
    EXPECT_EQ(Run("render --quiet in.wav out.flac --set 'Gain (1)=+20'"), 0);
    EXPECT_EQ(m_Error, "");
}

TEST_F(Program, ParametersAreListedForPeopleAndPrograms) {
    EXPECT_EQ(Run("params"), 0);
    EXPECT_EQ(std::count(m_Output.begin(), m_Output.end(), '\n'), 15);
    EXPECT_NE(m_Output.find("13     Bypass "), std::string::npos);
    EXPECT_NE(m_Output.find("2      Frequency (1)  20       22000    650      Hz    650\n"),
              std::string::npos);
    EXPECT_EQ(Run("params --json"), 0);
    EXPECT_EQ(m_Output.front(), '[');
    EXPECT_NE(m_Output.find("\"name\": \"High (2)\""), std::string::npos);
}

TEST_F(Program, ResponseHoldsAllCurvesAtExactFrequencies) {
    ASSERT_EQ(Run("response -o a.csv --from 1000 --to 9000 --points 3 --rate 16000 "
                  "--set 'Frequency (2)=3000' --set 'Mid (2)=-7.5'"),
              0);
    std::istringstream lines(ReadBytes("a.csv"));
    std::string line;
    std::getline(lines, line);
    std::vector<std::vector<std::string>> rows;
    while (std::getline(lines, line)) {
        rows.push_back(CairnHost::SplitCsvLine(line).value());
        ASSERT_EQ(rows.back().size(), 13u);
    }
    ASSERT_EQ(rows.size(), 3u);
    EXPECT_EQ(rows[0][0], "1000");
    EXPECT_NEAR(std::atof(rows[1][0].c_str()), 3000.0, 1e-6);
    EXPECT_EQ(rows[2][0], "9000");
    // Column 2 is channel (1) in dB, 8 channel (2), 10 its mid band; 9000 Hz is beyond Nyquist.
    EXPECT_NEAR(std::atof(rows[1][2].c_str()), 0.0, 1e-6);
    EXPECT_NEAR(std::atof(rows[1][8].c_str()), -7.5, 1e-6);
    EXPECT_NEAR(std::atof(rows[1][10].c_str()), -7.5, 1e-6);
    EXPECT_EQ(rows[2][8], "-inf");
    EXPECT_EQ(rows[2][1], "0");
}

TEST_F(Program, PluginTellsWhatItIs) {
    ASSERT_EQ(Run("info"), 0) << m_Error;
    for (const char* part :
         {"Marrow Sound (mrws)", "Product       5455\n", "Marrow's Cairn EQ 4 Dual\n", "  MWCn\n",
          "\n0     0           5455     0x1       1, 1           2, 2\n", "Latency       0 samples",
          "\n1        bypass  2      Off ", "  Frequency(2)  Frqnc(2)  Fc(2\n", "\nelck ",
          "\nmrws ", "\n1     1 2 3 4 5 6 7 8\n2     9 10 11 12 13 14\n"})
        EXPECT_NE(m_Output.find(part), std::string::npos) << part << "isn't in\n" << m_Output;
}

TEST_F(Program, PresetsAreListedAsATree) {
    ASSERT_EQ(Run("presets"), 0) << m_Error;
    EXPECT_EQ(m_Output.find("user/"), std::string::npos);
    WriteAudio("in.wav", MakeLevel(10, 0.1f));
    const std::string folder =
        GetHome() + "/documents/Marrow Sound/Marrow's Cairn EQ 4/Dual/Presets/Warm/Low";
    std::filesystem::create_directories(folder);
    ASSERT_EQ(Run("render in.wav out.wav --save-preset \"" + folder + "/Round.preset\""), 0)
        << m_Error;
    ASSERT_EQ(Run("presets"), 0) << m_Error;
    EXPECT_NE(m_Output.find("user/\n  Warm/\n    Low/\n"), std::string::npos) << m_Output;
    EXPECT_NE(m_Output.find("  Round\n"), std::string::npos) << m_Output;
    ASSERT_EQ(Run("presets --json"), 0) << m_Error;
    EXPECT_NE(m_Output.find("\"folder\": \"Warm/Low\",\n    \"name\": \"Round\""),
              std::string::npos)
        << m_Output;
}

TEST_F(Program, DemoFillsItsFolderAndTellsInThreeLines) {
    ASSERT_EQ(Run("demo new/folder"), 0);
    EXPECT_EQ(std::count(m_Output.begin(), m_Output.end(), '\n'), 3);
    EXPECT_EQ(m_Error, "");
    const SAudio before = ReadAudio("new/folder/demo.wav");
    const SAudio after = ReadAudio("new/folder/demo-equalised.wav");
    ASSERT_EQ(before.m_Left.size(), 288000u);
    ASSERT_EQ(after.m_Left.size(), 288000u);
    double sum = 0.0;
    double change = 0.0;
    for (std::size_t i = 0; i < before.m_Left.size(); ++i) {
        sum += std::pow(before.m_Left[i], 2);
        change += std::pow(after.m_Left[i] - before.m_Left[i], 2);
        EXPECT_LT(std::abs(after.m_Left[i]), 1.0f);
    }
    EXPECT_GT(sum, 100.0) << "as good as silent";
    EXPECT_GT(change, 0.05 * sum) << "nobody would hear that";
    EXPECT_GT(std::filesystem::file_size(In("new/folder/demo-response.png")), 10000u);
}

} // namespace
} // namespace CairnHostTests
