#include "datamodel/objects/text/ParamDataToText.h"

#include "datamodel/objects/text/TextParser.h"

#include <memory>

namespace Lathe::DataModel::Objects {

namespace {

struct STextPlaceholder {
    std::string_view m_Name;
    const char* (*m_Get)(const IConstParamInfo& info);
};

struct SNumberPlaceholder {
    std::string_view m_Name;
    double (*m_Get)(const IConstParamInfo& info);
};

constexpr STextPlaceholder TextPlaceholders[] = {
    {"{unit}", [](const IConstParamInfo& info) { return info.GetUnit(); }},
    {"{comment}", [](const IConstParamInfo& info) { return info.GetDescription(); }},
    {"{name}", [](const IConstParamInfo& info) { return info.GetName(); }},
};

constexpr SNumberPlaceholder NumberPlaceholders[] = {
    {"{min}", [](const IConstParamInfo& info) { return info.GetMin(); }},
    {"{max}", [](const IConstParamInfo& info) { return info.GetMax(); }},
    {"{default}", [](const IConstParamInfo& info) { return info.GetDefault(); }},
};

} // namespace

void CParamDataToText::SetInfo(const IConstParamInfo& info) {
    m_Info.Copy(info);
    NotifyChanged();
}

bool CParamDataToText::FromText(const char* text, double* value) const {
    return m_Info.GetValueToText().FromText(text, value) ||
           ParseParamText(text, m_Info.GetType(), value);
}

CParamDataToText* CParamDataToText::Clone() const {
    return new CParamDataToText(*this); // The caller's, by contract.
}

bool CParamDataToText::AppendPlaceholder(std::string_view name, double value,
                                         std::string& text) const {
    for (const STextPlaceholder& row : TextPlaceholders) {
        if (name == row.m_Name) {
            const char* replacement = row.m_Get(m_Info);
            text += replacement ? replacement : "";
            return true;
        }
    }
    for (const SNumberPlaceholder& row : NumberPlaceholders) {
        if (name == row.m_Name) {
            text += GetNumberText(row.m_Get(m_Info));
            return true;
        }
    }
    if (name == "{text_value}") {
        const std::unique_ptr<char[]> own(m_Info.GetValueToText().ToText(value));
        text += own.get();
        return true;
    }
    return CParamValueToText::AppendPlaceholder(name, value, text);
}

} // namespace Lathe::DataModel::Objects
