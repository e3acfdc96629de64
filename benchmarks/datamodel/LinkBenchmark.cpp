#include "datamodel/LinkBenchmark.h"

#include "datamodel/links/CaptureParamConnection.h"
#include "datamodel/links/CaptureParamLink.h"
#include "datamodel/objects/capture/CaptureParam.h"
#include "support/FastestTimes.h"

#include <benchmark/benchmark.h>

#include <cstdio>
#include <deque>
#include <memory>
#include <vector>

namespace CairnBench {

using namespace Lathe::DataModel::Objects;

namespace {

constexpr int s_Links = 100;

std::unique_ptr<CCaptureParamLink> Join(const CCaptureParamLink*, CCaptureParam& from,
                                        CCaptureParam& to) {
    auto link = std::make_unique<CCaptureParamLink>(&from, &to);
    link->SetNormalized(true);
    return link;
}

// As a model makes it, with the constraint.
std::unique_ptr<CCaptureParamConnection> Join(const CCaptureParamConnection*, CCaptureParam& from,
                                              CCaptureParam& to) {
    auto connection = std::make_unique<CCaptureParamConnection>();
    connection->SetNormalized(true);
    connection->SetConstraint(true);
    connection->SetFirst(&from);
    connection->SetSecond(&to);
    connection->SetEnabled(true);
    return connection;
}

// Changes the first parameter of a chain, which must arrive at the last one.
template <class TLink>
void RunChain(benchmark::State& state) {
    std::deque<CCaptureParam> params(s_Links + 1);
    for (CCaptureParam& param : params)
        param.GetInfo().SetMax(1.0);
    std::vector<std::unique_ptr<TLink>> links;
    for (std::size_t i = 0; i < s_Links; ++i)
        links.push_back(Join(static_cast<const TLink*>(nullptr), params[i], params[i + 1]));
    double value = 0.0;
    for (auto _ : state) {
        value = 1.0 - value;
        params.front().SetValue(value);
        if (params.back().GetValue() != value)
            state.SkipWithError("the change doesn't arrive");
    }
    state.counters[UnitsCounter] = 1;
}

void PrintChain(const CFastestTimes& times, const char* name, const char* benchmark) {
    if (const auto time = times.Get(benchmark))
        std::printf("%-12s %7d %12.2f %12.1f\n", name, s_Links, *time * 1e-3, *time / s_Links);
}

} // namespace

void RegisterLinkBenchmarks() {
    benchmark::RegisterBenchmark("chain/links", RunChain<CCaptureParamLink>);
    benchmark::RegisterBenchmark("chain/connections", RunChain<CCaptureParamConnection>);
}

void PrintLinkTable(const CFastestTimes& times) {
    std::printf("\nA change that runs through a chain of normalised links; less than 20 "
                "microseconds are wanted\nof the one-way links.\n\n%-12s %7s %12s %12s\n",
                "chain", "links", "microsec.", "ns per link");
    PrintChain(times, "links", "chain/links");
    PrintChain(times, "connections", "chain/connections");
}

} // namespace CairnBench
