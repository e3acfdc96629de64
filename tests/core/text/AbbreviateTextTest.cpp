// Proves in which order an abbreviated text loses what it loses, and that it never gets longer than
// it may be.
#include "core/text/AbbreviateText.h"

#include <gtest/gtest.h>

#include <clocale>

using Lathe::Core::AbbreviateText;

namespace {

struct SCase {
    const char* m_Text;
    int m_Length;
    const char* m_Short;
    const char* m_ShortWithoutPunctuation;
};

constexpr SCase Cases[] = {
    // What fits stays, whatever it consists of.
    {"", 0, "", ""},
    {" a  b, ", 7, " a  b, ", " a  b, "},
    // Blanks alone, from the left, one a character.
    {"Low Mid High", 11, "LowMid High", "LowMid High"},
    {"Low Mid High", 10, "LowMidHigh", "LowMidHigh"},
    {"  a  b", 4, "a  b", "a  b"},
    // Two characters too long: the blank, then a vowel from the end of the first word.
    {"Upper limit", 9, "Upprlimit", "Upprlimit"},
    // Punctuation before vowels, from the end of each word; brackets stay as long as letters.
    {"(a.b.) c,u", 8, "(.b.)c,u", "(a.b)c,u"},
    {"(a.b.) c,u", 7, "(.b.)c,", "(ab)c,u"},
    {"(a.b.) c,u", 6, "(..)c,", "(ab)cu"},
    {"ab(i)", 4, "ab()", "ab()"},
    // The first letter of a word is no vowel to be taken; capitals and digits aren't either.
    {"eat iou AEY", 6, "etiAEY", "etiAEY"},
    {"a1e2", 3, "a12", "a12"},
    // Doubled letters before the letters within a word. Doubled capitals stay.
    {"Bttxxs", 5, "Bttxs", "Bttxs"},
    {"Bttxxs", 4, "Btxs", "Btxs"},
    {"Bttxxs", 3, "Bts", "Bts"},
    {"BBtt", 3, "BBt", "BBt"},
    {"B--t", 3, "B--", "B-t"},
    // Then the inner letters, word by word; the first and the last stay until the end is cut.
    {"Pqrst Vwxz", 7, "PqtVwxz", "PqtVwxz"},
    {"Pqrst Vwxz", 4, "PtVz", "PtVz"},
    {"Pqrst Vwxz", 3, "PtV", "PtV"},
    {"Pqrst Vwxz", 0, "", ""},
    {"Pqrst Vwxz", -5, "", ""},
    // Bytes beyond ASCII are no letters, in any locale.
    {"\xE4\xE4\xE4", 2, "\xE4\xE4", "\xE4\xE4"},
};

} // namespace

TEST(AbbreviateTextTest, TakesWordsOutInOrder) {
    for (const char* locale : {"C", ""}) {
        std::setlocale(LC_ALL, locale);
        for (const SCase& row : Cases) {
            SCOPED_TRACE(std::string(row.m_Text) + " " + std::to_string(row.m_Length));
            EXPECT_EQ(AbbreviateText(row.m_Text, row.m_Length, false), row.m_Short);
            EXPECT_EQ(AbbreviateText(row.m_Text, row.m_Length, true),
                      row.m_ShortWithoutPunctuation);
        }
    }
    std::setlocale(LC_ALL, "C");
}

TEST(AbbreviateTextTest, FillsTheRoomExactly) {
    const std::string text = "Peak,  Frequency (Left) A/B";
    for (int length = 0; length <= static_cast<int>(text.size()); ++length) {
        for (const bool removePunctuation : {false, true})
            EXPECT_EQ(AbbreviateText(text, length, removePunctuation).size(),
                      static_cast<std::size_t>(length));
    }
}
