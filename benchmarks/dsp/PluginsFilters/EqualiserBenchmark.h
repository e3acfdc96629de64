// The benchmarks of the dual equaliser.
#pragma once

#include <string>
#include <vector>

namespace CairnBench {

// True when the equaliser and the plain loop give the same samples, steady, mid/side and ramped;
// says on standard error which ones don't.
bool CheckSameSamples();

// The rows of the table that they make, CASE/FRAMES, in order.
std::vector<std::string> RegisterEqualiserBenchmarks();

} // namespace CairnBench
