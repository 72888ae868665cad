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

        bool operator==(const Item&) const = default;
    };

    QList<Item> verified;
    QList<Item> failed;

    bool operator==(const ApplyVerificationResult&) const = default;
};

/// The one line that an alert shows.
QString summary(const ApplyVerificationResult& result);

} // namespace quorvane
