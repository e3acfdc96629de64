// Text of a whole number by a list of names.
#pragma once

#include "core/containers/DynamicVector.h"
#include "core/text/CharString.h"
#include "datamodel/objects/text/ParamText.h"

namespace Lathe::DataModel::Objects {

class CEnumToText : public IParamValueToText {
public:
    CEnumToText() = default;
    CEnumToText(const char* names, int firstValue) { Set(names, firstValue); }

    // The names are separated by ";", and empty ones count; an empty text and null have none. The
    // first name stands for firstValue.
    void Set(const char* names, int firstValue);

    // "Out Of Bounds" for a value that has no name.
    char* ToText(double value) const override;
    // A name gives the value of its first place in the list; any other text is read as a number.
    bool FromText(const char* text, double* value) const override;
    CEnumToText* Clone() const override;

private:
    Core::TDynamicVector<Core::CCharString, Core::CExpGrowthStrategy, Core::TEqualOperatorCopier>
        m_Names;
    int m_FirstValue = 0;
};

} // namespace Lathe::DataModel::Objects
