#include "startup/background/BackgroundTaskItem.h"

#include "core/ExcludedNames.h"

#include <QDir>
#include <QStringList>
#include <QUrl>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

QSet<QString> dispositionTokens(const BackgroundTaskItem& item) {
    QSet<QString> tokens;
    const QString disposition = item.disposition.toLower();
    qsizetype start = 0;
    for (qsizetype place = 0; place <= disposition.size(); ++place) {
        if (place < disposition.size() && disposition.at(place).isLetter()) {
            continue;
        }
        if (place > start) {
            tokens.insert(disposition.mid(start, place - start));
        }
        start = place + 1;
    }
    return tokens;
}

bool isActive(const BackgroundTaskItem& item) {
    const QSet<QString> tokens = dispositionTokens(item);
    return !tokens.contains(u"disallowed"_s) && !tokens.contains(u"disabled"_s) && tokens.contains(u"enabled"_s);
}

bool isLoginRecord(const BackgroundTaskItem& item) {
    return item.itemType.contains(u"login item"_s, Qt::CaseInsensitive) ||
           item.itemType.contains(u"agent"_s, Qt::CaseInsensitive) ||
           item.itemType.contains(u"daemon"_s, Qt::CaseInsensitive);
}

bool isApplicationRecord(const BackgroundTaskItem& item) {
    return item.itemType.contains(u"app"_s, Qt::CaseInsensitive);
}

QString backgroundItemSearchText(const BackgroundTaskItem& item) {
    QStringList texts{item.name};
    for (const std::optional<QString>& text : {item.bundleIdentifier, std::optional(item.identifier),
                                               item.parentIdentifier, item.executablePath, item.url}) {
        if (text) {
            texts.append(*text);
        }
    }
    return texts.join(u' ').toLower();
}

QString identifierLabel(const QString& identifier) {
    const auto afterNumber =
        std::find_if_not(identifier.begin(), identifier.end(), [](QChar c) { return c.isDigit(); });
    const bool isTyped = afterNumber != identifier.begin() && afterNumber != identifier.end() && *afterNumber == u'.';
    return isTyped ? identifier.mid(afterNumber - identifier.begin() + 1) : identifier;
}

std::optional<QString> backgroundItemLabel(const BackgroundTaskItem& item) {
    if (item.bundleIdentifier && !item.bundleIdentifier->isEmpty()) {
        return item.bundleIdentifier;
    }
    const QString label = identifierLabel(item.identifier);
    return label.isEmpty() ? std::nullopt : std::optional(label);
}

std::optional<QString> launchdLabel(const BackgroundTaskItem& item) {
    const bool isLaunchdJob = item.itemType.contains(u"agent"_s, Qt::CaseInsensitive) ||
                              item.itemType.contains(u"daemon"_s, Qt::CaseInsensitive);
    const QString label = isLaunchdJob ? identifierLabel(item.identifier) : QString();
    return label.isEmpty() ? backgroundItemLabel(item) : std::optional(label);
}

std::optional<QString> recordedPath(const BackgroundTaskItem& item) {
    QString path = item.url.value_or(QString());
    if (path.startsWith(u"file://"_s)) {
        const QUrl url(path);
        path = url.isValid() && url.isLocalFile() ? url.toLocalFile() : QString();
    }
    return path.startsWith(u'/') ? std::optional(QDir::cleanPath(path)) : std::nullopt;
}

bool isDaemonRecord(const BackgroundTaskItem& item) {
    return item.itemType.contains(u"daemon"_s, Qt::CaseInsensitive) ||
           item.url.value_or(QString()).contains(u"/LaunchDaemons/"_s);
}

bool isRegisteredApplication(const BackgroundTaskItem& item) {
    return isApplicationRecord(item) && !isLoginRecord(item) && isActive(item) && recordedPath(item);
}

bool isProtectedRecord(const BackgroundTaskItem& item) {
    // Blanks in URLs are encoded: "Native%20Instruments".
    const QString url = QUrl::fromPercentEncoding(item.url.value_or(QString()).toUtf8());
    return isExcludedName(backgroundItemSearchText(item)) || isExcludedName(url);
}

bool isManagedRecord(const BackgroundTaskItem& item) {
    return item.itemType.contains(u"managed"_s, Qt::CaseInsensitive) ||
           item.flags.contains(u"managed"_s, Qt::CaseInsensitive);
}

} // namespace quorvane
