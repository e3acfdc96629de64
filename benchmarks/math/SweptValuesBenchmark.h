// The benchmark of histories of numbers.
#pragma once

namespace CairnBench {

class CFastestTimes;

void RegisterSweptValuesBenchmarks();
// The time of a point of a scrolling graph, with even samples and with uneven ones.
void PrintSweptValuesTable(const CFastestTimes& times);

} // namespace CairnBench
