// A string whose text is the list of value names of a parameter.
#pragma once

#include "datamodel/objects/ParamInfo.h"
#include "datamodel/objects/capture/CaptureString.h"
#include "datamodel/objects/text/EnumToText.h"

namespace Lathe::DataModel::Objects {

// The description uses this object's conversion from the first text on: it dies before this object,
// or gets another conversion before that.
class CParamTextEnumValueBuilderString : public CCaptureString {
public:
    // The description is not owned.
    explicit CParamTextEnumValueBuilderString(IParamInfo& info) : m_ParamInfo(&info) {}

protected:
    // The names are separated by ";", the first one stands for the minimum.
    void AssignValue(const char* value) override;

private:
    CEnumToText m_EnumToText;
    IParamInfo* m_ParamInfo;
};

} // namespace Lathe::DataModel::Objects
