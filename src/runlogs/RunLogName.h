#pragma once

#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// The file that keeps the log of one run of the program.
struct RunLogName {
    QString file;    ///< "Quorvane 2026-11-23 10.58.07 (4711).log": names sort as the runs began
    QDateTime began; ///< in UTC, to the second

    bool operator==(const RunLogName&) const = default;
};

/// None for a name of another form: what it names is nobody's run.
std::optional<RunLogName> runLogNamed(const QString& file);

/// A name that none of `taken` is. Two processes never make the same one, because each puts its own number into it.
/// @param processName  see Machine::processName
RunLogName freeRunLogName(const QDateTime& began, const QString& processName, const QStringList& taken);

/// Those of the names that are a run's, the newest first.
QList<RunLogName> runLogsIn(const QStringList& files);

inline constexpr qsizetype kRunsKept = 5;

/// The runs that go when another one begins: all but the newest, so many that with it there are `kRunsKept`.
/// @param runs  without the one that begins, the newest first
QList<RunLogName> runsToForget(const QList<RunLogName>& runs);

} // namespace quorvane
