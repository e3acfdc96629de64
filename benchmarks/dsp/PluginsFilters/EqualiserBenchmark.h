// The benchmarks of the dual equaliser.
#pragma once

namespace CairnBench {

class CFastestTimes;

// True when each version of the equaliser and the plain loop give the same samples, steady,
// mid/side and ramped; says on standard error which ones don't.
bool CheckSameSamples();

void RegisterEqualiserBenchmarks();
// The plain loop, and the ratio of each version of the equaliser to it.
void PrintEqualiserTable(const CFastestTimes& times);

} // namespace CairnBench
