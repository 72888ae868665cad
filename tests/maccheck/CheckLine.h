#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// How one check ended.
struct CheckResult {
    enum class Outcome { Pass, Fail, Skip };

    QString name = {};
    Outcome outcome = Outcome::Pass;
    QStringList reasons = {}; ///< of a failure or a skip, in their order
    QString told = {};        ///< what the check found out beside that: a time, a number

    bool operator==(const CheckResult&) const = default;
};

/// "FAIL name: why; and why", always one line.
QString checkLine(const CheckResult& result);

/// "12 passed, 1 failed, 3 skipped"
QString checkSummary(int passed, int failed, int skipped);

} // namespace quorvane
