#include "Verdicts.h"

#include <cstdio>

namespace quorvane {

void Verdicts::limit(const char* what, double measured, double allowed, const char* unit) {
    std::printf("  %-28s %7.1f %s, at most %.1f  %s\n", what, measured, unit, allowed, verdict(measured <= allowed));
}

void Verdicts::ratio(const char* what, double measured, const char* baselineName, double baseline, double allowed,
                     const char* unit) {
    const double times = measured / baseline;
    std::printf("  %-28s %7.1f %s, %s %.1f %s: %.2f times, at most %.2f  %s\n", what, measured, unit, baselineName,
                baseline, unit, times, allowed, verdict(times <= allowed));
}

const char* Verdicts::verdict(bool holds) {
    m_allHold = m_allHold && holds;
    return holds ? "ok" : "OUT OF PROPORTION";
}

} // namespace quorvane
