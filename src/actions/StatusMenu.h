#pragma once

#include "actions/ActiveProfile.h"

#include <QList>
#include <QString>
#include <QUuid>

namespace quorvane {

/// An entry of the status item's menu, from top to bottom. What it says is plain text: a toolkit that gives "&" a meaning has
/// it escaped.
struct StatusMenuEntry {
    enum class Kind {
        Separator,
        Text,   ///< says something and can't be chosen
        Header, ///< the same, above its rows
        RestoreDefault,
        Profile,
        OpenWindow,
        Quit,
    };

    Kind kind = Kind::Separator;
    QString title{};
    QString symbol{}; ///< of the system's symbol font; none where it is empty
    bool isEnabled = false;
    bool isChecked = false;
    QString key{};  ///< together with the system's command key
    QString name{}; ///< of a profile, as it is saved
    QUuid id{};     ///< of that profile

    bool operator==(const StatusMenuEntry&) const = default;
};

/// @param profiles  the saved ones, in their order
/// @param isIdle    an action may begin
QList<StatusMenuEntry> statusMenu(const ActiveConfiguration& active, const QList<UnifiedProfile>& profiles,
                                  bool isIdle);

} // namespace quorvane
