#pragma once

#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

// Another build may belong to a container of another name.
#ifndef QUORVANE_CLOUD_CONTAINER
#define QUORVANE_CLOUD_CONTAINER "7KX2MR04TD.com.quorvane.app"
#endif

/// The program's container in iCloud, as its entitlements name it.
inline constexpr const char* kCloudContainer = QUORVANE_CLOUD_CONTAINER;

/// The names that iCloud's files have, out of those that a folder lists. A file that isn't on the disk keeps its name since macOS
/// 14 (Apple TN3150); until then ".name.icloud" stood for it, and such a one may be left from that time.
QStringList cloudFileNames(const QStringList& listed);

/// What became of a file that was to be written or removed in agreement with those who sync it.
struct CoordinatedChange {
    bool isDone = false;
    QString refusal; ///< the coordinator's words; empty without any
    QString failure; ///< the words for the write or the removal itself; empty without any
};

/// The words for a failure; none where there was none. A change that was made counts as made, whatever else was said.
std::optional<QString> failureOf(const CoordinatedChange& change);

/// What every change is answered with from the end of the program on.
QString cloudEndText();

} // namespace quorvane
