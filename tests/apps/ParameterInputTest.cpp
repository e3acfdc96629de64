// Names, values and automation as users type them: what is meant is read, everything else is
// refused with a line that says what was expected.
#include "apps/TestFiles.h"
#include "cairn-host/AutomationFile.h"
#include "cairn-host/Text.h"
#include "datamodel/objects/text/EnumToText.h"
#include "datamodel/objects/text/ParamValueToText.h"

namespace CairnHostTests {
namespace {

using namespace CairnHost;
using namespace Lathe::DataModel::Objects;

const CParameterTable& GetTable() {
    static const CEnumToText modes("Stereo;Mid-Side", 0);
    static const CParamValueToText levels("%+.1f", false, "{value}");
    static const CParamValueToText frequencies("%.0f", false, "{value}");
    static const CParameterTable table({{"Stereo Mode", "", 0, 1, 0, true, &modes},
                                        {"Mid (1)", "dB", -40, 40, 0, false, &levels},
                                        {"Mid (2)", "dB", -40, 40, 0, false, &levels},
                                        {"Frequency", "Hz", 20, 22000, 650, false, &frequencies},
                                        {"Odd, \"name\"", "", 0, 1, 0, false, &levels}});
    return table;
}

TEST(Setting, IsReadOrRefusedWithWhatWasExpected) {
    // The parameter and its value, or a part of the message.
    const std::pair<const char*, const char*> cases[] = {
        {"Mid (1)=+6", "1=6"},
        {" mid (2) = -3.5 db ", "2=-3.5"},
        {"1=12.5 dB", "1=12.5"},
        {"Stereo Mode=Mid-Side", "0=1"},
        {"Stereo Mode=1", "0=1"},
        {"Frequency=440Hz", "3=440"},
        {"Mid (1)", "expected NAME=VALUE"},
        {"=6", "no parameter is called \"\""},
        {"Mid=6", "expected \"Mid (1)\" or \"Mid (2)\""},
        {"Loud=6", "expected a name or an index from 0 to 4"},
        {"5=6", "no parameter is called \"5\""},
        {"Mid (1)=", "\"\" can't be read as a value of \"Mid (1)\": expected -40 to 40 dB"},
        {"Mid (1)=6,5", "can't be read"},
        {"Mid (1)=40.01", "\"40.01\" is out of the range of \"Mid (1)\""},
        {"Mid (1)=nan", "is out of the range"},
        {"Frequency=2k", "can't be read"},
        {"Stereo Mode=0.7", "expected Stereo or Mid-Side"},
        {"Stereo Mode=mid-side", "expected Stereo or Mid-Side"},
    };
    for (const auto& [text, expected] : cases) {
        const TResult<SSetting> setting = GetTable().ReadSetting(text);
        std::ostringstream read;
        if (setting)
            read << setting->m_Parameter << '=' << setting->m_Value << '.';
        // So that a number is compared whole.
        const std::string result = setting ? read.str() : setting.GetFault().m_Text;
        EXPECT_NE(result.find(expected + std::string(setting ? "." : "")), std::string::npos)
            << text << ": " << result;
    }
}

class AutomationFile : public CFolderTest {};

TEST_F(AutomationFile, EventsComeInOrderFromAnyOrdinaryTable) {
    const std::string path = Write("a.csv", "\xEF\xBB\xBF\r\n Frame , PARAMETER,value\r\n"
                                            "0,Mid (1),+6 dB\r\n"
                                            "\r\n"
                                            "512, 3 , 1000\n"
                                            "512,\"Odd, \"\"name\"\"\",\"0.5\"\n"
                                            "9000000000,Stereo Mode,Mid-Side");
    const auto events = ReadAutomationFile(path, GetTable());
    ASSERT_TRUE(events) << events.GetFault().m_Text;
    std::ostringstream read;
    for (const SAutomationEvent& event : *events)
        read << event.m_Frame << ' ' << event.m_Setting.m_Parameter << '='
             << event.m_Setting.m_Value << ' ';
    EXPECT_EQ(read.str(), "0 1=6 512 3=1000 512 4=0.5 9000000000 0=1 ");
}

TEST_F(AutomationFile, FaultNamesTheLine) {
    const std::string header = "frame,parameter,value\n";
    const std::pair<std::string, const char*> cases[] = {
        {"", "a.csv: is empty"},
        {"0,Mid (1),6\n", "a.csv, line 1: expected the header frame,parameter,value"},
        {header + "0,Mid (1)\n", "line 2: has 2 fields"},
        {header + "\n0,Loud,6\n", "line 3: no parameter is called \"Loud\""},
        {header + "0,Mid (1),loud\n", "line 2: \"loud\" can't be read"},
        {header + "-1,Mid (1),6\n", "line 2: frame \"-1\": expected a whole number"},
        {header + "99999999999999999999,Mid (1),6\n", "line 2: frame"},
        {header + "10,Mid (1),6\n9,Mid (1),6\n", "line 3: frame 9 comes after frame 10"},
        {header + "0,\"Mid (1),6\n", "line 2: a quote"},
        {header + std::string(100000, 'x'), "line 2: is too long"},
    };
    for (const auto& [text, expected] : cases) {
        const auto events = ReadAutomationFile(Write("a.csv", text), GetTable());
        const std::string fault = events.GetFault().m_Text;
        EXPECT_NE(fault.find(expected), std::string::npos) << fault;
    }
    EXPECT_FALSE(ReadAutomationFile(In(""), GetTable()));
}

} // namespace
} // namespace CairnHostTests
