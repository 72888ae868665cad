#pragma once

#include <QSet>
#include <QString>

#include <optional>

namespace quorvane {

/// The labels of the jobs that `launchctl list` prints, loaded and running or not; none where it prints something else.
std::optional<QSet<QString>> parsedLoadedJobs(const QString& output);

} // namespace quorvane
