#include "datamodel/objects/ParamType.h"

#include <cmath>
#include <cstring>

namespace Lathe::DataModel::Objects {

namespace {

struct SKeyword {
    const char* m_Keyword;
    EParamType m_Type;
};

constexpr SKeyword Keywords[] = {
    {"boolean", EParamType::Boolean},
    {"integer", EParamType::Integer},
    {"enumeration", EParamType::Integer},
};

} // namespace

bool IsSwitch(EParamType type) {
    return type == EParamType::Boolean || type == EParamType::Reserved;
}

bool IsDiscrete(EParamType type) {
    return IsSwitch(type) || type == EParamType::Integer;
}

EParamType GetParamType(const char* keyword) {
    for (const SKeyword& row : Keywords) {
        if (keyword && std::strcmp(keyword, row.m_Keyword) == 0)
            return row.m_Type;
    }
    return EParamType::Float;
}

const char* GetDefaultFormat(EParamType type) {
    return IsDiscrete(type) ? "%.0f" : "%.2f";
}

double ParamConstrain(double value, double min, double max, EParamType type) {
    if (IsSwitch(type))
        return (max - min) * 0.5 < value - min ? max : min;
    if (type != EParamType::Integer)
        return value;
    if (value > 0.0)
        return std::floor(value + 0.5);
    return value < 0.0 ? -std::floor(-value + 0.5) : value;
}

} // namespace Lathe::DataModel::Objects
