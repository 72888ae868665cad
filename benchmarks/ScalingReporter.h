#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <vector>

namespace quorvane {

/// Compares the times of one operation at two sizes of its input in the same run: ten times the input may take at most
/// twelve times the time.
class ScalingReporter final : public benchmark::ConsoleReporter {
public:
    void ReportRuns(const std::vector<Run>& runs) override;

    /// Prints a line for each operation. True when each is in proportion.
    bool reportRatios() const;

private:
    std::map<std::string, std::map<long, double>> m_best; ///< the shortest time by operation and size of the input
};

} // namespace quorvane
