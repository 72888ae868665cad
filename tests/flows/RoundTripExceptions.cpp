#include "flows/RoundTrip.h"

#include "flows/RoundTripMac.h"
#include "simulator/BackgroundTasks.h"
#include "startup/items/StartupItem.h"

#include <QRegularExpression>

#include <algorithm>
#include <set>

namespace quorvane {

using namespace Qt::StringLiterals;
using macsim::Json;
using Difference = macsim::MacDifference;

namespace {

const QString kHome = u"/Users/alex"_s;
const QString kPreferences = kHome + u"/Library/Preferences/"_s;

QString textOfJson(const Json& json) {
    return QString::fromStdString(json.get<std::string>());
}

// ---- Preferences. MacPicture shows their values as XML.

QString fileOf(const SnapshotPreference& preference, const RoundTrip& trip) {
    if (preference.isNotificationCenters()) {
        return kPreferences + u"ByHost/com.apple.notificationcenterui."_s +
               textOfJson(trip.mac["machine"]["hardwareUuid"]) + u".plist"_s;
    }
    if (preference.isSystems()) {
        return preference.domain.toString() + u".plist"_s;
    }
    const bool isGlobal = preference.domain == u"NSGlobalDomain";
    return kPreferences + (isGlobal ? u".GlobalPreferences"_s : preference.domain.toString()) + u".plist"_s;
}

bool isEmptyPreferenceFile(const Difference& difference, const RoundTrip& trip) {
    const auto& all = snapshotPreferences();
    const bool isOfPreference = difference.key == kPreferences + u"com.apple.ncprefs.plist"_s ||
                                std::any_of(all.begin(), all.end(), [&](const SnapshotPreference& preference) {
                                    return difference.key == fileOf(preference, trip);
                                });
    const bool isNew = !difference.before && difference.after == u"file";
    const bool isNewFolder = difference.key == kPreferences + u"ByHost"_s && !difference.before;
    return (isOfPreference && isNew) || isNewFolder;
}

// ---- The system's settings

bool isOfNotificationCenter(const Difference& difference, const RoundTrip&) {
    static const QString label = u"com.apple.notificationcenterui.agent"_s;
    const bool isOverride =
        difference.key == u"state launchd/disabled/user~1501/"_s + label && difference.after == u"false";
    const bool isJob = difference.key.startsWith(u"state launchd/jobs/gui~1501/"_s + label + u'/') && difference.after;
    const bool isProcess = difference.key.startsWith(u"state processes \"NotificationCenter\"/"_s) && difference.after;
    return isOverride || isJob || isProcess;
}

bool isOfBackupsNeverSwitched(const Difference& difference, const RoundTrip& trip) {
    const QString file = u"/Library/Preferences/com.apple.TimeMachine.plist"_s;
    const bool isFile = difference.key == file;
    const bool isSwitch = difference.key == file + u" AutoBackup"_s && difference.after == u"<false/>";
    return trip.mayChangeBackups &&
           ((isFile || isSwitch) && !difference.before && trip.mac["timeMachine"].contains("destination"));
}

bool isOfBackupsThatMayNotBeRead(const Difference& difference, const RoundTrip& trip) {
    const QString file = u"/Library/Preferences/com.apple.TimeMachine.plist"_s;
    return !trip.mayChangeBackups && (difference.key == file || difference.key == file + u" AutoBackup"_s);
}

std::optional<QString> indexedVolume(const Difference& difference) {
    const QString prefix = u"state spotlight/volumes/"_s;
    return difference.key.startsWith(prefix) ? std::optional(difference.key.mid(prefix.size()).replace(u"~1"_s, u"/"_s))
                                             : std::nullopt;
}

/// What was neither on nor off nor without a search can't be brought back, and where Spotlight doesn't answer nothing was captured.
bool isUnusualIndexing(const Difference& difference, const RoundTrip& trip) {
    const auto volume = indexedVolume(difference);
    const bool isCaptured =
        volume && trip.snapshot.spotlightByVolume && trip.snapshot.spotlightByVolume->contains(*volume);
    return volume && !isCaptured && (difference.after == u"\"enabled\"" || difference.after == u"\"disabled\"");
}

// ---- Login items

std::optional<QString> loginItemPath(const Difference& difference) {
    return difference.key.startsWith(kLoginItem) ? std::optional(difference.key.mid(kLoginItem.size())) : std::nullopt;
}

/// The item of a file as the Mac was described, or null.
Json itemBefore(const RoundTrip& trip, const QString& key) {
    for (const Json& item : trip.mac["loginItems"]) {
        if (loginItemKey(item) == key) {
            return item;
        }
    }
    return {};
}

QString nameIn(const std::optional<QString>& item) {
    return item.value_or(QString()).section(u" (hidden)"_s, 0, 0);
}
bool isHiddenIn(const std::optional<QString>& item) {
    return item.value_or(QString()).endsWith(u" (hidden)"_s);
}

bool isOrder(const Difference& difference, const RoundTrip&) {
    return difference.key == kLoginItemOrder;
}

bool isOwnName(const Difference& difference, const RoundTrip&) {
    const auto path = loginItemPath(difference);
    if (!path || !difference.before || !difference.after) {
        return false;
    }
    const QString file = path->section(u'/', -1, -1, QString::SectionSkipEmpty);
    const QString fileName = file.endsWith(u".app"_s) ? file.chopped(4) : file;
    return nameIn(difference.before) != fileName && nameIn(difference.after) == fileName &&
           isHiddenIn(difference.before) == isHiddenIn(difference.after);
}

bool isItemWithoutFile(const Difference& difference, const RoundTrip& trip) {
    const Json item = itemBefore(trip, difference.key);
    return !item.is_null() && item["path"].is_null() && difference.before && !difference.after;
}

/// macOS notes each application that is put into the login items, and that it was taken out.
bool isNoteOfLoginItem(const Difference& difference, const RoundTrip&) {
    static const QRegularExpression form(u"\\Astate backgroundTasks \"2\\..*\"/\\w+\\z"_s);
    if (!form.match(difference.key).hasMatch()) {
        return false;
    }
    return !difference.before || difference.key.endsWith(u"/enabled"_s);
}

// ---- Launch items and background items

/// The launchd job that a difference is about.
struct Job {
    QString domain;
    QString label;
    QString property;
};

std::optional<Job> launchItemJob(const Difference& difference) {
    static const QRegularExpression form(u"\\Astate launchd/jobs/([^/]+)/(com\\.launch\\.[^/]+)/(\\w+)\\z"_s);
    const QRegularExpressionMatch match = form.match(difference.key);
    return match.hasMatch()
               ? std::optional(Job{match.captured(1).replace(u"~1"_s, u"/"_s), match.captured(2), match.captured(3)})
               : std::nullopt;
}

bool wasLoaded(const RoundTrip& trip, const Job& job) {
    return trip.mac["launchd"]["jobs"][job.domain.toStdString()].contains(job.label.toStdString());
}

/// The process of a launch item's program, "job3".
bool isOfItsProcess(const Difference& difference) {
    return difference.key.startsWith(u"state processes \"job"_s);
}
/// Whether the process of a difference ran before.
bool ranBefore(const Difference& difference, const RoundTrip& trip) {
    const QString name = difference.key.section(u'"', 1, 1);
    const Json& processes = trip.mac["processes"];
    return std::any_of(processes.begin(), processes.end(),
                       [&](const Json& process) { return textOfJson(process["name"]) == name; });
}

/// Of a record, or one that a profile switches off although there is none.
bool isBackgroundLabel(const QString& label, const RoundTrip& trip) {
    const Json& records = trip.mac["backgroundTasks"]["records"];
    return std::any_of(records.begin(), records.end(),
                       [&label](const Json& task) {
                           return macsim::withoutTypeNumber(textOfJson(task["identifier"])) == label;
                       }) ||
           std::any_of(trip.applied.begin(), trip.applied.end(), [&label](const UnifiedProfile& profile) {
               return profile.startup.disabledBackgroundLabels().contains(label);
           });
}

bool isNewRunOfLaunchItem(const Difference& difference, const RoundTrip& trip) {
    const auto job = launchItemJob(difference);
    const bool isJob = job && wasLoaded(trip, *job) && (job->property == u"pid" || job->property == u"lastExitStatus");
    static const QRegularExpression agent(u"\\Astate launchd/jobs/gui~1501/(.*)/(pid|lastExitStatus)\\z"_s);
    const QRegularExpressionMatch match = agent.match(difference.key);
    const bool isAgent = match.hasMatch() && !job && isBackgroundLabel(match.captured(1), trip);
    return difference.after && (isJob || isAgent || (isOfItsProcess(difference) && ranBefore(difference, trip)));
}

/// Whether launchd's override of a launch item differs.
bool isOfItsOverride(const Difference& difference) {
    static const QRegularExpression form(u"\\Astate launchd/disabled/(user~1501|system)/com\\.launch\\."_s);
    return form.match(difference.key).hasMatch();
}

bool isOfBackgroundOverride(const Difference& difference, const RoundTrip& trip) {
    static const QRegularExpression form(u"\\Astate launchd/disabled/(?:user~1501|system)/(.*)\\z"_s);
    const QRegularExpressionMatch match = form.match(difference.key);
    return match.hasMatch() && isBackgroundLabel(match.captured(1), trip);
}

/// What the user has disabled by themselves isn't among them.
bool isNotedAsEnabled(const Difference& difference, const RoundTrip& trip) {
    return (isOfItsOverride(difference) || isOfBackgroundOverride(difference, trip)) && difference.after == u"false" &&
           difference.before != u"true";
}

/// Whether a login item inside an application has that label, which nobody else can load, or several items share it: launchd loads
/// none by a plist of which one record isn't allowed.
bool isLeftToItsApplication(const QString& label, const RoundTrip& trip) {
    const Json& records = trip.mac["backgroundTasks"]["records"];
    const auto hasLabel = [&label](const Json& task) {
        return macsim::withoutTypeNumber(textOfJson(task["identifier"])) == label;
    };
    const auto isLoginItem = [&](const Json& task) { return task["type"] == "login item" && hasLabel(task); };
    return std::any_of(records.begin(), records.end(), isLoginItem) ||
           std::count_if(records.begin(), records.end(), hasLabel) > 1;
}

/// A process that ended with its job.
bool isOfStoppedProcess(const Difference& difference, const RoundTrip& trip) {
    return difference.before && difference.key.startsWith(u"state processes \""_s) &&
           !difference.key.contains(u"\"NotificationCenter\""_s) && !isOfItsProcess(difference) &&
           !ranBefore(difference, trip); // of two processes with one name the other may be left
}

/// An application that a profile has put into the login items opens at a restart, and stays open.
bool isOpenedAtLogin(const Difference& difference, const RoundTrip& trip) {
    static const QRegularExpression process(u"\\Astate processes \"(.*)\"/\\w+\\z"_s);
    const QRegularExpressionMatch match = process.match(difference.key);
    return match.hasMatch() && !difference.before &&
           std::any_of(trip.applied.begin(), trip.applied.end(), [&match](const UnifiedProfile& profile) {
               const QList<StartupLaunchItem> opened = profile.startup.startupLaunchItems();
               return std::any_of(opened.begin(), opened.end(), [&match](const StartupLaunchItem& application) {
                   return application.path.endsWith(u'/' + match.captured(1) + u".app"_s);
               });
           });
}

/// The label of the job of a background item that isn't loaded any more.
std::optional<QString> stoppedBackgroundJob(const Difference& difference) {
    static const QRegularExpression job(u"\\Astate launchd/jobs/[^/]+/(.*)/(path|pid|lastExitStatus)\\z"_s);
    const QRegularExpressionMatch match = job.match(difference.key);
    return match.hasMatch() && !launchItemJob(difference) && !difference.after ? std::optional(match.captured(1))
                                                                               : std::nullopt;
}

/// Several applications bring an agent of one label: launchd takes one of their plists, whichever comes first.
bool isOfAnotherPlist(const Difference& difference, const RoundTrip& trip) {
    static const QRegularExpression path(u"\\Astate launchd/jobs/[^/]+/(.*)/path\\z"_s);
    const QRegularExpressionMatch match = path.match(difference.key);
    return match.hasMatch() && difference.before && difference.after && isLeftToItsApplication(match.captured(1), trip);
}

/// The process of a background item, which had ended by itself before and is started with its job.
bool isNewRunOfBackgroundItem(const Difference& difference, const RoundTrip&) {
    static const QRegularExpression process(u"\\Astate processes \"x( #\\d+)?\"/"_s);
    return process.match(difference.key).hasMatch() && !difference.before;
}

/// A login item inside an application: stopped, it starts at the next login.
bool isStoppedBackgroundJob(const Difference& difference, const RoundTrip& trip) {
    const std::optional<QString> label = stoppedBackgroundJob(difference);
    return isOfStoppedProcess(difference, trip) || (label && isLeftToItsApplication(*label, trip));
}

bool isItemThatCouldNotBeAskedFor(const Difference& difference, const RoundTrip& trip) {
    return !trip.mayAskSystemEvents && (loginItemPath(difference) || difference.key == kLoginItemOrder);
}

/// Any of several.
template <bool (*... covers)(const Difference&, const RoundTrip&)>
bool any(const Difference& difference, const RoundTrip& trip) {
    return (covers(difference, trip) || ...);
}

bool isOrderOrName(const Difference& difference, const RoundTrip& trip) {
    return trip.mayAskSystemEvents && any<isOrder, isOwnName, isItemWithoutFile>(difference, trip);
}

} // namespace

/// Of a job, or of its process, that wasn't loaded when it was put aside: macOS loads it at the next start.
bool isLeftToTheNextStart(const Difference& difference, const RoundTrip& trip) {
    const auto job = launchItemJob(difference);
    return !difference.after &&
           ((job && !wasLoaded(trip, *job)) || (isOfItsProcess(difference) && !ranBefore(difference, trip)));
}

/// With and without a slash behind it a path leads to the same application.
QString loginItemKey(const Json& item) {
    const bool hasPath = item["path"].is_string();
    return kLoginItem +
           (hasPath ? comparablePath(textOfJson(item["path"])) : u"\"%1\""_s.arg(textOfJson(item["name"])));
}

// ---- The program's own

bool isQuorvanesOwn(const Difference& difference) {
    static const QStringList places{kHome + u"/.quorvane"_s, kHome + u"/Library/Application Support/Quorvane"_s,
                                    kHome + u"/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s};
    static const QString backup = kHome + u"/.quorvane_backup"_s;
    static const QString kept = u"/Library/Application Support/Quorvane"_s;
    static const QStringList entries{backup,
                                     backup + u"/login_items.json"_s,
                                     backup + u"/UserHome_Library_LaunchAgents"_s,
                                     backup + u"/_Library_LaunchAgents"_s,
                                     backup + u"/_Library_LaunchDaemons"_s,
                                     kept,
                                     kept + u"/LaunchItems"_s,
                                     kept + u"/LaunchItems/_Library_LaunchAgents"_s,
                                     kept + u"/LaunchItems/_Library_LaunchDaemons"_s,
                                     kHome + u"/Library/Mobile Documents"_s,
                                     kPreferences + u"com.quorvane.app.plist"_s,
                                     kPreferences + u"com.quorvane.app.plist QuorvaneLastAppliedProfileName"_s,
                                     kPreferences + u"com.quorvane.app.plist QuorvaneManagedStartupAppPaths"_s,
                                     kPreferences + u"com.quorvane.app.plist QuorvaneChangedTweaks"_s,
                                     kPreferences + u"com.quorvane.app.plist QuorvaneSwitchedBackupsOff"_s,
                                     kHome + u"/Library/Logs"_s};
    return entries.contains(difference.key) || std::any_of(places.begin(), places.end(), [&](const QString& place) {
               return difference.key == place || difference.key.startsWith(place + u'/');
           });
}

bool isOfStartup(const Difference& difference) {
    static const QRegularExpression folder(
        u"\\A(/Users/alex/Library|/Library)/Launch(Agents|Daemons)(/|\\Z)|"
        "\\A(/Users/alex/\\.quorvane_backup|/Library/Application Support/Quorvane)(/|\\Z)|"
        "\\A/Applications/"_s);
    const QString& key = difference.key;
    const bool isOfNotificationCenter =
        key.contains(u"com.apple.notificationcenterui"_s) || key.contains(u"\"NotificationCenter\""_s);
    return !isOfNotificationCenter &&
           (key.startsWith(kLoginItem) || key == kLoginItemOrder || key.startsWith(kService) ||
            key.startsWith(u"state launchd/"_s) || key.startsWith(u"state processes "_s) ||
            key.startsWith(u"state backgroundTasks"_s) || folder.match(key).hasMatch());
}

const QList<RoundTripException>& roundTripExceptions() {
    static const QList<RoundTripException> exceptions{
        {u"What macOS notes for itself", "nobody may delete its notes",
         any<isEmptyPreferenceFile, isNotedAsEnabled, isNoteOfLoginItem>},
        {u"What was stopped runs anew", "a process that has ended can't be had back",
         any<isOfNotificationCenter, isNewRunOfLaunchItem, isStoppedBackgroundJob, isOfAnotherPlist,
             isNewRunOfBackgroundItem, isOpenedAtLogin>},
        {u"The order of the login items, and names of their own", "System Events takes neither, and needs a file",
         isOrderOrName},
        {u"What Quorvane may not read or ask", "a permission is the user's to give",
         any<isItemThatCouldNotBeAskedFor, isOfBackupsThatMayNotBeRead>},
        {u"States that no command sets", "there is a command for on and one for off",
         any<isUnusualIndexing, isOfBackupsNeverSwitched>},
    };
    return exceptions;
}

} // namespace quorvane
