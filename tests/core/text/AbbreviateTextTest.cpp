// Proves in which order an abbreviated text loses what it loses, and that it fills its room.
#include "core/text/AbbreviateText.h"

#include <gtest/gtest.h>

using Lathe::Core::AbbreviateText;

TEST(AbbreviateTextTest, TakesWordsOutInOrder) {
    struct SCase {
        const char *m_Text, *m_Short, *m_ShortWithoutPunctuation;
    };
    for (const auto& [text, plain, punctuated] : {
             SCase{" a  b, ", " a  b, ", " a  b, "},
             // Blanks alone, from the left.
             {"Low Mid High", "LowMid High", "LowMid High"},
             // All blanks, then a vowel from the end of the first word.
             {"Upper limit", "Upprlimit", "Upprlimit"},
             // Punctuation before vowels, brackets as late as the first letters of words.
             {"(a.b.) c,u", "(.b.)c,u", "(a.b)c,u"},
             {"(a.b.) c,u", "(..)c,", "(ab)cu"},
             {"eat iou AEY", "etiAEY", "etiAEY"},
             // Doubled small letters, then the letters within words, then the end.
             {"Bttxxs", "Bttxs", "Bttxs"},
             {"B--t", "B--", "B-t"},
             {"Pqrst Vwxz", "PqtVwxz", "PqtVwxz"},
             {"Pqrst Vwxz", "PtV", "PtV"},
             {"\xE4\xE4\xE4", "\xE4\xE4", "\xE4\xE4"},
         }) {
        const int length = static_cast<int>(std::string(plain).size());
        EXPECT_EQ(AbbreviateText(text, length, false), plain);
        EXPECT_EQ(AbbreviateText(text, length, true), punctuated);
        EXPECT_EQ(AbbreviateText(text, -length, true), "");
    }
}
