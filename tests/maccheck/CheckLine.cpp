#include "maccheck/CheckLine.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString word(CheckResult::Outcome outcome) {
    switch (outcome) {
    case CheckResult::Outcome::Pass:
        return u"PASS "_s;
    case CheckResult::Outcome::Fail:
        return u"FAIL "_s;
    case CheckResult::Outcome::Skip:
        return u"SKIP "_s;
    }
    Q_UNREACHABLE();
}

} // namespace

QString checkLine(const CheckResult& result) {
    QStringList said;
    for (const QString& text : result.reasons + QStringList(result.told)) {
        if (const QString line = text.simplified(); !line.isEmpty()) {
            said.append(line);
        }
    }
    const QString line = word(result.outcome) + result.name;
    return said.isEmpty() ? line : line + u": "_s + said.join(u"; "_s);
}

QString checkSummary(int passed, int failed, int skipped) {
    return u"%1 passed, %2 failed, %3 skipped"_s.arg(passed).arg(failed).arg(skipped);
}

} // namespace quorvane
