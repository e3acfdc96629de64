// Proves that the text type behaves as std::string does, also where a text is built from its own
// parts, and that null reads as the empty text.
#include "core/text/CharString.h"
#include "core/Seed.h"

#include <gtest/gtest.h>

#include <memory>
#include <random>
#include <string>

using namespace Lathe::Core;

namespace {

void CheckEqual(const CCharString& text, const std::string& expected) {
    ASSERT_STREQ(text.GetText(), expected.c_str());
    ASSERT_EQ(text.GetLength(), static_cast<int>(expected.size()));
    ASSERT_EQ(text.IsEmpty(), expected.empty());
    ASSERT_TRUE(text == expected.c_str());
    ASSERT_FALSE(text == (expected + "x").c_str());
}

} // namespace

TEST(CharStringTest, NullIsTheEmptyText) {
    const char* const null = nullptr;
    CheckEqual(CCharString(), "");
    CheckEqual(CCharString(null), "");
    CCharString text = "abc";
    CheckEqual(text.Append(null), "abc");
    CheckEqual(text = null, "");
    EXPECT_TRUE(text == null);
    EXPECT_FALSE(CCharString("a") == null);
    EXPECT_STREQ(std::unique_ptr<char[]>(NewText(null)).get(), "");
}

TEST(CharStringTest, RandomAssignmentsAndAppendsMatchStdString) {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937 random(GetSeed());
    CCharString text;
    std::string model;
    for (int round = 0; round < 5000; ++round) {
        const std::string other(random() % 9, static_cast<char>('a' + random() % 26));
        const std::size_t from = random() % (model.size() + 1);
        const std::string part = model.substr(from, random() % 9);
        const CCharString copy = text;
        switch (random() % (model.size() > 200 ? 4 : 7)) {
        case 0:
            text = other.c_str(), model = other;
            break;
        case 1:
            text = text.GetText() + from, model = model.substr(from);
            break;
        case 2: // Changes that are taken back.
            text.Append("lost");
            text = round % 2 ? CCharString(copy) : copy;
            break;
        case 3:
            text = *&text;
            break;
        case 4:
            text += other.c_str(), model += other;
            break;
        case 5:
            text.Append(text.GetText() + from), model += model.substr(from);
            break;
        default:
            text.Append(std::string_view(text.GetText() + from, part.size())), model += part;
        }
        ASSERT_NO_FATAL_FAILURE(CheckEqual(text, model)) << "round " << round;
        const std::unique_ptr<char[]> partCopy(NewText(std::string_view(other).substr(0, 3)));
        ASSERT_EQ(partCopy.get(), other.substr(0, 3));
    }
}
