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
#if defined(CAIRN_PARSER_TELLS_ERRORS)
        m_Error.erase(0, m_Error.rfind("cairn-host: ")); // The parser's own words come before.
#endif
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
    Write("file", "");
    for (const char* name : {"full.wav", "full.png"})
        std::filesystem::create_symlink("/dev/full", In(name));
    std::filesystem::create_symlink("file", In("link"));
    std::filesystem::copy_file(FAKE_MODULES "Good.so", In("alone.so"));
    const std::tuple<const char*, int, const char*> cases[] = {
        {"", 2, "--help"},
        {"render in.wav out.wav --automation bad.csv --tail nan", 1,
         "--tail nan: expected seconds"},
        {"render in.wav out.wav --midi bad.csv", 1, "bad.csv: isn't a MIDI file"},
        {"render in.wav out.wav --automation /dev/zero", 1, "/dev/zero, line 1: is too long"},
        {"render in.wav out.wav --preset /dev/null", 1, "is a device or a pipe: expected a file"},
        {"polish", 2, "\"polish\": expected render"},
        {"render in.wav", 2, "OUTPUT"},
        {"render in.wav out.wav --louder", 2, "--louder"},
        {"response", 2, "--output"},
        {"render missing.wav out.wav", 1, "missing.wav: can't be read: No such file"},
        {"render none.wav out.ogg", 1, "out.ogg: such files can't be empty"},
        {"render in.wav full.wav", 1, "full.wav: can't be written: No space left"},
        {"render in.wav out.wav --block-size 0", 1, "--block-size \"0\""},
        {"render in.wav out.wav --set 'Mid (1)=1' --set 'x\ny=1'", 1, "\"x?y\""},
        {"formula '1 +'", 1, "\"1 +\": isn't a valid formula"},
        {"formula ''", 1, "isn't a valid formula"},
        {"formula a --param b=1", 1, "--param b: the formula has no free name"},
        {"formula a --param a", 1, "--param a: expected NAME=VALUE"},
        {"formula a --param a=1x", 1, "--param a=1x: expected a number"},
        {"formula a --x a=0:1", 1, "--x a=0:1: expected NAME=FROM:TO:STEPS"},
        {"formula a --x a=1:1:5", 1, "--x a=1:1:5: expected FROM below TO"},
        {"formula a --x a=0:1:0", 1, "--x a=0:1:0: expected 1 to"},
        {"formula a --x a=0:1e308:9", 1, "--x a=0:1e308:9: expected FROM closer to TO"},
        {"formula a --x pi=0:1:9", 1, "\"pi\" can't be a variable"},
        {"formula a --x a=0:1:9 --y a=0:1:9", 1, "expected another name than that of --x"},
        {"formula a --y a=0:1:9", 1, "needs --x"},
        {"formula a --x a=0:1:9999 --y b=0:1:9999", 1, "expected at most"},
        {"formula 1 -o a.png", 1, "a single value makes no file"},
        {"formula a --x a=0:1:9 -o a.gif", 1, "a.gif: unknown extension"},
        {"formula a --x a=0:1:9 -o full.png", 1, "full.png: can't be written: No space left"},
        {"formula '-x ^ 2'", 2, "FORMULA is required (see cairn-host formula --help)"},
        {"response -o full.png", 1, "full.png: can't be written: No space left"},
        {"response -o a.csv --points 1", 1, "--points 1: expected 2 to"},
        {"response -o a.csv --from 500 --to 500", 1, "--from 500: expected less than --to"},
        {"demo file", 1, "file: "},
        {"render in.wav out.wav --midi-map 0=cc:7,curve:Bent", 1,
         "curve \"Bent\": expected Log3, "},
        {"render in.wav out.wav --preset none", 1, "none: can't be read: No such file"},
        {"render in.wav out.wav --preset bad.csv", 1,
         "bad.csv: can't be loaded: not a well-formed"},
        {"render in.wav out.wav --meter 4", 1, "--meter \"4\": expected N/M"},
        {"render in.wav out.wav --midi-out ./out.wav", 1, "by both OUTPUT and --midi-out"},
        {"render in.wav out.wav --preset link --state-out file", 1, "--state-out and --preset"},
        {"render in.wav out.wav --state-out full.png", 1, "full.png: can't be written: No space"},
        {"render in.wav out.wav --module none.so", 1,
         "none.so: the plug-in's module can't be read"},
        {"presets --module file", 1, "file: can't be loaded as a module: file too short"},
        {"info --module alone.so", 1, "its data folder isn't there: expected"},
        {"info --module " FAKE_MODULES "Version.so", 1, "is of another version: expected 1"},
        {"info --module " FAKE_MODULES "Entry.so", 1, "no entry point CDSPDoHostCommand"},
        {"render in.wav out.wav --module " FAKE_MODULES "Start.so", 1,
         "Start.so: can't start (-7003)"},
    };
    for (const auto& [arguments, status, part] : cases)
        CheckFails(arguments, status, part);
    // Of a very long word, the ends.
    EXPECT_EQ(Run("render in.wav out.wav --set " + std::string(10000, 'a') + "z=1"), 1);
    EXPECT_NE(m_Error.find("aa[...]aa"), std::string::npos);
    EXPECT_LT(m_Error.size(), 1100u);
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

TEST_F(Program, ResponseHoldsAllCurvesAtExactFrequencies) {
    ASSERT_EQ(Run("response -o a.csv --from 1000 --to 9000 --points 3 --rate 16000 "
                  "--set 'Frequency (2)=3000' --set 'Mid (2)=-7.5'"),
              0);
    std::istringstream lines(ReadBytes("a.csv"));
    std::string line;
    std::vector<std::vector<double>> rows;
    for (std::getline(lines, line); std::getline(lines, line);) {
        rows.emplace_back();
        for (const std::string_view field : CairnHost::Split(line, ','))
            rows.back().push_back(std::atof(std::string(field).c_str()));
        ASSERT_EQ(rows.back().size(), 13u);
    }
    ASSERT_EQ(rows.size(), 3u);
    // Column 2 is channel (1) in dB, 8 channel (2), 10 its mid band; 9000 Hz is beyond Nyquist.
    const std::tuple<std::size_t, std::size_t, double> cells[] = {
        {0, 0, 1000.0}, {1, 0, 3000.0}, {2, 0, 9000.0}, {1, 2, 0.0},
        {1, 8, -7.5},   {1, 10, -7.5},  {2, 1, 0.0}};
    for (const auto& [row, column, value] : cells)
        EXPECT_NEAR(rows[row][column], value, 1e-6) << row << ", " << column;
    EXPECT_EQ(rows[2][8], -INFINITY);
}

TEST_F(Program, ListsTellWhatThePluginIs) {
    const std::pair<const char*, std::vector<const char*>> cases[] = {
        {"params",
         {"\n13     Bypass ", "\n2      Frequency (1)  20       22000    650      Hz    650\n"}},
        {"params --json", {"[\n", "\"name\": \"High (2)\""}},
        {"info",
         {"Marrow Sound (mrws)", "Product       5455\n", "Marrow's Cairn EQ 4 Dual\n", "  MWCn\n",
          "\n0     0           5455     0x1       1, 1           2, 2\n", "Latency       0 samples",
          "\n1        bypass  2      Off ", "  Frequency(2)  Frqnc(2)  Fc(2\n", "\nelck ",
          "\nmrws ", "\n1     1 2 3 4 5 6 7 8\n2     9 10 11 12 13 14\n"}}};
    for (const auto& [arguments, parts] : cases) {
        ASSERT_EQ(Run(arguments), 0) << m_Error;
        for (const char* part : parts)
            EXPECT_NE(m_Output.find(part), std::string::npos) << part << "isn't in\n" << m_Output;
    }
}

TEST_F(Program, FormulasGiveValuesAndTables) {
    const std::tuple<const char*, const char*, const char*> cases[] = {
        {"'2 + 3 * 4'", "14\n", ""},
        {"-- '-2 ^ 2'", "4\n", ""},
        {"'demo + render' --param demo=+1.5 --param render=-.5", "1\n",
         "cairn-host: note: free names: demo = 1.5, render = -0.5\n"},
        {"'f(2) + g(1, 3) + b'", "4\n",
         "cairn-host: note: free names: b = 0 (not given)\n"
         "cairn-host: note: free curves: f (each gives its argument)\n"
         "cairn-host: note: free surfaces: g (each gives the mean of its arguments)\n"},
        {"'x ^ 2' --x x=-1:1:2", "x   value\n-1  1\n0   0\n1   1\n", ""},
        {"'a / y' --x a=1:2:1 --y y=0:2:1",
         "a  y  value\n1  0  inf\n2  0  inf\n1  2  0.5\n2  2  1\n", ""},
    };
    for (const auto& [arguments, output, error] : cases) {
        SCOPED_TRACE(arguments);
        EXPECT_EQ(Run(std::string("formula ") + arguments), 0);
        EXPECT_EQ(m_Output, output);
        EXPECT_EQ(m_Error, error);
    }
    ASSERT_EQ(Run("formula x --x x=0:1:1 -o a.csv"), 0);
    EXPECT_EQ(m_Output, "");
    EXPECT_EQ(ReadBytes("a.csv"), "x,value\n0,0\n1,1\n");
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
    double sum = 0.0, change = 0.0;
    for (std::size_t i = 0; i < before.m_Left.size(); ++i) {
        sum += std::pow(before.m_Left[i], 2);
        change += std::pow(after.m_Left[i] - before.m_Left[i], 2);
        EXPECT_LT(std::abs(after.m_Left[i]), 1.0f);
    }
    EXPECT_GT(sum, 100.0) << "as good as silent";
    EXPECT_GT(change, 0.05 * sum) << "nobody would hear that";
    EXPECT_TRUE(std::filesystem::exists(In("new/folder/demo-response.png")));
}

} // namespace
} // namespace CairnHostTests
