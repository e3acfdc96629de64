// What a plug-in tells of itself, for people and for other programs.
#pragma once

#include "cairn-host/Result.h"

#include <string>

namespace CairnHost {

class CModule;

// Names, identifiers, types, controls, chunks and pages, as an instance at 48 kHz has them.
TResult<std::string> DescribeModule(const CModule& module);

// The presets that the plug-in finds, as a tree of folders, or as an array of objects.
TResult<std::string> ListPresets(const CModule& module, bool json);

} // namespace CairnHost
