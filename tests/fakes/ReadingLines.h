#pragma once

#include <QByteArray>
#include <QRegularExpression>
#include <QString>
#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

/// The command lines that read the settings of the live system, spelled out here and not taken from the program.
namespace reading {

inline const QString kPower = u"/usr/bin/pmset -g custom"_s;
inline const QString kAppNap = u"/usr/bin/defaults read NSGlobalDomain NSAppSleepDisabled"_s;
inline const QString kLiveAppNap = u"/usr/bin/defaults read com.ableton.live NSAppSleepDisabled"_s;
inline const QString kUpdateDownload = u"/usr/bin/defaults read com.apple.SoftwareUpdate AutomaticDownload"_s;
inline const QString kUpdateCheck = u"/usr/bin/defaults read com.apple.SoftwareUpdate AutomaticCheckEnabled"_s;
inline const QString kStoreUpdate = u"/usr/bin/defaults read com.apple.commerce AutoUpdate"_s;
inline const QString kSystemUpdateDownload =
    u"/usr/bin/defaults read /Library/Preferences/com.apple.SoftwareUpdate AutomaticDownload"_s;
inline const QString kSystemUpdateInstall =
    u"/usr/bin/defaults read /Library/Preferences/com.apple.SoftwareUpdate AutomaticallyInstallMacOSUpdates"_s;
inline const QString kSystemStoreUpdate =
    u"/usr/bin/defaults read /Library/Preferences/com.apple.commerce AutoUpdate"_s;
inline const QString kDoNotDisturb =
    u"/usr/bin/defaults -currentHost read "
    "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui doNotDisturb"_s;
inline const QString kSiri = u"/usr/bin/defaults read com.apple.Siri Status"_s;
inline const QString kAssistant = u"/usr/bin/defaults read com.apple.assistant.support \"Assistant Enabled\""_s;
inline const QString kCrashReporter = u"/usr/bin/defaults read com.apple.CrashReporter DialogType"_s;
inline const QString kOldSounds = u"/usr/bin/defaults read com.apple.systemsound com.apple.sound.uiaudio.enabled"_s;
inline const QString kSounds = u"/usr/bin/defaults read NSGlobalDomain com.apple.sound.uiaudio.enabled"_s;
inline const QString kAirDrop = u"/usr/bin/defaults read com.apple.NetworkBrowser DisableAirDrop"_s;
inline const QString kLogoutState = u"/usr/bin/defaults read com.apple.loginwindow TALLogoutSavesState"_s;
inline const QString kLoginRelaunch = u"/usr/bin/defaults read com.apple.loginwindow LoginwindowLaunchesRelaunchApps"_s;
inline const QString kKeptWindows = u"/usr/bin/defaults read NSGlobalDomain NSQuitAlwaysKeepsWindows"_s;
inline const QString kTimeMachine = u"/usr/bin/defaults read /Library/Preferences/com.apple.TimeMachine AutoBackup"_s;
inline const QString kBackupDestination = u"/usr/bin/tmutil destinationinfo"_s;
inline const QString kBackupStatus = u"/usr/bin/tmutil status"_s;
inline const QString kSpotlight = u"/usr/bin/mdutil -s / /System/Volumes/Data"_s;
inline const QString kSpotlightOfAll = u"/usr/bin/mdutil -a -s"_s;
/// Both volumes of the system in one state: "Indexing enabled. "
inline QByteArray indexing(const QByteArray& state) {
    return "/:\n\t" + state + "\n/System/Volumes/Data:\n\t" + state + '\n';
}

/// Every preference that a tweak changes, in the order in which they are read.
inline const QStringList kPreferences{kAppNap,
                                      kLiveAppNap,
                                      kUpdateDownload,
                                      kUpdateCheck,
                                      kStoreUpdate,
                                      kSystemUpdateDownload,
                                      kSystemUpdateInstall,
                                      kSystemStoreUpdate,
                                      kDoNotDisturb,
                                      kSiri,
                                      kAssistant,
                                      kCrashReporter,
                                      kOldSounds,
                                      kSounds,
                                      kAirDrop,
                                      kLogoutState,
                                      kLoginRelaunch,
                                      kKeptWindows};
/// What prints the types of these, where each is set: a command for each domain.
inline const QStringList kTypesOfPreferences{
    u"/usr/bin/defaults export NSGlobalDomain -"_s,
    u"/usr/bin/defaults export com.ableton.live -"_s,
    u"/usr/bin/defaults export com.apple.SoftwareUpdate -"_s,
    u"/usr/bin/defaults export com.apple.commerce -"_s,
    u"/usr/bin/defaults export /Library/Preferences/com.apple.SoftwareUpdate -"_s,
    u"/usr/bin/defaults export /Library/Preferences/com.apple.commerce -"_s,
    u"/usr/bin/defaults -currentHost export /Users/alex/Library/Preferences/ByHost/"
    "com.apple.notificationcenterui -"_s,
    u"/usr/bin/defaults export com.apple.Siri -"_s,
    u"/usr/bin/defaults export com.apple.assistant.support -"_s,
    u"/usr/bin/defaults export com.apple.CrashReporter -"_s,
    u"/usr/bin/defaults export com.apple.systemsound -"_s,
    u"/usr/bin/defaults export com.apple.NetworkBrowser -"_s,
    u"/usr/bin/defaults export com.apple.loginwindow -"_s};
/// What the check of the tweaks reads, but for a running backup.
inline const QStringList kTweaksOff{kPower,
                                    kAppNap,
                                    kSystemUpdateDownload,
                                    kSystemUpdateInstall,
                                    kSystemStoreUpdate,
                                    kDoNotDisturb,
                                    kAssistant,
                                    kCrashReporter,
                                    kSounds,
                                    kAirDrop,
                                    kSpotlight,
                                    kTimeMachine};
/// Whether applications reopen after a restart.
inline const QStringList kAppRestoration{kLogoutState, kLoginRelaunch};
/// Whether windows do, too.
inline const QStringList kCleanReboot{kLogoutState, kLoginRelaunch, kKeptWindows};

/// As a trace shows these lines, one after the other.
inline QString traced(const QStringList& lines) {
    QString trace;
    for (const QString& line : lines) {
        trace += u"$> "_s + line + u'\n';
    }
    return trace;
}

} // namespace reading

/// The line of a trace for a look at all that tweaks change.
inline const QString kLookAtTweaks = u"? tweaks\n"_s;
/// What an apply reads behind its look, for the record of what was there before: the types of what it is about to change, and the
/// search of every volume where it switches that off.
inline const QRegularExpression kTypesBehindLook(
    QStringLiteral("\\? tweaks\n(\\$> /usr/bin/defaults (-currentHost )?export (?!com\\.apple\\.ncprefs)[^\n]+ -\n)*"
                   "(\\$> /usr/bin/mdutil -a -s\n)?"));
/// With each such look as one line.
inline QString withLooksAtTweaks(QString trace) {
    static const QRegularExpression look(
        QRegularExpression::escape(reading::traced(QStringList(reading::kPower) + reading::kPreferences)) +
        u"\\$> /usr/bin/mdutil (-a -s|-s / /System/Volumes/Data)\\n"_s +
        u"(\\$> /usr/bin/defaults read \\S*TimeMachine AutoBackup\\n)?(\\$> /usr/bin/tmutil destinationinfo\\n)?"_s);
    return trace.replace(look, kLookAtTweaks).replace(kTypesBehindLook, kLookAtTweaks);
}

} // namespace quorvane
