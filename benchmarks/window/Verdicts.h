#pragma once

namespace quorvane {

/// Prints what was measured beside what is allowed, and knows whether all of it held.
class Verdicts {
public:
    void limit(const char* what, double measured, double allowed, const char* unit);
    /// Against a baseline of the same run.
    void ratio(const char* what, double measured, const char* baselineName, double baseline, double allowed,
               const char* unit);

    bool allHold() const { return m_allHold; }

private:
    const char* verdict(bool holds);

    bool m_allHold = true;
};

} // namespace quorvane
