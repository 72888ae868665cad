#include "runlogs/RunLogName.h"

#include <QRegularExpression>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

// No colons: in a name the Finder shows them as slashes.
const QString kMomentInName = u"yyyy-MM-dd HH.mm.ss"_s;

/// The number of the process is what stands last in its name.
QString fileOf(const QDateTime& began, const QString& processName, int number) {
    const QString process = processName.section(u'/', -1);
    const QString which = number == 1 ? process : process + u' ' + QString::number(number);
    return u"Quorvane "_s + began.toString(kMomentInName) + u" ("_s + which + u").log"_s;
}

} // namespace

std::optional<RunLogName> runLogNamed(const QString& file) {
    static const QRegularExpression form(
        uR"(\AQuorvane ([0-9]{4}-[0-9]{2}-[0-9]{2} [0-9]{2}\.[0-9]{2}\.[0-9]{2}) \([^()]+\)\.log\z)"_s);
    const QRegularExpressionMatch match = form.match(file);
    QDateTime began = QDateTime::fromString(match.captured(1), kMomentInName);
    began.setTimeSpec(Qt::UTC);
    return match.hasMatch() && began.isValid() ? std::optional(RunLogName{file, began}) : std::nullopt;
}

RunLogName freeRunLogName(const QDateTime& began, const QString& processName, const QStringList& taken) {
    const QDateTime utc = began.toUTC();
    int number = 1;
    while (taken.contains(fileOf(utc, processName, number))) {
        ++number;
    }
    const QString file = fileOf(utc, processName, number);
    return {file, utc.addMSecs(-utc.time().msec())};
}

QList<RunLogName> runLogsIn(const QStringList& files) {
    QList<RunLogName> runs;
    for (const QString& file : files) {
        if (const std::optional<RunLogName> run = runLogNamed(file)) {
            runs.append(*run);
        }
    }
    std::sort(runs.begin(), runs.end(),
              [](const RunLogName& one, const RunLogName& other) { return one.file > other.file; });
    return runs;
}

QList<RunLogName> runsToForget(const QList<RunLogName>& runs) {
    return runs.mid(kRunsKept - 1);
}

} // namespace quorvane
