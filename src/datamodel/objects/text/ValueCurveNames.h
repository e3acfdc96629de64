// The names of the response curves, for users and for the model language.
#pragma once

#include "math/ValueCurve.h"

namespace Lathe::DataModel::Objects {

inline constexpr int ValueCurveCount = 13;

// Null for a number that is no curve; so for all below.
const char* GetValueCurveName(Math::EParamValueCurve curve);

// The same curves by how fast the value moves at first, from "Fast 5" to "Slow 5".
const char* GetValueCurveSpeedName(Math::EParamValueCurve curve);

// Null also for the curves that the model language can't name.
const char* GetValueCurveKeyword(Math::EParamValueCurve curve);

// Linear for every unknown word, and for null.
Math::EParamValueCurve FindValueCurve(const char* keyword);

} // namespace Lathe::DataModel::Objects
