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

/// Operations that may take more time for ten times the input than others.
struct Scaling {
    std::string operations; ///< what their names begin with
    double atMost;          ///< times the time
};

/// Compares times of one run. An operation at two sizes of its input: ten times the input may take at most twelve times
/// the time, if no Scaling says otherwise. An operation with another: see Comparison.
class RatioReporter final : public benchmark::ConsoleReporter {
public:
    RatioReporter(std::vector<Comparison> comparisons, std::vector<Scaling> scalings)
        : m_comparisons(std::move(comparisons))
        , m_scalings(std::move(scalings)) {}

    void ReportRuns(const std::vector<Run>& runs) override;

    /// Prints a line for each ratio. True when there is one and each is within its bounds.
    bool reportRatios() const;

private:
    double allowedPerTenfold(const std::string& operation) const;
    bool reportScaling(const std::string& operation, const std::map<long, double>& times) const;
    bool reportComparison(const Comparison& comparison) const;

    std::vector<Comparison> m_comparisons;
    std::vector<Scaling> m_scalings;
    std::map<std::string, std::map<long, double>> m_best; ///< the shortest time by operation and size of the input,
                                                          ///< which is 0 for an operation of one size
};

} // namespace quorvane
