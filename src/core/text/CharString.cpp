#include "core/text/CharString.h"

#include <cstring>
#include <string>

namespace Lathe::Core {

CCharString& CCharString::operator=(const char* text) {
    if (!text || !*text) {
        m_Data.SetCount(0);
        return *this;
    }
    const std::string copy(text);
    m_Data.SetCount(static_cast<int>(copy.size()) + 1);
    std::memcpy(m_Data.GetData(), copy.c_str(), copy.size() + 1);
    return *this;
}

const char* CCharString::GetText() const {
    return m_Data.GetCount() < 2 ? "" : m_Data.GetData();
}

int CCharString::GetLength() const {
    return m_Data.GetCount() == 0 ? 0 : m_Data.GetCount() - 1;
}

CCharString& CCharString::Append(const char* text) {
    return text ? Append(std::string_view(text)) : *this;
}

CCharString& CCharString::Append(std::string_view text) {
    if (text.empty())
        return *this;
    const std::string copy(text);
    const int length = GetLength();
    m_Data.SetCount(length + static_cast<int>(copy.size()) + 1);
    std::memcpy(m_Data.GetData() + length, copy.c_str(), copy.size() + 1);
    return *this;
}

bool CCharString::operator==(const char* text) const {
    return std::strcmp(GetText(), text ? text : "") == 0;
}

char* NewText(const char* text) {
    return NewText(std::string_view(text ? text : ""));
}

char* NewText(std::string_view text) {
    char* copy = new char[text.size() + 1]; // The caller's, by contract.
    if (!text.empty())
        std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    return copy;
}

} // namespace Lathe::Core
