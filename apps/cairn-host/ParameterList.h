// The parameters as a table to read, or as JSON for other programs.
#pragma once

#include "cairn-host/Parameters.h"

#include <string>

namespace CairnHost {

// Lines of aligned columns under a header.
std::string ListParameters(const CParameterTable& parameters);
// An array of one object for each parameter, in order of index.
std::string ListParametersAsJson(const CParameterTable& parameters);

} // namespace CairnHost
