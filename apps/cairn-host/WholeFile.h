// Small files as one text of bytes.
#pragma once

#include "cairn-host/Result.h"

#include <string>

namespace CairnHost {

// Refuses what isn't an ordinary file's worth: folders, and more than 64 MiB.
TResult<std::string> ReadWholeFile(const std::string& path);

} // namespace CairnHost
