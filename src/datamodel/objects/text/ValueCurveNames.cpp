#include "datamodel/objects/text/ValueCurveNames.h"

#include <cstring>
#include <iterator>

namespace Lathe::DataModel::Objects {

namespace {

struct SValueCurveNames {
    const char* m_Name;
    const char* m_Keyword;
    const char* m_SpeedName;
};

// By the number of the curve. Linear is what every unknown word gives, and needs no keyword.
constexpr SValueCurveNames Names[] = {
    {"Log3", "log3", "Fast 5"},
    {"Log2", "log2", "Fast 4"},
    {"Log1", "log1", "Fast 3"},
    {"Log0", nullptr, "Fast 2"},
    {"Square Root", "square_root", "Fast 1"},
    {"Log", "log", "Fast"},
    {"Linear", nullptr, "Linear"},
    {"Exp", "exp", "Slow"},
    {"Square", "square", "Slow 1"},
    {"Exp0", nullptr, "Slow 2"},
    {"Exp1", "exp1", "Slow 3"},
    {"Exp2", "exp2", "Slow 4"},
    {"Exp3", "exp3", "Slow 5"},
};
static_assert(std::size(Names) == ValueCurveCount);

constexpr SValueCurveNames NoNames = {nullptr, nullptr, nullptr};

const SValueCurveNames& GetNames(Math::EParamValueCurve curve) {
    const int index = static_cast<int>(curve);
    return index >= 0 && index < ValueCurveCount ? Names[index] : NoNames;
}

} // namespace

const char* GetValueCurveName(Math::EParamValueCurve curve) {
    return GetNames(curve).m_Name;
}

const char* GetValueCurveSpeedName(Math::EParamValueCurve curve) {
    return GetNames(curve).m_SpeedName;
}

const char* GetValueCurveKeyword(Math::EParamValueCurve curve) {
    return GetNames(curve).m_Keyword;
}

Math::EParamValueCurve FindValueCurve(const char* keyword) {
    for (int i = 0; i < ValueCurveCount; ++i) {
        if (keyword && Names[i].m_Keyword && std::strcmp(keyword, Names[i].m_Keyword) == 0)
            return static_cast<Math::EParamValueCurve>(i);
    }
    return Math::EParamValueCurve::Linear;
}

} // namespace Lathe::DataModel::Objects
