#include "platform/macos/CloudFileRules.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString cloudFileName(const QString& listed) {
    const QString mark = u".icloud"_s;
    const bool isStandIn = listed.startsWith(u'.') && listed.endsWith(mark) && listed.size() > mark.size() + 1;
    return isStandIn ? listed.mid(1, listed.size() - 1 - mark.size()) : listed;
}

} // namespace

QStringList cloudFileNames(const QStringList& listed) {
    QStringList names;
    for (const QString& name : listed) {
        names.append(cloudFileName(name));
    }
    names.removeDuplicates();
    return names;
}

std::optional<QString> failureOf(const CoordinatedChange& change) {
    if (change.isDone) {
        return std::nullopt;
    }
    for (const QString& words : {change.failure, change.refusal}) {
        if (!words.isEmpty()) {
            return words;
        }
    }
    return u"The file couldn’t be changed."_s;
}

QString cloudEndText() {
    return u"The program is quitting."_s;
}

} // namespace quorvane
