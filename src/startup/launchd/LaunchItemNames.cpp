#include "startup/launchd/LaunchItemNames.h"

#include "core/Paths.h"
#include "platform/Bundles.h"
#include "platform/PropertyLists.h"

#include <QStringList>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// The value of a key when it holds a string.
QString textValue(const QVariantMap& dictionary, const QString& key) {
    const QVariant value = dictionary.value(key);
    return value.typeId() == QMetaType::QString ? value.toString() : QString();
}

/// The strings of an array, or the one string that stands in its place.
QStringList textValues(const QVariant& value) {
    QStringList texts;
    const QVariantList values = value.typeId() == QMetaType::QVariantList ? value.toList() : QVariantList{value};
    for (const QVariant& element : values) {
        if (element.typeId() == QMetaType::QString) {
            texts.append(element.toString());
        }
    }
    return texts;
}

/// Empty where the name says nothing.
QString cleanedName(const QString& name) {
    const QString trimmed = name.trimmed();
    return trimmed.contains(u' ') ? trimmed : splitCamelCaseWords(trimmed);
}

QString nameInDictionary(const QVariantMap& information) {
    const QString displayName = cleanedName(textValue(information, u"CFBundleDisplayName"_s));
    return displayName.isEmpty() ? cleanedName(textValue(information, u"CFBundleName"_s)) : displayName;
}

QString nameWithIdentifier(const QString& bundleIdentifier, const Bundles& bundles) {
    const std::optional<QVariantMap> information = bundles.infoDictionaryWithIdentifier(bundleIdentifier);
    return information ? nameInDictionary(*information) : QString();
}

/// What the plist starts, and the files among its arguments.
QStringList programPaths(const QVariantMap& plist) {
    QStringList paths;
    const QString program = textValue(plist, u"Program"_s);
    if (!program.isEmpty()) {
        paths.append(program);
    }
    const QVariant arguments = plist.value(u"ProgramArguments"_s);
    for (const QString& argument :
         arguments.typeId() == QMetaType::QVariantList ? textValues(arguments) : QStringList()) {
        if (argument.startsWith(u'/')) {
            paths.append(argument);
        }
    }
    return paths;
}

QString nameOfStartedApplication(const QVariantMap& plist, const Bundles& bundles) {
    for (const QString& path : programPaths(plist)) {
        const std::optional<QString> application = enclosingApplication(path);
        const QString name = application ? friendlyBundleName(*application, bundles).value_or(QString()) : QString();
        if (!name.isEmpty()) {
            return name;
        }
    }
    return {};
}

QString nameOfOwningBundle(const QVariantMap& plist, const Bundles& bundles) {
    QStringList identifiers = textValues(plist.value(u"AssociatedBundleIdentifiers"_s));
    identifiers += textValues(textValue(plist, u"BundleIdentifier"_s));
    for (const QString& identifier : identifiers) {
        const QString name = nameWithIdentifier(identifier, bundles);
        if (!name.isEmpty()) {
            return name;
        }
    }
    return {};
}

QString withoutPlistEndings(const QString& text) {
    return QString(text).remove(u".plist"_s).remove(u".agent"_s);
}

bool isTopLevelDomain(const QString& part) {
    static const QStringList domains{u"com"_s, u"org"_s, u"net"_s, u"io"_s, u"app"_s};
    return domains.contains(part.toLower());
}

} // namespace

QString launchItemDisplayName(const QString& plistPath, const QString& fileName, const PropertyLists& propertyLists,
                              const Bundles& bundles) {
    const std::optional<QVariantMap> plist = propertyLists.dictionary(plistPath);
    if (plist) {
        const QString label = textValue(*plist, u"Label"_s);
        for (const QString& name : {nameOfStartedApplication(*plist, bundles), nameOfOwningBundle(*plist, bundles),
                                    label.isEmpty() ? label : humanizedLabel(label)}) {
            if (!name.isEmpty()) {
                return name;
            }
        }
    }
    return humanizedLabel(fileName);
}

QString launchJobLabel(const QString& plistPath, const PropertyLists& propertyLists) {
    const std::optional<QVariantMap> plist = propertyLists.dictionary(plistPath);
    const QString label = plist ? textValue(*plist, u"Label"_s) : QString();
    return isUsableLaunchdLabel(label) ? label : QString();
}

bool isUsableLaunchdLabel(const QString& label) {
    return !label.isEmpty() && label != u"."_s && label != u".."_s && !label.startsWith(u'-') &&
           std::none_of(label.begin(), label.end(),
                        [](QChar c) { return c == u'/' || c.category() == QChar::Other_Control; });
}

bool isOwnLabel(const QString& label) {
    return label.startsWith(u"com.quorvane."_s);
}

bool isReservedLabel(const QString& label) {
    return label.startsWith(u"com.apple."_s) || isOwnLabel(label);
}

std::optional<QString> enclosingApplication(const QString& path) {
    QStringView outermost;
    QStringView installed;
    for (qsizetype end = path.size(); end > 0; end = path.lastIndexOf(u'/', end - 1)) {
        const QStringView folder = QStringView(path).left(end);
        if (!folder.endsWith(u".app"_s)) {
            continue;
        }
        outermost = folder;
        if (folder.startsWith(u"/Applications/"_s)) {
            installed = folder; // each further one is shorter
        }
    }
    const QStringView found = installed.isEmpty() ? outermost : installed;
    return found.isEmpty() ? std::nullopt : std::optional(found.toString());
}

std::optional<QString> friendlyBundleName(const QString& bundlePath, const Bundles& bundles) {
    const std::optional<QVariantMap> information = bundles.infoDictionary(bundlePath);
    if (!information) {
        return std::nullopt;
    }
    const QString name = nameInDictionary(*information);
    if (!name.isEmpty()) {
        return name;
    }
    const QString fileName = lastPathComponent(bundlePath);
    return cleanedName(fileName.endsWith(u".app"_s) ? fileName.chopped(4) : fileName);
}

QString humanizedLabel(const QString& label) {
    const QString text = withoutPlistEndings(label);
    QStringList parts = text.split(u'.', Qt::SkipEmptyParts);
    if (parts.size() >= 2 && isTopLevelDomain(parts.first())) {
        parts.removeFirst();
        if (parts.size() >= 2 && parts.first().toLower() == u"apple"_s) {
            parts.removeFirst();
        }
    }
    if (parts.isEmpty()) {
        return text;
    }
    for (QString& part : parts) {
        part = splitCamelCaseWords(part);
    }
    return parts.join(u' ');
}

QString splitCamelCaseWords(const QString& text) {
    QString spaced;
    for (const QChar c : text) {
        if (c.isUpper() && !spaced.isEmpty() && !spaced.back().isSpace() && !spaced.back().isUpper()) {
            spaced.append(u' ');
        }
        spaced.append(c);
    }
    QStringList words = spaced.split(u' ', Qt::SkipEmptyParts);
    for (QString& word : words) {
        word = word.left(1).toUpper() + word.mid(1).toLower();
    }
    return words.join(u' ');
}

} // namespace quorvane
