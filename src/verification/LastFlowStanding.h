#pragma once

#include "verification/ApplyVerificationResult.h"

#include <QDateTime>
#include <QList>
#include <QString>

namespace quorvane {

/// How what the last apply or way back has left stands now.
struct LastFlowStanding {
    QString name;                                 ///< of the profile or of the flow
    bool isWayBack = false;                       ///< it brought the user's own settings back
    bool isProfile = false;                       ///< a whole profile was applied
    QDateTime since;                              ///< in force without another flow in between
    QList<ApplyVerificationResult::Item> changed; ///< read as they should then, and don't any more

    bool operator==(const LastFlowStanding&) const = default;
};

/// "3 settings have changed since “Live Set” was applied"; empty where none has.
QString changesTitle(const LastFlowStanding& standing);
/// "App Nap: expected disabled", one for each.
QStringList changeLines(const LastFlowStanding& standing);

} // namespace quorvane
