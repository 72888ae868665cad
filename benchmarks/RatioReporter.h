#pragma once

#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <utility>
#include <vector>

namespace quorvane {

/// An operation, and another one of the same run that it is measured by.
struct Comparison {
    std::string operation;
    std::string baseline;
    double atMost; ///< times the baseline's time
};

/// Compares times of one run. An operation at two sizes of its input: ten times the input may take at most twelve times
/// the time. An operation with another: see Comparison.
class RatioReporter final : public benchmark::ConsoleReporter {
public:
    explicit RatioReporter(std::vector<Comparison> comparisons)
        : m_comparisons(std::move(comparisons)) {}

    void ReportRuns(const std::vector<Run>& runs) override;

    /// Prints a line for each ratio. True when there is one and each is within its bounds.
    bool reportRatios() const;

private:
    bool reportScaling(const std::string& operation, const std::map<long, double>& times) const;
    bool reportComparison(const Comparison& comparison) const;

    std::vector<Comparison> m_comparisons;
    std::map<std::string, std::map<long, double>> m_best; ///< the shortest time by operation and size of the input,
                                                          ///< which is 0 for an operation of one size
};

} // namespace quorvane
