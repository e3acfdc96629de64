// Proves that the text type behaves as std::string does, also where a text is built from its own
// parts, and that null reads as the empty text.
#include "core/text/CharString.h"
#include "core/Fixtures.h"

using namespace Lathe::Core;

namespace {

void CheckEqual(const CCharString& text, const std::string& expected) {
    ASSERT_EQ(text.GetText(), expected);
    ASSERT_EQ(text.GetLength(), static_cast<int>(expected.size()));
    ASSERT_TRUE(text == expected.c_str() && text.IsEmpty() == expected.empty());
    ASSERT_FALSE(text == (expected + "x").c_str());
}

} // namespace

TEST(CharStringTest, NullIsTheEmptyText) {
    const char* const null = nullptr;
    CCharString text = "abc";
    CheckEqual(text.Append(null), "abc");
    EXPECT_FALSE(text == null);
    CheckEqual(text = null, "");
    CheckEqual(CCharString(), std::unique_ptr<char[]>(NewText(null)).get());
    EXPECT_TRUE(text == null);
}

TEST(CharStringTest, RandomAssignmentsAndAppendsMatchStdString) {
    SCOPED_TRACE("seed " + std::to_string(GetSeed()));
    std::mt19937 random(GetSeed());
    CCharString text, copy;
    std::string model, other, part;
    std::size_t from = 0;
    const std::function<void()> changes[] = {
        [&] { text = other.c_str(), model = other; },
        [&] { text = text.GetText() + from, model = model.substr(from); },
        [&] { text = *&text, text = CCharString(text); },
        [&] { copy = text, text += "lost", text = copy; },
        // These make it longer.
        [&] { text += other.c_str(), model += other; },
        [&] { text.Append(text.GetText() + from), model += model.substr(from); },
        [&] { text.Append(std::string_view(text.GetText() + from, part.size())), model += part; }};
    for (int round = 0; round < 5000; ++round) {
        other.assign(random() % 9, static_cast<char>('a' + random() % 26));
        from = random() % (model.size() + 1);
        part = model.substr(from, random() % 9);
        changes[random() % (model.size() > 200 ? 4 : std::size(changes))]();
        ASSERT_NO_FATAL_FAILURE(CheckEqual(text, model)) << "round " << round;
        const std::string_view head = std::string_view(other).substr(0, 3);
        ASSERT_EQ(std::unique_ptr<char[]>(NewText(head)).get(), head);
    }
}
