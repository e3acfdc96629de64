// The interface by which a parameter's value becomes text and back.
#pragma once

namespace Lathe::DataModel::Objects {

class IParamValueToText {
public:
    // A new array, which the caller deletes[].
    virtual char* ToText(double value) const = 0;
    // True when the text could be read, and only then *value is set.
    virtual bool FromText(const char* text, double* value) const = 0;
    // The caller owns the copy.
    virtual IParamValueToText* Clone() const = 0;
    virtual ~IParamValueToText() = default;
};

} // namespace Lathe::DataModel::Objects
