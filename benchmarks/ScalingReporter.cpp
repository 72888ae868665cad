#include "ScalingReporter.h"

#include <algorithm>
#include <cstdio>
#include <limits>

namespace quorvane {

namespace {

constexpr double kAllowedPerTenfold = 12.0;

} // namespace

void ScalingReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred) {
            continue;
        }
        auto& times = m_best[run.run_name.function_name];
        const long size = std::stol(run.run_name.args);
        const double time = run.GetAdjustedRealTime();
        const auto [known, isNew] = times.emplace(size, time);
        known->second = isNew ? time : std::min(known->second, time);
    }
}

bool ScalingReporter::reportRatios() const {
    bool isProportional = true;
    std::puts("\nTime for ten times the input:");
    for (const auto& [operation, times] : m_best) {
        const double inputs = static_cast<double>(times.rbegin()->first) / static_cast<double>(times.begin()->first);
        const double ratio = times.rbegin()->second / times.begin()->second;
        const bool holds = ratio <= kAllowedPerTenfold * inputs / 10.0;
        isProportional = isProportional && holds;
        std::printf("  %-28s %7ld to %7ld: %5.1f times  %s\n", operation.c_str(), times.begin()->first,
                    times.rbegin()->first, ratio, holds ? "ok" : "OUT OF PROPORTION");
    }
    return isProportional && !m_best.empty();
}

} // namespace quorvane
