// Reading of numbers that a user typed.
#pragma once

#include "datamodel/objects/ParamType.h"

namespace Lathe::DataModel::Objects {

// Reads the longest number at the start of the text and ignores what follows it. Whole numbers for
// Integer and the switches, which also know true, yes, false and no; any number, as strtod reads
// it with "." in any locale, for all other types. False, with *value untouched, when there is none,
// and for null.
bool ParseParamText(const char* text, EParamType type, double* value);

} // namespace Lathe::DataModel::Objects
