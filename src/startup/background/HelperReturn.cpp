#include "startup/background/HelperReturn.h"

#include "core/ExcludedNames.h"
#include "core/Paths.h"
#include "platform/Bundles.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "startup/launchd/LaunchItemNames.h"
#include "startup/launchd/LaunchPlist.h"

#include <QDir>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// True for the place of a helper that its record may name: directly in one of the two folders of its application.
bool isHelperPlace(const TakenHelper& helper) {
    const QString library = helper.application + u"/Contents/Library/"_s;
    const QString folder = parentFolder(helper.place);
    const bool isApplication = helper.application.startsWith(u'/') && helper.application.endsWith(u".app"_s) &&
                               QDir::cleanPath(helper.application) == helper.application;
    const bool isLoginItem = folder == library + u"LoginItems"_s && helper.place.endsWith(u".app"_s);
    const bool isAgent = folder == library + u"LaunchAgents"_s && helper.place.endsWith(u".plist"_s);
    return isApplication && (isLoginItem || isAgent) && isUsableLaunchdLabel(lastPathComponent(helper.place));
}

bool isProtectedHelper(const TakenHelper& helper) {
    return !mayOverride(helper.label) || isExcludedName(helper.place);
}

/// True for a folder that stands where its path says: no link is on the way to it.
bool isRealHelperFolder(const QString& folder, const FileManager& files) {
    try {
        return files.status(folder).kind == FileStatus::Kind::Folder && files.resolved(folder) == folder;
    } catch (const FileError&) {
        return false;
    }
}

bool isRealHelperCopy(const QString& copy, const FileManager& files) {
    const FileStatus::Kind kind = files.status(copy).kind;
    return isRealHelperFolder(parentFolder(copy), files) &&
           kind == (copy.endsWith(u".app"_s) ? FileStatus::Kind::Folder : FileStatus::Kind::File);
}

} // namespace

QString helperCopy(const TakenHelper& helper, const QString& quarantineFolder) {
    return isUsableLaunchdLabel(helper.label) && isHelperPlace(helper)
               ? quarantineFolder + u'/' + helper.label + u'/' + lastPathComponent(helper.place)
               : QString();
}

HelperReturn helperReturn(const TakenHelper& helper, const QString& copy, const FileManager& files,
                          const Bundles& bundles) {
    if (copy.isEmpty() || isProtectedHelper(helper) || !isRealHelperCopy(copy, files)) {
        return HelperReturn::IsNotSafe;
    }
    const QString folder = parentFolder(helper.place);
    if (isRealHelperFolder(folder, files) && files.status(helper.place).kind != FileStatus::Kind::Missing) {
        return HelperReturn::IsWhole;
    }
    const std::optional<QVariantMap> info = bundles.infoDictionary(helper.application);
    if (!helper.version.isKnown() || !info || applicationVersion(*info) != helper.version) {
        return HelperReturn::IsAnotherVersion;
    }
    const bool isReached = isRealHelperFolder(folder, files) && files.isWritable(folder);
    return isReached ? HelperReturn::GoesBack : HelperReturn::IsNotSafe;
}

QStringList unrecordedHelpers(const QString& quarantineFolder, const QSet<QString>& recorded,
                              const FileManager& files) {
    QStringList helpers;
    for (const QString& label : namesIn(files, quarantineFolder)) {
        const QString folder = quarantineFolder + u'/' + label;
        const QStringList names =
            files.status(folder).kind == FileStatus::Kind::Folder ? namesIn(files, folder) : QStringList();
        for (const QString& name : names) {
            const QString path = folder + u'/' + name;
            const bool isHelper = name.endsWith(u".app"_s) || name.endsWith(u".plist"_s);
            if (isHelper && !recorded.contains(path)) {
                helpers.append(path);
            }
        }
    }
    helpers.sort();
    return helpers;
}

} // namespace quorvane
