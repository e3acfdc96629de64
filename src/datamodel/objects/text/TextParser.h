// Reading of numbers that a user typed, and printing of numbers in a given format. Both use "." in
// any locale.
#pragma once

#include "datamodel/objects/ParamType.h"

#include <string>

namespace Lathe::DataModel::Objects {

// Reads the longest number at the start of the text and ignores what follows it. Whole numbers for
// Integer and the switches, which also know true, yes, false and no; any number, as strtod reads
// it, for all other types. False, with *value untouched, when there is none, and for null.
bool ParseParamText(const char* text, EParamType type, double* value);

// The value in a printf format with at most one conversion, of a double and with a width and a
// precision below 1000. In the default format of Float when the format is anything else.
std::string PrintNumber(const char* format, double value);

} // namespace Lathe::DataModel::Objects
