// A plug-in's state in a file, as a session stores it: all its chunks one after another, each a
// header of 56 bytes with its data behind it.
#pragma once

#include "cairn-host/Result.h"

#include <cstdint>
#include <vector>

namespace CairnHost {

class CHostInstance;

struct SChunk {
    std::uint32_t m_Code;
    // Header and data.
    std::string m_Record;
};

// Sizes are checked: what comes back lies within the file.
TResult<std::vector<SChunk>> ReadStateFile(const std::string& path);

// All chunks of the instance, as such a file holds them.
TResult<std::string> StoreState(const CHostInstance& instance);

} // namespace CairnHost
