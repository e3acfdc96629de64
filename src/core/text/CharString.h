// The one text type: owning, null-terminated, 8-bit.
#pragma once

#include "core/Realtime.h"
#include "core/containers/DynamicVector.h"

#include <string_view>

namespace Lathe::Core {

class CCharString {
public:
    CCharString() = default;
    // Null gives the empty text.
    CCharString(const char* text) { *this = text; }
    CCharString(const CCharString&) = default;
    CCharString(CCharString&&) noexcept = default;
    CCharString& operator=(const CCharString&) = default;
    CCharString& operator=(CCharString&&) noexcept = default;
    // The text may be a part of this one.
    CCharString& operator=(const char* text);

    // Never null; valid until the next change.
    const char* GetText() const LATHE_REALTIME;
    int GetLength() const LATHE_REALTIME;
    bool IsEmpty() const LATHE_REALTIME { return GetLength() == 0; }

    // Both take texts that may be a part of this one; null appends nothing.
    CCharString& Append(const char* text);
    CCharString& Append(std::string_view text);
    CCharString& operator+=(const char* text) { return Append(text); }

    // By letters; null compares as the empty text.
    bool operator==(const char* text) const;
    bool operator==(const CCharString& other) const { return *this == other.GetText(); }

private:
    // Includes the terminator: the empty text may have the count 0 or 1.
    TDynamicVector<char, CExpGrowthStrategy, TMemoryCopier> m_Data;
};

// A copy in a new array, which the caller deletes[]; null gives an empty text.
char* NewText(const char* text);
char* NewText(std::string_view text);

} // namespace Lathe::Core
