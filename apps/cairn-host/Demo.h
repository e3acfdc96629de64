// The demonstration: a short piece of audio of the program's own, equalised and drawn.
#pragma once

#include "cairn-host/Result.h"

#include <string>
#include <vector>

namespace CairnHost {

struct SDemoSignal {
    std::vector<float> m_Left;
    std::vector<float> m_Right;
};

// Six seconds: a chord, with bursts of seeded noise above it; the same on every machine up to the
// rounding of its mathematical functions. Peaks at -9 dB below full scale.
SDemoSignal MakeDemoSignal(int sampleRate);

// Fills the folder, which is made when it isn't there. An empty path of the module means the one
// that comes with the program. The result is what to tell the user.
TResult<std::string> RunDemo(const std::string& folder, const std::string& module);

} // namespace CairnHost
