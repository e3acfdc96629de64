// The benchmarks of a running instance.
#pragma once

namespace CairnBench {

class CFastestTimes;

void RegisterInstanceBenchmarks();
// A block through an instance beside its bare filter, the times of a whole state, and the memory of
// a full undo history.
void PrintInstanceTable(const CFastestTimes& times);

} // namespace CairnBench
