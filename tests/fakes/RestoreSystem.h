#pragma once

#include "fakes/ReadingLines.h"
#include "fakes/StartupSystem.h"
#include "snapshots/MasterSystemBaseline.h"
#include "snapshots/RestoreBaseline.h"
#include "snapshots/SnapshotManager.h"

namespace quorvane {

/// A scripted system with something to go back to.
/// What is written to the preferences is read there again, `tmutil` does what root's line tells it, and Spotlight and power are as a
/// fresh macOS has them.
class RestoreSystem : public StartupSystem {
protected:
    RestoreSystem();

    inline static const QString kSnapshotFile =
        u"/Users/alex/Library/Application Support/Quorvane/system_snapshot.json"_s;
    inline static const QString kHomeBaseline = u"/Users/alex/.quorvane/master-baseline-current.json"_s;

    static QDateTime timeAt(int second);

    /// One value of each kind, and login items and services that differ from those of a Mac that has neither.
    static SystemSnapshot usersOwn(int second = 0);
    void save(const SystemSnapshot& snapshot);
    /// As files were written before they held an id, unless one is given.
    void saveBaseline(const QString& path, const SystemSnapshot& snapshot, const QString& deviceName = u"Studio"_s,
                      const std::optional<QString>& deviceId = {});

    /// The end of each way back: a look at everything, and what it has shown of what `usersOwn` says.
    /// @param further  the tweaks beside those that are preferences alone
    /// @param beside   what isn't a tweak
    static QString readBack(const QStringList& further = {}, const QStringList& beside = {},
                            const QString& afterLook = {});
    /// The same without a snapshot.
    static QString readBackOfStandard();

    inline static const QString kRestoreSteps =
        kLookAtTweaks + u"$ /usr/bin/defaults delete NSGlobalDomain NSAppSleepDisabled\n"
                        "$ /usr/bin/defaults delete com.ableton.live NSAppSleepDisabled\n"
                        "  [RESTORED] App Nap settings.\n"
                        "$ /usr/bin/defaults write com.apple.SoftwareUpdate AutomaticDownload -bool YES\n"
                        "$ /usr/bin/defaults delete com.apple.SoftwareUpdate AutomaticCheckEnabled\n"
                        "$ /usr/bin/defaults delete com.apple.commerce AutoUpdate\n"
                        "  [RESTORED] Software update settings.\n"
                        "$ /usr/bin/defaults -currentHost delete "
                        "/Users/alex/Library/Preferences/ByHost/com.apple.notificationcenterui doNotDisturb\n"
                        "$ /bin/launchctl load -w /System/Library/LaunchAgents/com.apple.notificationcenterui.plist\n"
                        "$ /usr/bin/open -a NotificationCenter\n"
                        "  [RESTORED] Notification settings.\n"
                        "$ /usr/bin/defaults write com.apple.Siri Status -string Disabled\n"
                        "$ /usr/bin/defaults delete com.apple.assistant.support \"Assistant Enabled\"\n"
                        "  [RESTORED] Siri settings.\n"
                        "$ /usr/bin/defaults delete com.apple.CrashReporter DialogType\n"
                        "  [RESTORED] Crash Reporter settings.\n"
                        "$ /usr/bin/defaults write com.apple.systemsound com.apple.sound.uiaudio.enabled -int 7\n"
                        "  [RESTORED] UI sound settings.\n"
                        "$ /usr/bin/defaults delete com.apple.NetworkBrowser DisableAirDrop\n"
                        "  [RESTORED] AirDrop settings.\n"
                        "$ /usr/bin/defaults delete com.apple.loginwindow TALLogoutSavesState\n"
                        "$ /usr/bin/defaults delete com.apple.loginwindow LoginwindowLaunchesRelaunchApps\n"
                        "$ /usr/bin/defaults delete NSGlobalDomain NSQuitAlwaysKeepsWindows\n"
                        "  [RESTORED] Login and reboot settings.\n"_s;
    inline static const QString kAction =
        u"  [ACTION] Requesting Admin rights to restore captured system settings...\n"_s;
    inline static const QString kApplied = u"  [RESTORED] System snapshot applied.\n"
                                           "\nRestore Complete! (Restart your Mac for full effect.)\n"_s;

    inline static const QString kRevertPrompt =
        u"Quorvane needs your administrator password to restore performance tweaks."_s;
    inline static const QString kReinstatePrompt =
        u"Quorvane needs your administrator password to restore your system."_s;
    inline static const QString kUndoLine =
        u"pmset -a standby 1 disksleep 10 sleep 1 ; mdutil -a -i on || true ; tmutil enable || true ; pmset -a sms 1"_s;
    inline static const QString kCancelled =
        u"  [ERROR] Administrator authorization was cancelled or failed: User canceled.\n"_s;
};

} // namespace quorvane
