#include "math/SweptValuesBenchmark.h"

#include "math/SweptValues.h"
#include "support/FastestTimes.h"

#include <benchmark/benchmark.h>

#include <cmath>
#include <cstdio>
#include <random>
#include <string>

namespace CairnBench {

namespace {

constexpr int s_HistoryPoints = 256;
constexpr int s_GraphPoints = 1000;
constexpr double s_Period = 0.05; // s

// Jitter is the largest part of a period by which a sample is late.
void Run(benchmark::State& state, double jitter) {
    std::mt19937 generator(5);
    std::uniform_real_distribution<double> late(0.0, jitter);
    Lathe::Math::CSweptValues history;
    history.SetPointsCount(s_HistoryPoints);
    for (int i = 0; i < 2 * s_HistoryPoints; ++i)
        history.AddPoint((i + late(generator)) * s_Period, std::sin(i));
    const double step = s_Period * (s_HistoryPoints - 1) / s_GraphPoints;
    for (auto _ : state) {
        for (int i = 0; i < s_GraphPoints; ++i)
            benchmark::DoNotOptimize(history.Evaluate(-step * i));
    }
    state.counters[UnitsCounter] = s_GraphPoints;
}

} // namespace

void RegisterSweptValuesBenchmarks() {
    benchmark::RegisterBenchmark("swept/even", Run, 0.0);
    benchmark::RegisterBenchmark("swept/uneven", Run, 0.9);
}

void PrintSweptValuesTable(const CFastestTimes& times) {
    const auto even = times.Get("swept/even");
    const auto uneven = times.Get("swept/uneven");
    if (even && uneven)
        std::printf("\nCSweptValues::Evaluate at %d points of a %d-point history (wanted: under 30 "
                    "ns a point): %.1f ns, with late samples %.1f ns.\n",
                    s_GraphPoints, s_HistoryPoints, *even, *uneven);
}

} // namespace CairnBench
