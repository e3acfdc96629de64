// The benchmarks of formulas.
#pragma once

namespace CairnBench {

class CFastestTimes;

void RegisterFormulaBenchmarks();
// The time of a compilation, and that of an evaluation beside the same expression in C++.
void PrintFormulaTable(const CFastestTimes& times);

} // namespace CairnBench
