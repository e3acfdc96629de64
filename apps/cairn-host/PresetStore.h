// Preset files that the plug-in reads and writes, on the host's behalf.
#pragma once

#include "cairn-host/Result.h"

#include <string>

namespace CairnHost {

class CHostInstance;

CStatus LoadPreset(CHostInstance& instance, const std::string& path);

// The bytes of a preset file of the instance's state that is to lie at this path: its name can be
// part of it.
TResult<std::string> StorePreset(CHostInstance& instance, const std::string& path);

} // namespace CairnHost
