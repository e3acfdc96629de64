// Text of a value by a template that can also name the parameter, its unit and its range.
#pragma once

#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/text/ParamValueToText.h"

namespace Lathe::DataModel::Objects {

// Knows "{value}", "{unit}", "{min}", "{max}", "{default}", "{comment}", "{name}", and
// "{text_value}" for the text by the description's own conversion.
class CParamDataToText : public CParamValueToText {
public:
    // Starts with an empty Float description.
    using CParamValueToText::CParamValueToText;

    // Copies the description, and fires the changed event.
    void SetInfo(const IConstParamInfo& info);
    const IConstParamInfo& GetInfo() const { return m_Info; }

    // As the description's own conversion reads it; failing that, by the description's type.
    bool FromText(const char* text, double* value) const override;
    CParamDataToText* Clone() const override;

protected:
    bool AppendPlaceholder(std::string_view name, double value, std::string& text) const override;

private:
    CParamInfo m_Info;
};

} // namespace Lathe::DataModel::Objects
