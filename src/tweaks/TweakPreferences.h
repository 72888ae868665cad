#pragma once

#include "tweaks/PerformanceSettings.h"

#include <QString>
#include <QStringList>
#include <QStringView>

#include <array>
#include <optional>
#include <span>

namespace quorvane {

// The preferences of macOS that tweaks change. What puts a tweak in force or back, what reads it, what a snapshot keeps and
// what brings that back all go by this table.

/// Whose value the `defaults` tool goes to: the user's on any Mac, or on this one alone.
enum class PreferenceHost { Any, Current };

/// Whether a tweak is in force, or as a fresh macOS has it.
enum class TweakState { InForce, Standard };

/// A preference: its tweak, its place, and the two values that the program writes.
struct MacPreference {
    bool PerformanceSettings::*tweak = nullptr;
    QStringView domain; ///< a path for those that root alone may write
    QStringView key;
    QStringView type;     ///< of both values, as an option of `defaults write`
    QStringView applied;  ///< puts the tweak in force
    QStringView standard; ///< of a fresh macOS; empty where the key isn't set
    /// False for one that macOS 14 and later are not known to read, or that is another application's: it is written and brought
    /// back, and proves nothing of the tweak.
    bool decides = true;
    TweakState whereNotSet = TweakState::Standard; ///< what macOS does without the key
    PreferenceHost host = PreferenceHost::Any;

    /// The per-host preferences are Notification Center's: their domain is told to the tool as a path in the user's home.
    constexpr bool isNotificationCenters() const { return host == PreferenceHost::Current; }
    /// Anybody may read it; root writes it.
    bool isSystems() const { return domain.startsWith(u'/'); }

    /// Whether it is the same preference: tables of values name it by its place.
    bool isAt(const MacPreference& other) const { return domain == other.domain && key == other.key; }
};

/// True when a value puts the tweak in force. A switch reads as it was written by its meaning, a word by its letters in any case.
/// @param value  none where the key isn't set
bool isApplied(const MacPreference& preference, const std::optional<QString>& value);
/// True for a value that is as good as what a fresh macOS has, which a key that isn't set always is.
bool isStandard(const MacPreference& preference, const std::optional<QString>& value);
/// True for two values that macOS takes for the same: a switch may be kept as a word or as a number, and an empty text says as much
/// as no key.
bool meansTheSame(const std::optional<QString>& value, const std::optional<QString>& other);

namespace preference {

using Settings = PerformanceSettings;

inline constexpr QStringView kNotSet;

inline constexpr bool kProvesNothing = false;
inline constexpr bool kDecides = true;

inline constexpr MacPreference kAppSleep{
    &Settings::appNap, u"NSGlobalDomain", u"NSAppSleepDisabled", u"-bool", u"YES", kNotSet};
inline constexpr MacPreference kLiveAppSleep{
    &Settings::appNap, u"com.ableton.live", u"NSAppSleepDisabled", u"-bool", u"YES", kNotSet, kProvesNothing};
inline constexpr MacPreference kUpdateDownload{
    &Settings::updates, u"com.apple.SoftwareUpdate", u"AutomaticDownload", u"-bool", u"NO", u"YES", kProvesNothing};
inline constexpr MacPreference kUpdateCheck{
    &Settings::updates, u"com.apple.SoftwareUpdate", u"AutomaticCheckEnabled", u"-bool", u"NO", u"YES", kProvesNothing};
inline constexpr MacPreference kStoreUpdate{
    &Settings::updates, u"com.apple.commerce", u"AutoUpdate", u"-bool", u"NO", u"YES", kProvesNothing};
// What softwareupdated and the App Store go by. AutomaticCheckEnabled beside them is left alone: macOS 26 deletes it within seconds,
// and what macOS knows of malware comes by it.
inline constexpr MacPreference kSystemUpdateDownload{&Settings::updates,
                                                     u"/Library/Preferences/com.apple.SoftwareUpdate",
                                                     u"AutomaticDownload",
                                                     u"-bool",
                                                     u"NO",
                                                     kNotSet};
inline constexpr MacPreference kSystemUpdateInstall{&Settings::updates,
                                                    u"/Library/Preferences/com.apple.SoftwareUpdate",
                                                    u"AutomaticallyInstallMacOSUpdates",
                                                    u"-bool",
                                                    u"NO",
                                                    kNotSet};
inline constexpr MacPreference kSystemStoreUpdate{
    &Settings::updates, u"/Library/Preferences/com.apple.commerce", u"AutoUpdate", u"-bool", u"NO", kNotSet};
inline constexpr MacPreference kDoNotDisturb{&Settings::notifications,
                                             u"com.apple.notificationcenterui",
                                             u"doNotDisturb",
                                             u"-boolean",
                                             u"true",
                                             kNotSet,
                                             kDecides,
                                             TweakState::Standard,
                                             PreferenceHost::Current};
inline constexpr MacPreference kSiriStatus{&Settings::siri, u"com.apple.Siri", u"Status",     u"-string",
                                           u"Disabled",     kNotSet,           kProvesNothing};
// A Siri that nobody has set up is off.
inline constexpr MacPreference kAssistant{
    &Settings::siri,    u"com.apple.assistant.support", u"Assistant Enabled", u"-bool", u"false", u"true", kDecides,
    TweakState::InForce};
inline constexpr MacPreference kCrashDialog{
    &Settings::crashReporter, u"com.apple.CrashReporter", u"DialogType", u"-string", u"none", kNotSet};
inline constexpr MacPreference kSystemSounds{
    &Settings::uiSounds, u"com.apple.systemsound", u"com.apple.sound.uiaudio.enabled", u"-int", u"0", u"1",
    kProvesNothing};
// What System Settings writes.
inline constexpr MacPreference kInterfaceSounds{
    &Settings::uiSounds, u"NSGlobalDomain", u"com.apple.sound.uiaudio.enabled", u"-int", u"0", kNotSet};
inline constexpr MacPreference kAirDrop{
    &Settings::airdrop, u"com.apple.NetworkBrowser", u"DisableAirDrop", u"-bool", u"YES", u"NO"};
inline constexpr MacPreference kLogoutState{
    &Settings::cleanReboot, u"com.apple.loginwindow", u"TALLogoutSavesState", u"-bool", u"false", u"true"};
inline constexpr MacPreference kLoginRelaunch{
    &Settings::cleanReboot, u"com.apple.loginwindow", u"LoginwindowLaunchesRelaunchApps", u"-bool", u"false", u"true"};
inline constexpr MacPreference kKeptWindows{
    &Settings::cleanReboot, u"NSGlobalDomain", u"NSQuitAlwaysKeepsWindows", u"-bool", u"false", kNotSet};

} // namespace preference

/// All of them, in the order in which they are written, read and kept; those of a tweak stand together.
inline constexpr std::array kMacPreferences{
    preference::kAppSleep,
    preference::kLiveAppSleep,
    preference::kUpdateDownload,
    preference::kUpdateCheck,
    preference::kStoreUpdate,
    preference::kSystemUpdateDownload,
    preference::kSystemUpdateInstall,
    preference::kSystemStoreUpdate,
    preference::kDoNotDisturb,
    preference::kSiriStatus,
    preference::kAssistant,
    preference::kCrashDialog,
    preference::kSystemSounds,
    preference::kInterfaceSounds,
    preference::kAirDrop,
    preference::kLogoutState,
    preference::kLoginRelaunch,
    preference::kKeptWindows,
};

/// A tweak that is a group of preferences, with what the log says when they have been written.
struct PreferenceGroup {
    bool PerformanceSettings::*tweak;
    QStringView applied;     ///< one-way
    QStringView switchedOn;  ///< two-way
    QStringView switchedOff; ///< two-way
    QStringView undone;      ///< to standard defaults
    QStringView captured;    ///< what a snapshot has brought back the settings of
};

/// The groups, in the order of their preferences.
std::span<const PreferenceGroup> preferenceGroups();

/// What prints a whole domain with the types of its values.
QStringList exportCommand(const QString& domain, PreferenceHost host);
/// The `defaults` tool with a verb and a place, and nothing behind them.
QStringList defaultsCommand(const QString& verb, const QString& domain, const QString& key, PreferenceHost host);
/// @param notificationCenter  the path of Notification Center's per-host preferences
QStringList defaultsCommand(const QString& verb, const MacPreference& preference, const QString& notificationCenter);

} // namespace quorvane
