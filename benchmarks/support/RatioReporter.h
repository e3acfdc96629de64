// Prints the benchmarks as a table: the equaliser beside the plain loop, and their ratio.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace CairnBench {

// Benchmarks are named CASE/equaliser/FRAMES and CASE/plain/FRAMES and set the counter
// "frames_per_iteration". Of several repetitions the fastest counts: it is the one that was
// disturbed least. A case without a plain loop of its own is compared with that of "steady".
class CRatioReporter : public benchmark::BenchmarkReporter {
public:
    // The rows to print, CASE/FRAMES, in order.
    explicit CRatioReporter(std::vector<std::string> rows) : m_Rows(std::move(rows)) {}

    bool ReportContext(const Context& context) override;
    void ReportRuns(const std::vector<Run>& runs) override;
    void Finalize() override;

private:
    // Nanoseconds per stereo frame by benchmark name.
    std::map<std::string, double> m_Times;
    std::vector<std::string> m_Rows;
};

} // namespace CairnBench
