// What the values of a parameter are, and how a value is brought onto them.
#pragma once

#include "core/Realtime.h"

namespace Lathe::DataModel::Objects {

// Stored and handed about by number. Nothing creates Reserved; it is treated as Boolean. Numbers
// beyond it are treated as Float.
enum class EParamType : int { Boolean = 0, Integer = 1, Float = 2, Reserved = 3 };

// Boolean, Integer and Reserved: the values are whole, and their text has no decimals.
bool IsDiscrete(EParamType type);

// Boolean and Reserved: the only values are the minimum and the maximum.
bool IsSwitch(EParamType type) LATHE_REALTIME;

// The type of a keyword of the model language; Float for unknown words and null.
EParamType GetParamType(const char* keyword);

// The printf format of a value of this type, unless its description gives another.
const char* GetDefaultFormat(EParamType type);

// Integer rounds half away from zero; the switches snap to the nearer end, the exact centre to the
// minimum; every other type keeps the value. Nothing is clamped to the range.
double ParamConstrain(double value, double min, double max, EParamType type) LATHE_REALTIME;

} // namespace Lathe::DataModel::Objects
