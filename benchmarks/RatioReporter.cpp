#include "RatioReporter.h"

#include <algorithm>
#include <cstdio>

namespace quorvane {

namespace {

constexpr double kUsuallyPerTenfold = 12.0;

const char* verdict(bool holds) {
    return holds ? "ok" : "OUT OF PROPORTION";
}

} // namespace

void RatioReporter::ReportRuns(const std::vector<Run>& runs) {
    ConsoleReporter::ReportRuns(runs);
    for (const Run& run : runs) {
        if (run.run_type != Run::RT_Iteration || run.error_occurred) {
            continue;
        }
        auto& times = m_best[run.run_name.function_name];
        const long size = run.run_name.args.empty() ? 0 : std::stol(run.run_name.args);
        const double time = run.GetAdjustedRealTime();
        const auto [known, isNew] = times.emplace(size, time);
        known->second = isNew ? time : std::min(known->second, time);
    }
}

bool RatioReporter::reportRatios() const {
    bool holds = !m_best.empty();
    std::puts("\nTime for ten times the input:");
    for (const auto& [operation, times] : m_best) {
        if (times.size() > 1) {
            holds = reportScaling(operation, times) && holds;
        }
    }
    std::puts("\nTime against a baseline:");
    for (const Comparison& comparison : m_comparisons) {
        holds = reportComparison(comparison) && holds;
    }
    return holds;
}

double RatioReporter::allowedPerTenfold(const std::string& operation) const {
    for (const Scaling& scaling : m_scalings) {
        if (operation.compare(0, scaling.operations.size(), scaling.operations) == 0) {
            return scaling.atMost;
        }
    }
    return kUsuallyPerTenfold;
}

bool RatioReporter::reportScaling(const std::string& operation, const std::map<long, double>& times) const {
    const double inputs = static_cast<double>(times.rbegin()->first) / static_cast<double>(times.begin()->first);
    const double ratio = times.rbegin()->second / times.begin()->second;
    const bool holds = ratio <= allowedPerTenfold(operation) * inputs / 10.0;
    std::printf("  %-28s %7ld to %7ld: %5.1f times  %s\n", operation.c_str(), times.begin()->first,
                times.rbegin()->first, ratio, verdict(holds));
    return holds;
}

/// One whose operations weren't run, because a filter left them out, is no failure.
bool RatioReporter::reportComparison(const Comparison& comparison) const {
    const auto operation = m_best.find(comparison.operation);
    const auto baseline = m_best.find(comparison.baseline);
    if (operation == m_best.end() || baseline == m_best.end()) {
        return true;
    }
    const double ratio = operation->second.begin()->second / baseline->second.begin()->second;
    const bool holds = ratio <= comparison.atMost;
    std::printf("  %-28s %s: %4.2f times, at most %4.2f  %s\n", comparison.operation.c_str(),
                comparison.baseline.c_str(), ratio, comparison.atMost, verdict(holds));
    return holds;
}

} // namespace quorvane
