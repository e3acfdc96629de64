// Proves that the memory log keeps copies, in order, of the messages within its detail limit.
#include "core/MessageLog.h"

#include <gtest/gtest.h>

TEST(MessageLogTest, KeepsCopiesWithinTheDetailLimit) {
    Lathe::CoreUtilities::CMemMessageLog log(1);
    char text[] = "a";
    for (int detail = 0; detail < 4; ++detail, ++text[0])
        log.Log(Lathe::CoreUtilities::EMessageLevel::Warning, text, detail);
    ASSERT_EQ(log.GetMessages().size(), 2U);
    EXPECT_STREQ(log.GetMessages()[0].m_Text.GetText(), "a");
    EXPECT_STREQ(log.GetMessages()[1].m_Text.GetText(), "b");
    EXPECT_EQ(log.GetMessages()[1].m_Detail, 1);
    log.Clear();
    EXPECT_TRUE(log.GetMessages().empty());
}
