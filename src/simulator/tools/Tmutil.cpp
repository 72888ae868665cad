#include "simulator/tools/Tmutil.h"

#include "simulator/Permissions.h"
#include "simulator/PreferenceStore.h"
#include "simulator/tools/ToolOptions.h"

#include <QHash>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kTimeMachineSubject = "timeMachine";
constexpr int kNoRootStatus = 1; // not established
constexpr int kNoFullDiskAccessStatus = 80;
constexpr int kUnrecognizedVerbStatus = 64; // not established
constexpr int kMacOSTahoe = 26;

QString textIn(const Json& json, const char* key) {
    const Json value = json.is_object() ? json.value(key, Json()) : Json();
    return value.is_string() ? QString::fromStdString(value.get<std::string>()) : QString();
}

bool isOn(const Json& json, const char* key) {
    return json.is_object() && json.value(key, false);
}

QString entry(int indent, const QString& key, const QString& value) {
    return QString(indent, u' ') + key + u" = "_s + value + u";\n"_s;
}

QString quoted(const QString& value) {
    return u'"' + value + u'"';
}

/// Keys are sorted, the ones with capital letters first.
void printRunning(ToolContext& context, const Json& state) {
    const Json destination = state.value("destination", Json());
    const QString percent = textIn(state, "percent").isEmpty() ? u"-1"_s : textIn(state, "percent");
    const QString phase = textIn(state, "phase").isEmpty() ? u"Copying"_s : textIn(state, "phase");
    context.print(entry(4, u"BackupPhase"_s, phase) + entry(4, u"ClientID"_s, quoted(u"com.apple.backupd"_s)));
    if (destination.is_object()) {
        context.print(entry(4, u"DestinationID"_s, quoted(textIn(destination, "id"))));
        context.print(entry(4, u"DestinationMountPoint"_s, quoted(textIn(destination, "mountPoint"))));
    }
    context.print(entry(4, u"Percent"_s, quoted(percent)));
    context.print(u"    Progress =     {\n"_s + entry(8, u"Percent"_s, quoted(percent)) + u"    };\n"_s);
    context.print(entry(4, u"Running"_s, u"1"_s) + entry(4, u"Stopping"_s, isOn(state, "stopping") ? u"1"_s : u"0"_s));
}

int showStatus(ToolContext& context) {
    if (context.arguments.size() > 2) {
        return notSimulated(context, context.arguments.mid(1).join(u' '));
    }
    const Json state = context.mac.state().read(kTimeMachineSubject);
    context.print(u"Backup session status:\n{\n"_s);
    if (isOn(state, "running")) {
        printRunning(context, state);
    } else {
        context.print(entry(4, u"ClientID"_s, quoted(u"com.apple.backupd"_s)) +
                      entry(4, u"Percent"_s, quoted(u"-1"_s)) + entry(4, u"Running"_s, u"0"_s));
    }
    context.print(u"}\n"_s);
    return 0;
}

int showDestination(ToolContext& context) {
    if (context.arguments.size() > 2) {
        return notSimulated(context, context.arguments.mid(1).join(u' '));
    }
    const Json state = context.mac.state().read(kTimeMachineSubject);
    const Json destination = state.is_object() ? state.value("destination", Json()) : Json();
    if (!destination.is_object()) {
        // Some systems end with 0 here, others with 1.
        context.complain(u"tmutil: No destinations configured.\n"_s);
        return 1;
    }
    context.print(QString(52, u'=') + u'\n');
    context.print(u"Name          : "_s + textIn(destination, "name") + u'\n');
    context.print(u"Kind          : "_s + textIn(destination, "kind") + u'\n');
    if (const QString mountPoint = textIn(destination, "mountPoint"); !mountPoint.isEmpty()) {
        context.print(u"Mount Point   : "_s + mountPoint + u'\n');
    }
    context.print(u"ID            : "_s + textIn(destination, "id") + u'\n');
    return 0;
}

int refuseWithoutFullDiskAccess(ToolContext& context, const QString& verb) {
    context.complain(u"tmutil: "_s + verb + u" requires Full Disk Access privileges.\n"_s);
    if (context.mac.machine().systemVersion.section(u'.', 0, 0).toInt() < kMacOSTahoe) {
        context.complain(u"To allow this operation, select Full Disk Access in the Privacy\n"
                         u"tab of the Security & Privacy preference pane, and add Terminal\n"
                         u"to the list of applications which are allowed Full Disk Access.\n"_s);
    }
    return kNoFullDiskAccessStatus;
}

/// Switches automatic backups. A backup that runs goes on.
int switchAutomaticBackups(ToolContext& context, const QString& verb, bool on) {
    if (!context.isRoot()) {
        context.complain(u"tmutil: "_s + verb + u" requires root privileges.\n"_s);
        return kNoRootStatus;
    }
    if (!hasFullDiskAccess(context.mac.state())) {
        return refuseWithoutFullDiskAccess(context, verb);
    }
    const PreferenceDomain domain{u"/Library/Preferences/com.apple.TimeMachine"_s};
    const PreferenceStore store(context.mac, context.volume);
    const auto outcome = store.write(domain, u"AutoBackup"_s, PropertyList(on));
    if (outcome != PreferenceStore::Outcome::Done) {
        // What a Mac says when the setting can't be kept is not established.
        context.complain(u"tmutil: "_s + verb + u": The operation couldn't be completed.\n"_s);
        return 1;
    }
    return 0;
}

int enable(ToolContext& context) {
    return switchAutomaticBackups(context, u"enable"_s, true);
}

int disable(ToolContext& context) {
    return switchAutomaticBackups(context, u"disable"_s, false);
}

int stopBackup(ToolContext& context) {
    context.mac.state().update(kTimeMachineSubject, [](Json& state) {
        if (isOn(state, "running")) {
            state["running"] = false;
        }
    });
    return 0;
}

bool isUnsimulatedVerb(const QString& verb) {
    static const QStringList kVerbs{u"startbackup"_s,
                                    u"currentphase"_s,
                                    u"latestbackup"_s,
                                    u"listbackups"_s,
                                    u"machinedirectory"_s,
                                    u"snapshot"_s,
                                    u"setdestination"_s,
                                    u"removedestination"_s,
                                    u"addexclusion"_s,
                                    u"removeexclusion"_s,
                                    u"isexcluded"_s,
                                    u"localsnapshot"_s,
                                    u"listlocalsnapshots"_s,
                                    u"deletelocalsnapshots"_s,
                                    u"listlocalsnapshotdates"_s,
                                    u"thinlocalsnapshots"_s,
                                    u"compare"_s,
                                    u"delete"_s,
                                    u"deleteinprogress"_s,
                                    u"restore"_s,
                                    u"inheritbackup"_s,
                                    u"associatedisk"_s,
                                    u"calculatedrift"_s,
                                    u"uniquesize"_s,
                                    u"verifychecksums"_s,
                                    u"setquota"_s,
                                    u"version"_s,
                                    u"help"_s};
    return kVerbs.contains(verb);
}

} // namespace

int runTmutil(ToolContext& context) {
    static const QHash<QString, int (*)(ToolContext&)> kVerbs{{u"status"_s, showStatus},
                                                              {u"destinationinfo"_s, showDestination},
                                                              {u"enable"_s, enable},
                                                              {u"disable"_s, disable},
                                                              {u"stopbackup"_s, stopBackup}};
    const QString verb = context.arguments.value(1);
    if (const auto handler = kVerbs.value(verb)) {
        return handler(context);
    }
    if (verb.isEmpty() || isUnsimulatedVerb(verb)) {
        return notSimulated(context, verb.isEmpty() ? u"the list of verbs"_s : verb);
    }
    context.complain(verb + u": Unrecognized verb.\n"_s);
    return kUnrecognizedVerbStatus;
}

} // namespace macsim
