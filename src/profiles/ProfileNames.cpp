#include "profiles/ProfileNames.h"

#include "core/FoldedText.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quorvane {

QString sanitizedProfileName(const QString& name) {
    QString sanitized = name.trimmed();
    const auto isSeparator = [](QChar character) {
        return character == u'/' || character == u':' || character == u'\\';
    };
    std::replace_if(sanitized.begin(), sanitized.end(), isSeparator, QChar(u'-'));
    return sanitized;
}

bool isProfileFileName(const QString& name) {
    // A path ends at a null character. "." and ".." are ordinary here: the extension follows.
    return !name.isEmpty() && !name.contains(QChar::Null) && name == sanitizedProfileName(name);
}

bool isUsableProfileName(const QString& name) {
    constexpr qsizetype kLongest = 255 - 5; // bytes of a file's name on a Mac's and on other volumes, without ".json"
    const QString sanitized = sanitizedProfileName(name);
    return isProfileFileName(sanitized) && sanitized.toUtf8().size() <= kLongest;
}

QString profileNameKey(const QString& name) {
    return foldedText(sanitizedProfileName(name));
}

QString uniqueProfileName(const QString& base, const QSet<QString>& usedLowercasedNames) {
    QString candidate = base;
    for (int number = 2; usedLowercasedNames.contains(profileNameKey(candidate)); ++number) {
        candidate = base + u' ' + QString::number(number);
    }
    return candidate;
}

} // namespace quorvane
