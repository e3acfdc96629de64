#include "support/FastestTimes.h"

#include <algorithm>

namespace CairnBench {

void CFastestTimes::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred)
            continue;
        const auto units = run.counters.find(UnitsCounter);
        if (units == run.counters.end())
            continue;
        const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
        const double time = seconds * 1e9 / units->second.value;
        const auto entry = m_Times.try_emplace(run.run_name.function_name, time).first;
        entry->second = std::min(entry->second, time);
    }
}

std::optional<double> CFastestTimes::Get(const std::string& name) const {
    const auto entry = m_Times.find(name);
    return entry == m_Times.end() ? std::nullopt : std::optional(entry->second);
}

} // namespace CairnBench
