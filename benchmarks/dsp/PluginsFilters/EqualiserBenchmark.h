// The benchmarks of the dual equaliser.
#pragma once

namespace CairnBench {

class CFastestTimes;

// True when the equaliser and the plain loop give the same samples, steady, mid/side and ramped;
// says on standard error which ones don't.
bool CheckSameSamples();

void RegisterEqualiserBenchmarks();
// The equaliser beside the plain loop, and their ratio.
void PrintEqualiserTable(const CFastestTimes& times);

} // namespace CairnBench
