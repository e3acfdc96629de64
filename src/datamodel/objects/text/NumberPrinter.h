// Printing of numbers in formats that come from files.
#pragma once

#include <string>

namespace Lathe::DataModel::Objects {

// The value in a printf format with at most one conversion, of a double and with a width and a
// precision below 1000; in the default format of Float when the format is anything else. The
// decimal point is "." in any locale.
std::string PrintNumber(const char* format, double value);

} // namespace Lathe::DataModel::Objects
