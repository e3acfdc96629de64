// Controls as a host reaches them: values that it sets and that the plug-in sets, names and texts
// within the room given.

#include "platform/rtas/TestPlugin.h"

#include <climits>

namespace {

class CControlsTest : public CModuleTest {};

TEST_F(CControlsTest, AreNumberedFromOneAndTellWhatTheyAre) {
    RTASProcess* const process = New();
    auto count = MakeCall<RTASProcessCall>(process);
    EXPECT_EQ(Dispatch(RTAS_GET_CONTROL_COUNT, &count), RTAS_OK);
    EXPECT_EQ(count.value, 3);
    for (int control = 0; control <= 4; ++control) {
        auto info = MakeCall<RTASControlInfo>(process);
        info.control = control;
        const bool isThere = control >= 1 && control <= 3;
        EXPECT_EQ(Dispatch(RTAS_GET_CONTROL_INFO, &info), isThere ? RTAS_OK : RTAS_WRONG_ARGUMENT);
        EXPECT_EQ(info.isMasterBypass, control == 1);
        EXPECT_EQ(info.isSpecial, control == 1 || control == 3);
        EXPECT_EQ(info.defaultValue, isThere ? INT_MIN : 0);
    }
}

TEST_F(CControlsTest, HostAndPluginHearOfEachOtherAndOfNothingElse) {
    RTASProcess* const process = New();
    CTestProcess& plugin = *g_Plan.m_LastProcess;
    auto call = MakeCall<RTASControlText>(process);
    call.control = 2;
    call.value = 5;
    EXPECT_EQ(Dispatch(RTAS_SET_CONTROL_VALUE, &call), RTAS_OK);
    EXPECT_TRUE(m_HostHeard.empty());
    plugin.SetControlValue(2, 1L << 40);
    plugin.SetControlValue(9, 1);
    plugin.UpdateControlValue(3, -8);
    using Heard = std::vector<std::pair<long, long>>;
    EXPECT_EQ(plugin.m_Heard, (Heard{{2, 5}, {2, INT_MAX}}));
    EXPECT_EQ(m_HostHeard, std::vector<std::string>{"2=2147483647"});
    EXPECT_EQ(Value(process, 2), INT_MAX);
    EXPECT_EQ(Value(process, 3), -8);
}

TEST_F(CControlsTest, TextsFitTheirRoom) {
    struct SCase {
        int m_Operation;
        int m_Length;
        int m_Value;
        const char* m_Expected;
    };
    constexpr SCase cases[]{
        {RTAS_GET_CONTROL_NAME, 30, 0, "Bypass"},
        {RTAS_GET_CONTROL_NAME, 5, 0, "Byp"},
        {RTAS_GET_CONTROL_NAME, 2, 0, "By"},
        {RTAS_GET_CONTROL_NAME, 0, 0, ""},
        {RTAS_CONTROL_VALUE_TO_TEXT, 30, 1, "On"},
        {RTAS_CONTROL_VALUE_TO_TEXT, 30, 0, "Off"},
        {RTAS_CONTROL_VALUE_TO_TEXT, 2, INT_MIN, "Of"},
    };
    auto call = MakeCall<RTASControlText>(New());
    call.control = 1;
    for (const SCase& item : cases) {
        std::string room(40, '?');
        call.length = item.m_Length;
        call.value = item.m_Value;
        call.text = room.data();
        EXPECT_EQ(Dispatch(item.m_Operation, &call), RTAS_OK);
        EXPECT_STREQ(room.c_str(), item.m_Expected);
        EXPECT_EQ(room.find_last_not_of('?'), std::string(item.m_Expected).size());
        call.length = -1;
        EXPECT_EQ(Dispatch(item.m_Operation, &call), RTAS_WRONG_ARGUMENT);
        call.text = nullptr;
        call.length = 3;
        EXPECT_EQ(Dispatch(item.m_Operation, &call), RTAS_WRONG_ARGUMENT);
    }
    for (const std::string text : {"On", "Off", "1", "0", ""}) {
        std::string room = text;
        call.text = room.data();
        EXPECT_EQ(Dispatch(RTAS_CONTROL_TEXT_TO_VALUE, &call), RTAS_OK);
        EXPECT_EQ(call.value, text == "On" || text == "1" ? INT_MAX : INT_MIN);
    }
}

} // namespace
