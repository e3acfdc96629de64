// The response curves of links, MIDI mappings and parameter controls.
#pragma once

#include "core/Realtime.h"

namespace Lathe::Math {

class IFunction;

// Models, settings and presets hold these numbers.
enum class EParamValueCurve : int {
    Log3 = 0,
    Log2 = 1,
    Log1 = 2,
    Log0 = 3,
    SquareRoot = 4,
    Log = 5,
    Linear = 6,
    Exp = 7,
    Square = 8,
    Exp0 = 9,
    Exp1 = 10,
    Exp2 = 11,
    Exp3 = 12,
};

// Two shared functions that nobody deletes, each from 0..1 onto 0..1 and inverse to the other.
// Log0, Linear, Exp0 and any number that is no curve give the identity twice.
void GetCurveFunctions(EParamValueCurve curve, const IFunction*& direct, const IFunction*& inverse)
    LATHE_REALTIME;

} // namespace Lathe::Math
