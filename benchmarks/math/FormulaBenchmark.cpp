#include "math/FormulaBenchmark.h"

#include "math/FormulaBuilders.h"
#include "math/Function.h"
#include "math/ParametrizedFunction.h"
#include "support/FastestTimes.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstdio>
#include <memory>
#include <vector>

namespace CairnBench {

using namespace Lathe::Math;

namespace {

constexpr const char* s_Formula = "min(max(a * x + b, 0), 1)";
constexpr double s_A = 0.75;
constexpr double s_B = 0.125;

using LiveFunction = std::unique_ptr<TIParametrizedFunction<IFunction>>;

LiveFunction BuildFormula() {
    return LiveFunction(BuildParametrizedFunction(s_Formula, "x"));
}

// From where the result is 0 to where it is 1.
std::vector<double> MakeArguments() {
    std::vector<double> arguments(256);
    for (std::size_t i = 0; i < arguments.size(); ++i)
        arguments[i] = static_cast<double>(i) / 64.0 - 2.0;
    return arguments;
}

// One result after the other, so that neither side computes several at once.
template <class TFunction>
void Evaluate(benchmark::State& state, const TFunction& function) {
    const std::vector<double> arguments = MakeArguments();
    for (auto _ : state) {
        for (const double x : arguments)
            benchmark::DoNotOptimize(function(x));
    }
    state.counters[UnitsCounter] = static_cast<double>(arguments.size());
}

void EvaluateFormula(benchmark::State& state) {
    const LiveFunction formula = BuildFormula();
    formula->SetParam("a", s_A);
    formula->SetParam("b", s_B);
    const IFunction& function = *formula->GetFunction();
    Evaluate(state, [&function](double x) { return function.Evaluate(x); });
}

void EvaluatePlain(benchmark::State& state) {
    double a = s_A;
    double b = s_B;
    benchmark::DoNotOptimize(a);
    benchmark::DoNotOptimize(b);
    Evaluate(state, [a, b](double x) { return std::min(std::max(a * x + b, 0.0), 1.0); });
}

} // namespace

void RegisterFormulaBenchmarks() {
    benchmark::RegisterBenchmark("formula/build", [](benchmark::State& state) {
        for (auto _ : state)
            benchmark::DoNotOptimize(BuildFormula().get());
        state.counters[UnitsCounter] = 1;
    });
    benchmark::RegisterBenchmark("formula/evaluate", EvaluateFormula);
    benchmark::RegisterBenchmark("formula/plain", EvaluatePlain);
}

void PrintFormulaTable(const CFastestTimes& times) {
    if (const auto build = times.Get("formula/build"))
        std::printf("\nThe formula \"%s\" is compiled in %.1f microseconds.\n", s_Formula,
                    *build * 1e-3);
    const auto evaluate = times.Get("formula/evaluate");
    const auto plain = times.Get("formula/plain");
    if (evaluate && plain)
        std::printf("It is evaluated in %.1f ns, the same in C++ in %.2f ns: %.1f times.\n",
                    *evaluate, *plain, *evaluate / *plain);
}

} // namespace CairnBench
