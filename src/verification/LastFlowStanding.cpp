#include "verification/LastFlowStanding.h"

#include "core/OneLine.h"

#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

QString changesTitle(const LastFlowStanding& standing) {
    if (standing.changed.isEmpty()) {
        return {};
    }
    const QString settings =
        standing.changed.size() == 1 ? u"1 setting has"_s : u"%1 settings have"_s.arg(standing.changed.size());
    const QString when =
        standing.isWayBack ? u"your settings were restored"_s : u"“%1” was applied"_s.arg(nameOnOneLine(standing.name));
    return settings + u" changed since "_s + when;
}

QStringList changeLines(const LastFlowStanding& standing) {
    QStringList lines;
    for (const ApplyVerificationResult::Item& item : standing.changed) {
        const QString name = nameOnOneLine(item.name);
        lines.append(item.detail ? name + u": "_s + onOneLine(*item.detail) : name);
    }
    return lines;
}

} // namespace quorvane
