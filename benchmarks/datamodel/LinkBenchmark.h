// The benchmarks of the links between capture objects.
#pragma once

namespace CairnBench {

class CFastestTimes;

void RegisterLinkBenchmarks();
// A change that runs through a chain of links.
void PrintLinkTable(const CFastestTimes& times);

} // namespace CairnBench
