#include "hosts/rtas/RTASPluginControl.h"

#include "core/SaturatingCast.h"
#include "core/text/AbbreviateText.h"
#include "hosts/rtas/RTASParamAdapter.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <string>

namespace LatheExt::RTASPlugin {

using Lathe::DataModel::Objects::EParamType;

namespace {

constexpr long FloatSteps = 1024;
constexpr long LongestPlainName = 12;
constexpr const char* OutputPrefix = "OUT:";

// The room is one character longer than the length.
void CopyText(const std::string& source, char* text, long length) {
    if (!text || length <= 0)
        return;
    const auto room = static_cast<std::size_t>(length);
    const std::size_t copied = source.size() > room ? room - 1 : source.size();
    std::memcpy(text, source.data(), copied);
    text[copied] = 0;
}

void CopyAbbreviated(const std::string& source, char* text, long length) {
    const int maxLength = static_cast<int>(std::clamp(length, 0L, 0xFFFFL));
    CopyText(Lathe::Core::AbbreviateText(source, maxLength, false), text, length);
}

} // namespace

CRTASPluginControl::CRTASPluginControl(CRTASParamAdapter* adapter, bool isOutput)
    : m_Adapter(adapter), m_IsOutput(isOutput), m_Value(adapter->GetInfo().GetDefault()) {
    SetDefaultValue(adapter->ToHost(m_Value));
}

long CRTASPluginControl::GetControlNumber() const {
    return m_Adapter->GetControlNumber();
}

long CRTASPluginControl::GetValue() const {
    return m_Adapter->ToHost(m_Value.load(std::memory_order_relaxed));
}

void CRTASPluginControl::SetValue(long value) {
    m_Value.store(m_Adapter->FromHost(value), std::memory_order_relaxed);
}

long CRTASPluginControl::GetNumberOfSteps() const {
    const IConstParamInfo& info = m_Adapter->GetInfo();
    if (IsSwitch(info.GetType()))
        return 2;
    if (info.GetType() == EParamType::Integer)
        return Lathe::Core::TruncateToInt(info.GetMax() - info.GetMin() + 1.0);
    return FloatSteps;
}

long CRTASPluginControl::ConvertStringToValue(const char* text) const {
    double value = 0.0;
    if (!text || !m_Adapter->GetInfo().GetValueToText().FromText(text, &value))
        return GetValue();
    return m_Adapter->ToHost(value);
}

void CRTASPluginControl::GetNameOfLength(char* text, long length) const {
    std::string name = m_IsOutput && length > LongestPlainName ? OutputPrefix : "";
    if (const char* own = m_Adapter->GetInfo().GetName())
        name += own;
    CopyAbbreviated(name, text, length);
}

bool CRTASPluginControl::IsContinuous() const {
    return !IsDiscrete(m_Adapter->GetInfo().GetType());
}

void CRTASPluginControl::GetValueString(char* text, long length, long value) const {
    const IConstParamInfo& info = m_Adapter->GetInfo();
    const std::unique_ptr<char[]> number(info.GetValueToText().ToText(m_Adapter->FromHost(value)));
    std::string result = number ? number.get() : "";
    if (const char* unit = info.GetUnit(); unit && *unit)
        result.append(" ").append(unit);
    CopyAbbreviated(result, text, length);
}

} // namespace LatheExt::RTASPlugin
