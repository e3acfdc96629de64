#include "serialization/XmlText.h"

#include <algorithm>
#include <cstddef>
#include <vector>

namespace Lathe::Serialization {

namespace {

constexpr std::string_view Blanks = " \t\r\n\v\f";
constexpr std::size_t NotFound = std::string_view::npos;

bool IsNameStart(char c) {
    return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_' ||
           static_cast<unsigned char>(c) >= 128;
}

bool IsNamePart(char c) {
    return IsNameStart(c) || (c >= '0' && c <= '9') || c == '-' || c == '.' || c == ':';
}

// Walks over the marks of a text just far enough to know how they nest. What the parser takes
// more leniently than XML allows is refused here, so that both always see the same nesting.
class CXmlScanner {
public:
    explicit CXmlScanner(std::string_view text) : m_Text(text) {}

    bool Scan() {
        for (m_Position = 0; SkipText();)
            if (!SkipMark())
                return false;
        return m_Position == m_Text.size() && GetDepth() == 0 && m_RootCount == 1 && IsInLimits();
    }

private:
    int GetDepth() const { return static_cast<int>(m_ChildCounts.size()) - 1; }
    bool Follows(std::string_view mark) const {
        return m_Text.substr(m_Position, mark.size()) == mark;
    }

    bool IsInLimits() const {
        return GetDepth() <= MaxXmlDepth && m_NodeCount <= MaxXmlNodes &&
               m_Steps <= MaxXmlLookupSteps;
    }

    // Comments and sections too are walked over in the search for an element. Texts at most double
    // their number.
    bool CountChild() {
        ++m_NodeCount;
        m_Steps += ++m_ChildCounts.back();
        return IsInLimits();
    }

    // To the next "<". False at the end, or at text outside the root element.
    bool SkipText() {
        const std::size_t end = std::min(m_Text.find('<', m_Position), m_Text.size());
        const std::string_view skipped = m_Text.substr(m_Position, end - m_Position);
        if (GetDepth() == 0 && skipped.find_first_not_of(Blanks) != NotFound)
            return false;
        m_Position = end;
        return end < m_Text.size();
    }

    bool SkipMark() {
        if (Follows("</"))
            return CloseElement() && SkipTo(">", 2);
        if (!CountChild())
            return false;
        if (Follows("<!--"))
            return SkipTo("-->", 4);
        if (Follows("<![CDATA["))
            return GetDepth() > 0 && SkipTo("]]>", 9);
        if (Follows("<!"))
            return SkipTo(">", 2);
        // The parser would see attributes in an instruction, and brackets in their values.
        if (Follows("<?"))
            return GetDepth() == 0 && SkipTo(">", 2);
        return SkipStartTag();
    }

    bool SkipTo(std::string_view end, std::size_t offset) {
        const std::size_t found = m_Text.find(end, m_Position + offset);
        if (found == NotFound)
            return false;
        m_Position = found + end.size();
        return true;
    }

    bool CloseElement() {
        if (GetDepth() == 0)
            return false;
        m_ChildCounts.pop_back();
        return true;
    }

    bool SkipStartTag() {
        if (++m_Position == m_Text.size() || !IsNameStart(m_Text[m_Position]))
            return false;
        m_RootCount += GetDepth() == 0 ? 1 : 0;
        long long attributes = 0;
        for (;;) {
            m_Position = m_Text.find_first_of("<>=\"'", m_Position);
            if (m_Position == NotFound)
                return false;
            if (m_Text[m_Position] == '>')
                break;
            if (m_Text[m_Position] != '=' || !SkipAttributeValue())
                return false;
            m_Steps += ++attributes;
            ++m_NodeCount;
        }
        if (m_Text[m_Position - 1] != '/')
            m_ChildCounts.push_back(0);
        ++m_Position;
        return IsInLimits();
    }

    bool SkipAttributeValue() {
        const std::size_t begin = m_Text.find_first_not_of(Blanks, m_Position + 1);
        if (begin == NotFound || (m_Text[begin] != '"' && m_Text[begin] != '\''))
            return false;
        const std::size_t end = m_Text.find(m_Text[begin], begin + 1);
        if (end == NotFound || m_Text.substr(begin, end - begin).find('<') != NotFound)
            return false;
        m_Position = end + 1;
        return true;
    }

    std::string_view m_Text;
    std::size_t m_Position = 0;
    // Of the document, then of each open element.
    std::vector<long long> m_ChildCounts{0};
    int m_RootCount = 0;
    long long m_NodeCount = 0;
    long long m_Steps = 0;
};

} // namespace

bool IsXmlName(std::string_view name) {
    return !name.empty() && IsNameStart(name.front()) &&
           std::all_of(name.begin(), name.end(), IsNamePart);
}

bool IsUtf8(std::string_view text) {
    for (std::size_t i = 0; i < text.size();) {
        const auto lead = static_cast<unsigned char>(text[i]);
        const std::size_t length = lead < 0x80                   ? 1
                                   : lead >= 0xC2 && lead < 0xE0 ? 2
                                   : lead >= 0xE0 && lead < 0xF0 ? 3
                                   : lead >= 0xF0 && lead < 0xF5 ? 4
                                                                 : 0;
        if (length == 0 || length > text.size() - i)
            return false;
        for (std::size_t k = 1; k < length; ++k)
            if ((static_cast<unsigned char>(text[i + k]) & 0xC0) != 0x80)
                return false;
        i += length;
    }
    return true;
}

bool IsLoadableXml(std::string_view text) {
    return text.size() <= MaxXmlSize && CXmlScanner(text).Scan();
}

} // namespace Lathe::Serialization
