#include "support/RatioReporter.h"

#include <algorithm>
#include <cstdio>

namespace CairnBench {

namespace {

const char* const s_FramesCounter = "frames_per_iteration";

} // namespace

bool CRatioReporter::ReportContext(const Context&) {
    return true;
}

void CRatioReporter::ReportRuns(const std::vector<Run>& runs) {
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred)
            continue;
        const auto frames = run.counters.find(s_FramesCounter);
        if (frames == run.counters.end())
            continue;
        const std::string& name = run.run_name.function_name;
        const double seconds = run.real_accumulated_time / static_cast<double>(run.iterations);
        const double time = seconds * 1e9 / frames->second.value;
        const auto entry = m_Times.try_emplace(name, time).first;
        entry->second = std::min(entry->second, time);
    }
}

void CRatioReporter::Finalize() {
    std::printf("Nanoseconds per stereo frame, the fastest of all repetitions of one run.\n"
                "Silence has no plain loop of its own: beside it stands that of steady blocks.\n\n"
                "%-12s %7s %12s %12s %8s\n",
                "block", "frames", "equaliser", "plain loop", "ratio");
    for (const std::string& row : m_Rows) {
        const std::size_t slash = row.rfind('/');
        const std::string block = row.substr(0, slash);
        const std::string frames = row.substr(slash + 1);
        const auto equaliser = m_Times.find(block + "/equaliser/" + frames);
        if (equaliser == m_Times.end())
            continue; // Left out by a filter on the command line.
        auto plain = m_Times.find(block + "/plain/" + frames);
        if (plain == m_Times.end())
            plain = m_Times.find("steady/plain/" + frames);
        std::printf("%-12s %7s %12.3f", block.c_str(), frames.c_str(), equaliser->second);
        if (plain != m_Times.end())
            std::printf(" %12.3f %8.3f", plain->second, equaliser->second / plain->second);
        std::printf("\n");
    }
}

} // namespace CairnBench
