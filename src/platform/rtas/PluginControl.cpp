#include "platform/rtas/PluginControl.h"

#include "core/text/NumberText.h"
#include "platform/rtas/CopyText.h"

#include <algorithm>
#include <limits>
#include <string_view>

using namespace Lathe;

namespace {

using Limits = std::numeric_limits<std::int32_t>;

constexpr std::string_view OffText = "Off";
constexpr std::string_view OnText = "On";

std::int32_t ToControlValue(long value) {
    return static_cast<std::int32_t>(std::clamp<long>(value, Limits::min(), Limits::max()));
}

// The first line that fits, else the last.
std::string_view ChooseForm(std::string_view names, std::size_t length) {
    std::size_t end = names.find('\n');
    while (end != std::string_view::npos && end > length) {
        names.remove_prefix(end + 1);
        end = names.find('\n');
    }
    return names.substr(0, end);
}

} // namespace

CPluginControl_Stock::CPluginControl_Stock(std::uint32_t code, const char* names, long defaultValue)
    : m_Code(code), m_Names(names), m_Value(ToControlValue(defaultValue)) {
    SetDefaultValue(ToControlValue(defaultValue));
}

void CPluginControl_Stock::SetValue(long value) {
    m_Value.store(ToControlValue(value), std::memory_order_relaxed);
}

void CPluginControl_Stock::GetNameOfLength(char* text, long length) const {
    if (length >= 0)
        CopyText(ChooseForm(m_Names.GetText(), static_cast<std::size_t>(length)), text, length);
}

CPluginControl_OnOff::CPluginControl_OnOff(std::uint32_t code, const char* names,
                                           bool isOnByDefault)
    : CPluginControl_Stock(code, names, isOnByDefault ? Limits::max() : Limits::min()) {}

long CPluginControl_OnOff::ConvertStringToValue(const char* text) const {
    double number = 0.0;
    const bool isOn =
        text && (text == OnText || (Core::TextToNumber(text, number) && number > 0.0));
    return isOn ? Limits::max() : Limits::min();
}

void CPluginControl_OnOff::GetValueString(char* text, long length, long value) const {
    CopyText(value > 0 ? OnText : OffText, text, length);
}
