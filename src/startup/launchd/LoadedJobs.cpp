#include "startup/launchd/LoadedJobs.h"

#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

std::optional<QSet<QString>> parsedLoadedJobs(const QString& output) {
    const QStringList lines = output.split(u'\n');
    if (lines.first() != u"PID\tStatus\tLabel") {
        return std::nullopt;
    }
    QSet<QString> labels;
    for (const QString& line : lines.mid(1)) {
        const QString label = line.section(u'\t', 2);
        if (!label.isEmpty()) {
            labels.insert(label);
        }
    }
    return labels;
}

} // namespace quorvane
