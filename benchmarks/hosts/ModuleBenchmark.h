// The benchmarks of the loaded module, by its C entry points.
#pragma once

namespace CairnBench {

class CFastestTimes;

// The first load in the process counts as such: call this before anything else loads the module.
void RegisterModuleBenchmarks();
// A block through the module beside the bare filter, and how long loads and first instances take.
void PrintModuleTable(const CFastestTimes& times);

} // namespace CairnBench
