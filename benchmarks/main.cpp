// Measures the equaliser and formulas beside plain loops, an instance and the loaded module beside
// their bare filter, a change that runs through links, and the look-up in a history, in one run.
#include "datamodel/LinkBenchmark.h"
#include "dsp/PluginsFilters/EqualiserBenchmark.h"
#include "hosts/ModuleBenchmark.h"
#include "math/FormulaBenchmark.h"
#include "math/SweptValuesBenchmark.h"
#include "plugin/InstanceBenchmark.h"
#include "support/FastestTimes.h"

#include <string>
#include <vector>

int main(int argc, char** argv) {
    if (!CairnBench::CheckSameSamples())
        return 1;
    // Interleaved repetitions, so that a disturbance meets both sides alike. What is given on the
    // command line comes later and wins.
    std::vector<std::string> arguments = {argv[0], "--benchmark_enable_random_interleaving=true",
                                          "--benchmark_repetitions=9", "--benchmark_min_time=0.03"};
    arguments.insert(arguments.end(), argv + 1, argv + argc);
    std::vector<char*> pointers;
    for (std::string& argument : arguments)
        pointers.push_back(argument.data());
    int count = static_cast<int>(pointers.size());
    benchmark::Initialize(&count, pointers.data());
    if (benchmark::ReportUnrecognizedArguments(count, pointers.data()))
        return 2;
    CairnBench::RegisterEqualiserBenchmarks();
    CairnBench::RegisterInstanceBenchmarks();
    CairnBench::RegisterModuleBenchmarks();
    CairnBench::RegisterLinkBenchmarks();
    CairnBench::RegisterSweptValuesBenchmarks();
    CairnBench::RegisterFormulaBenchmarks();
    CairnBench::CFastestTimes times;
    benchmark::RunSpecifiedBenchmarks(&times);
    CairnBench::PrintEqualiserTable(times);
    CairnBench::PrintInstanceTable(times);
    CairnBench::PrintModuleTable(times);
    CairnBench::PrintLinkTable(times);
    CairnBench::PrintSweptValuesTable(times);
    CairnBench::PrintFormulaTable(times);
    benchmark::Shutdown();
    return 0;
}
