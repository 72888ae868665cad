#include "startup/background/QuarantineLeftovers.h"

#include "core/ExcludedNames.h"
#include "core/Paths.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"
#include "platform/TreeRemoval.h"
#include "startup/background/BackgroundDisableTarget.h"

#include <QRegularExpression>

#include <algorithm>
#include <optional>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = FileStatus::Kind;

/// The name of the helper of which something is left; none for any other name.
std::optional<QString> helperOfLeftover(const QString& name) {
    static const QRegularExpression leftover(u"^(.+\\.(?:app|plist))"_s + QRegularExpression::escape(kLeftoverEnding) +
                                             u"(?:\\.[0-9]+)?$"_s);
    const QRegularExpressionMatch match = leftover.match(name);
    return match.hasMatch() ? std::optional(match.captured(1)) : std::nullopt;
}

/// The helper's copies in the quarantine, whichever of its labels they lie under, and those that newer ones have made room for.
QStringList copiesOf(const QString& helper, const QString& quarantineFolder, const FileManager& files) {
    const QRegularExpression copy(u'^' + QRegularExpression::escape(helper) + u"(?:\\.[0-9]+)?$"_s);
    QStringList copies;
    for (const QString& label : namesIn(files, quarantineFolder)) {
        const QString folder = quarantineFolder + u'/' + label;
        const QStringList names = files.status(folder).kind == Kind::Folder ? namesIn(files, folder) : QStringList();
        for (const QString& name : names) {
            if (copy.match(name).hasMatch()) {
                copies.append(folder + u'/' + name);
            }
        }
    }
    return copies;
}

/// True when everything that is left stands in the copy as well, with the same content. Throws FileError.
bool holdsAllOf(const QString& copy, const QString& leftover, const FileManager& files) {
    const Kind kind = files.status(leftover).kind;
    if (kind != files.status(copy).kind || kind == Kind::Other) {
        return false;
    }
    if (kind == Kind::File) {
        return files.read(copy) == files.read(leftover);
    }
    const QStringList names = kind == Kind::Folder ? files.list(leftover) : QStringList();
    return std::all_of(names.begin(), names.end(), [&](const QString& name) {
        return holdsAllOf(copy + u'/' + name, leftover + u'/' + name, files);
    });
}

/// Throws FileError.
void settle(const QString& leftover, const QString& place, const QStringList& copies, FileManager& files,
            SettledLeftovers& settled) {
    const bool isKept = std::any_of(copies.begin(), copies.end(),
                                    [&](const QString& copy) { return holdsAllOf(copy, leftover, files); });
    if (isKept) {
        removeTree(files, leftover);
        settled.removed.append(lastPathComponent(leftover));
    } else if (!copies.isEmpty() && files.status(place).kind == Kind::Missing) {
        files.move(leftover, place);
        settled.putBack.append(lastPathComponent(place));
    }
}

} // namespace

bool isKeptFromOthers(const QString& error) {
    return error.contains(u"Operation not permitted"_s);
}

SettledLeftovers settleQuarantineLeftovers(const QString& application, const QString& quarantineFolder,
                                           FileManager& files) {
    SettledLeftovers settled;
    for (const QString& path : pathsInHelperFolders(application, files)) {
        const std::optional<QString> helper = helperOfLeftover(lastPathComponent(path));
        if (!helper || isExcludedName(path)) {
            continue;
        }
        try {
            settle(path, parentFolder(path) + u'/' + *helper, copiesOf(*helper, quarantineFolder, files), files,
                   settled);
        } catch (const FileError& error) { // the next run tries again
            settled.wasRefused = settled.wasRefused || isKeptFromOthers(error.message());
        }
    }
    return settled;
}

} // namespace quorvane
