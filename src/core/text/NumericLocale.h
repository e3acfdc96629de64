// Numbers in texts read and print alike whatever locale the host has set for the process.
#pragma once

#include <clocale>
#include <locale.h>

namespace Lathe::Core {

// While it lives, the C library's calls on this thread read and print numbers in the locale "C".
class CNumericLocaleScope {
public:
    CNumericLocaleScope() : m_Previous(uselocale(GetCLocale())) {}
    ~CNumericLocaleScope() { uselocale(m_Previous); }
    CNumericLocaleScope(const CNumericLocaleScope&) = delete;
    CNumericLocaleScope& operator=(const CNumericLocaleScope&) = delete;

private:
    static locale_t GetCLocale() {
        // Kept to the end of the process: any thread may be inside a scope.
        static const locale_t locale = newlocale(LC_ALL_MASK, "C", locale_t{});
        return locale;
    }

    locale_t m_Previous;
};

} // namespace Lathe::Core
