#include "datamodel/objects/text/NumberPrinter.h"

#include "core/text/NumericLocale.h"
#include "datamodel/objects/ParamType.h"

#include <cstdio>
#include <cstring>

namespace Lathe::DataModel::Objects {

namespace {

// Skips up to three digits: enough for any number, and too few to ask for gigabytes of blanks.
const char* SkipSize(const char* format) {
    for (int i = 0; i < 3 && *format >= '0' && *format <= '9'; ++i)
        ++format;
    return format;
}

// Formats come from files, and printf trusts its format blindly.
bool IsSafeFormat(const char* format) {
    bool converted = false;
    for (; *format; ++format) {
        if (*format != '%')
            continue;
        ++format;
        if (*format == '%')
            continue;
        format = SkipSize(format + std::strspn(format, "#+- 0"));
        if (*format == '.')
            format = SkipSize(format + 1);
        if (converted || !*format || !std::strchr("aAeEfFgG", *format))
            return false;
        converted = true;
    }
    return true;
}

} // namespace

std::string PrintNumber(const char* format, double value) {
    const Core::CNumericLocaleScope locale;
    if (!IsSafeFormat(format))
        format = GetDefaultFormat(EParamType::Float);
    // The second pass is for the few texts that the first can't hold.
    std::string text(64, '\0');
    const int length = std::snprintf(text.data(), text.size() + 1, format, value);
    if (length < 0)
        return {};
    const bool fits = static_cast<std::size_t>(length) <= text.size();
    text.resize(static_cast<std::size_t>(length));
    if (!fits)
        std::snprintf(text.data(), text.size() + 1, format, value);
    return text;
}

} // namespace Lathe::DataModel::Objects
