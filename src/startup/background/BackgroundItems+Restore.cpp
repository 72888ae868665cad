// The way back: helpers into their applications, permissions, and what was stopped into launchd. launchd's overrides are lifted
// before.

#include "startup/background/BackgroundItems.h"

#include "core/AdminBatch.h"
#include "core/AdminScript.h"
#include "core/ExcludedNames.h"
#include "core/JsonErrors.h"
#include "core/Paths.h"
#include "core/Quoting.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "startup/background/BackgroundDisableTarget.h"
#include "startup/background/HelperReturn.h"
#include "startup/launchd/LaunchItemNames.h"
#include "startup/launchd/Launchctl.h"
#include "startup/launchd/LaunchdReadings.h"
#include "startup/launchd/PutAsideRecord.h"

#include <QCoroTask>

#include <algorithm>
#include <optional>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// True for a file that stands where its path says: no link is on the way to it.
bool isRealPlist(const QString& path, const FileManager& files) {
    try {
        return files.status(path).kind == FileStatus::Kind::File && files.resolved(path) == path;
    } catch (const FileError&) {
        return false;
    }
}

/// True for a file that nobody but root can have put there, nor can change: so stand its folders, too.
bool isRootsOwnPlist(const QString& file, const FileManager& files) {
    const auto isRoots = [&files](const QString& path) {
        return files.status(path).owner == 0 && !files.isWritable(path);
    };
    const QStringList folders = foldersAbove(file);
    return isRealPlist(file, files) && isRoots(file) && std::all_of(folders.begin(), folders.end(), isRoots);
}

bool isAgentOfApplication(const QString& plist) {
    return plist.endsWith(u".plist"_s) && parentFolder(plist).endsWith(u".app/Contents/Library/LaunchAgents"_s);
}

/// The plist that launchd may be given again; empty where there is none. The record names it, which is the user's to change.
QString plistToLoad(const RecordedOverride& recorded, const LaunchdReadings& launchd, const Host& host) {
    const std::optional<LaunchPlist> plist = launchd.plistAt(recorded.plist);
    if (plist && plist->service() == recorded.service) {
        const bool isDaemon = recorded.service.domain == LaunchdDomain::System;
        const bool isSafe =
            isDaemon ? isRootsOwnPlist(plist->path(), host.files) : isRealPlist(plist->path(), host.files);
        return isSafe ? plist->path() : QString();
    }
    const bool isAgents = recorded.service.domain == LaunchdDomain::User && isAgentOfApplication(recorded.plist) &&
                          isRealPlist(recorded.plist, host.files) &&
                          launchJobLabel(recorded.plist, host.propertyLists) == recorded.service.label;
    return isAgents ? recorded.plist : QString();
}

} // namespace

BackgroundChanges BackgroundItems::changes() {
    try {
        return BackgroundRecord(host().files, host().machine).read();
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not read or write the record of background items: "_s + error.message());
    } catch (const DecodingError& error) {
        log(u"  [ERROR] The record of background items is damaged: "_s + error.message());
    }
    return {};
}

/// What a change is added to: a file that is no record gets another name first, so that whoever finds it can read it still.
std::optional<BackgroundChanges> BackgroundItems::changesToAddTo() {
    BackgroundRecord record(host().files, host().machine);
    try {
        return record.read();
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not read or write the record of background items: "_s + error.message());
        return std::nullopt;
    } catch (const DecodingError& error) {
        log(u"  [ERROR] The record of background items is damaged: "_s + error.message());
    }
    try {
        log(u"  [INFO] It is kept: "_s + record.putAside());
        return BackgroundChanges();
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not read or write the record of background items: "_s + error.message());
        return std::nullopt;
    }
}

/// @return false, with a line in the log, when it couldn't be saved
bool BackgroundItems::saveChanges(const BackgroundChanges& changes) {
    try {
        BackgroundRecord(host().files, host().machine).write(changes);
        return true;
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not read or write the record of background items: "_s + error.message());
        return false;
    }
}

QCoro::Task<void> BackgroundItems::restore(KeptOff kept) {
    putHelpersBack(kept);
    allowAgain(kept);
    co_await loadAgain(kept);
}

void BackgroundItems::putHelpersBack(const KeptOff& kept) {
    const QString quarantine = quarantineFolder(host().machine.homeFolder());
    BackgroundChanges changes = this->changes();
    const QList<TakenHelper> helpers = changes.helpers;
    QSet<QString> recorded = kept.helpers;
    for (const TakenHelper& helper : helpers) {
        const QString copy = helperCopy(helper, quarantine);
        if (!kept.helpers.contains(copy) && putBack(helper, copy)) {
            changes.helpers.removeOne(helper);
        }
        recorded.insert(copy);
    }
    for (const QString& path : unrecordedHelpers(quarantine, recorded, host().files)) {
        log(u"  [INFO] Stays aside, as nobody knows which version it belongs to: "_s + lastPathComponent(path));
    }
    if (changes.helpers != helpers) {
        saveChanges(changes);
    }
}

/// @return false for one that stays recorded: it may go the next time
bool BackgroundItems::putBack(const TakenHelper& helper, const QString& copy) {
    const QString name = lastPathComponent(helper.place);
    switch (helperReturn(helper, copy, host().files, host().bundles)) {
    case HelperReturn::IsWhole:
        log(u"  [INFO] Its application is whole again, the old helper stays aside: "_s + name);
        return true;
    case HelperReturn::IsAnotherVersion:
        log(u"  [INFO] Its application isn't the same any more, the old helper stays aside: "_s + name);
        return false;
    case HelperReturn::IsNotSafe:
        log(u"  [INFO] Not restored: "_s + name);
        return false;
    case HelperReturn::GoesBack:
        break;
    }
    try {
        host().files.move(copy, helper.place);
        log(u"  [RESTORED] Put back into its application: "_s + name);
        return true;
    } catch (const FileError& error) {
        log(u"  [ERROR] Could not restore "_s + error.message());
        log(u"  [INFO] Not restored: "_s + name);
        return false;
    }
}

/// What the system says of its success is believed by nobody; where it says that it failed, the user is told what to do.
void BackgroundItems::allowAgain(const KeptOff& kept) {
    BackgroundChanges changes = this->changes();
    const QList<DisallowedItem> disallowed = changes.disallowed;
    for (const DisallowedItem& item : disallowed) {
        const bool isTheSystems = !mayOverride(item.label) || isExcludedName(item.application);
        if (isTheSystems || kept.permissions.contains(item.label)) {
            continue;
        }
        const bool isAsked = host().files.status(item.application).kind == FileStatus::Kind::Folder &&
                             m_serviceManagement.allowBackgroundItem(item.application, item.label) ==
                                 ServiceManagementBTM::Outcome::Succeeded;
        if (isAsked) {
            log(u"  [ACTION] Asked macOS to allow: "_s + item.label);
        } else {
            log(u"  [INFO] Turn it on in System Settings → General → Login Items, if it is off: "_s + item.label);
        }
        changes.disallowed.removeOne(item);
    }
    if (changes.disallowed != disallowed) {
        saveChanges(changes);
    }
}

/// What was stopped. Launch items that were put aside are loaded by whoever moves them back.
QCoro::Task<void> BackgroundItems::loadAgain(KeptOff kept) {
    QList<RecordedOverride> stopped = m_launchd.liftableOverrides(kept);
    const PutAsideRecord::Jobs aside = PutAsideRecord(host().files, host().machine).read();
    stopped.removeIf([&](const RecordedOverride& each) {
        const bool isGone = !each.plist.isEmpty() && host().files.status(each.plist).kind == FileStatus::Kind::Missing;
        return !each.wasLoaded.value_or(false) || aside.contains(each.plist) || isGone;
    });
    m_loading = stopped;
    if (stopped.isEmpty()) {
        co_return;
    }
    const LaunchdReadings launchd = co_await m_launchd.readings();
    for (const RecordedOverride& each : stopped) {
        const QString plist = plistToLoad(each, launchd, host());
        if (plist.isEmpty()) {
            continue;
        }
        if (each.service.domain == LaunchdDomain::System) {
            m_batch.open().queue(withoutStatus(kLaunchctlTool + u" bootstrap system "_s + shellQuoted(plist)));
        } else {
            const QStringList bootstrap{kLaunchctlTool, u"bootstrap"_s, u"gui/%1"_s.arg(host().machine.userId()),
                                        plist};
            co_await runCommand(bootstrap, OutputCapture::Discard);
        }
    }
}

QCoro::Task<void> BackgroundItems::settleRestored() {
    const QList<RecordedOverride> loading = std::exchange(m_loading, {});
    if (loading.isEmpty()) {
        co_return;
    }
    m_launchd.beginFlow();
    const LaunchdOverrides overrides = co_await m_launchd.overrides();
    for (const RecordedOverride& each : loading) {
        if (overrides.isDisabled(each.service)) {
            continue; // which is told where overrides are settled
        }
        const std::optional<bool> isLoaded = co_await m_launchd.isLoaded(each.service);
        if (!isLoaded.value_or(false)) {
            log((each.service.domain == LaunchdDomain::User ? u"  [INFO] Starts at the next login: "_s
                                                            : u"  [INFO] Starts after the restart: "_s) +
                each.shownName());
        }
    }
}

} // namespace quorvane
