#include "core/text/AbbreviateText.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Lathe::Core {

namespace {

bool IsLowerCase(char c) {
    return c >= 'a' && c <= 'z';
}

// But no round brackets.
bool IsRemovablePunctuation(char c) {
    const bool isGraphic = c > ' ' && c < '\x7F';
    const bool isLetterOrDigit = IsLowerCase(c) || (c >= 'A' && c <= 'Z') || (c >= '0' && c <= '9');
    return isGraphic && !isLetterOrDigit && c != '(' && c != ')';
}

bool IsVowel(char c) {
    return std::string_view("aeiouy").find(c) != std::string_view::npos;
}

class CAbbreviation {
public:
    CAbbreviation(std::string_view text, int excess, bool removePunctuation)
        : m_Excess(excess), m_RemovePunctuation(removePunctuation) {
        std::string word;
        for (const char c : text) {
            if (c != ' ')
                word += c;
            else
                AddWord(word);
        }
        AddWord(word);
    }

    std::string Shorten() {
        if (m_RemovePunctuation)
            RemoveFromWords(0, 0, [](const std::string& word, std::size_t i) {
                return IsRemovablePunctuation(word[i]);
            });
        RemoveFromWords(1, 0,
                        [](const std::string& word, std::size_t i) { return IsVowel(word[i]); });
        RemoveFromWords(1, 0, [this](const std::string& word, std::size_t i) {
            return word[i] == word[i - 1] && IsRemovable(word[i]);
        });
        RemoveFromWords(
            1, 1, [this](const std::string& word, std::size_t i) { return IsRemovable(word[i]); });
        std::string joined;
        for (const std::string& word : m_Words)
            joined += word;
        joined.resize(joined.size() - std::min(joined.size(), static_cast<std::size_t>(m_Excess)));
        return joined;
    }

private:
    void AddWord(std::string& word) {
        if (!word.empty())
            m_Words.push_back(word);
        word.clear();
    }
    bool IsRemovable(char c) const {
        return IsLowerCase(c) || (m_RemovePunctuation && IsRemovablePunctuation(c));
    }
    // Word by word from the end to the front; so many first and last characters stay.
    template <class TMayGo>
    void RemoveFromWords(std::size_t keptFirst, std::size_t keptLast, TMayGo mayGo) {
        for (std::string& word : m_Words) {
            if (word.size() < keptFirst + keptLast)
                continue;
            for (std::size_t i = word.size() - keptLast; i-- > keptFirst && m_Excess > 0;) {
                if (!mayGo(word, i))
                    continue;
                word.erase(i, 1);
                --m_Excess;
            }
        }
    }

    std::vector<std::string> m_Words;
    // The characters that are still too many.
    int m_Excess;
    bool m_RemovePunctuation;
};

std::string RemoveFirstBlanks(std::string_view text, int count) {
    std::string result;
    for (const char c : text) {
        if (c == ' ' && count > 0)
            --count;
        else
            result += c;
    }
    return result;
}

} // namespace

std::string AbbreviateText(std::string_view text, int maxLength, bool removePunctuation) {
    const int excess = static_cast<int>(text.size()) - std::max(maxLength, 0);
    if (excess <= 0)
        return std::string(text);
    const int blanks = static_cast<int>(std::count(text.begin(), text.end(), ' '));
    if (excess <= blanks)
        return RemoveFirstBlanks(text, excess);
    return CAbbreviation(text, excess - blanks, removePunctuation).Shorten();
}

} // namespace Lathe::Core
