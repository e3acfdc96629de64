// Collects the times of benchmarks, for tables that set them beside each other.
#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <optional>
#include <string>

namespace CairnBench {

// How many of the units that a time is given for, such as frames, one iteration makes.
inline constexpr const char* UnitsCounter = "units_per_iteration";

// Of several repetitions the fastest counts: it is the one that was disturbed least.
class CFastestTimes : public benchmark::BenchmarkReporter {
public:
    bool ReportContext(const Context&) override { return true; }
    void ReportRuns(const std::vector<Run>& runs) override;

    // In nanoseconds per unit; nothing for a benchmark that was left out on the command line.
    std::optional<double> Get(const std::string& name) const;

private:
    std::map<std::string, double> m_Times;
};

} // namespace CairnBench
