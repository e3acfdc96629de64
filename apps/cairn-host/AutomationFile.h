// Automation from a file of comma-separated values: which parameter takes which value at which
// frame.
#pragma once

#include "cairn-host/Parameters.h"

#include <cstdint>

namespace CairnHost {

struct SAutomationEvent {
    std::int64_t m_Frame;
    SSetting m_Setting;
};

// Reads the lines "frame,parameter,value" behind a header of these words. Frames count from 0 and
// never fall; the events come back in the order of the lines.
TResult<std::vector<SAutomationEvent>> ReadAutomationFile(const std::string& path,
                                                          const CParameterTable& parameters);

} // namespace CairnHost
