#pragma once

#include <QList>
#include <QString>

#include <optional>

namespace quorvane {

/// What a read-back of the live system found, setting by setting, in the order of the checks. Not saved.
struct ApplyVerificationResult {
    struct Item {
        QString name;
        std::optional<QString> detail;
        /// False of a setting that this Mac doesn't have: whatever was chosen holds, and says nothing of what is in force.
        bool isOnThisMac = true;
        QString note{}; ///< what else the log says of it, behind its line; mostly nothing
        /// True of one that reads as the user or the user's organization had it, whatever was chosen: that says nothing of what the
        /// program has done.
        bool isUsersOwn = false;

        bool operator==(const Item&) const = default;
    };

    QList<Item> verified;
    QList<Item> failed;
    /// Time Machine may not be read. What wasn't chosen and may be on or off for all the program knows is in neither list.
    bool lacksFullDiskAccess = false;

    bool operator==(const ApplyVerificationResult&) const = default;
};

/// The one line that an alert shows.
QString summary(const ApplyVerificationResult& result);

} // namespace quorvane
