#include "tweaks/TweakCatalogue.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

using Settings = PerformanceSettings;

} // namespace

const QList<Tweak>& tweakCatalogue() {
    static const QList<Tweak> tweaks{
        {u"appNap"_s, u"bolt.shield.fill"_s, u"Bypass macOS App Nap Throttling"_s, &Settings::appNap, u"App Nap"_s},
        {u"spotlight"_s, u"cpu.fill"_s, u"Suspend Spotlight Drive Indexing"_s, &Settings::spotlight, u"Spotlight"_s},
        {u"usbPower"_s, u"battery.100.bolt"_s, u"Prevent USB Hardware Standby"_s, &Settings::usbPower, u"USB Power"_s},
        {u"sms"_s, u"exclamationmark.triangle.fill"_s, u"Disable HDD Sudden Motion Sensor"_s, &Settings::sms,
         u"Motion Sensor"_s},
        {u"timeMachine"_s, u"clock.arrow.circlepath"_s, u"Disable Time Machine Auto-Backups"_s, &Settings::timeMachine,
         u"Time Machine"_s},
        {u"updates"_s, u"arrow.down.app.fill"_s, u"Block Background Software Updates"_s, &Settings::updates,
         u"Software Updates"_s},
        {u"notifications"_s, u"bell.slash.fill"_s, u"Suppress Notifications and Alerts"_s, &Settings::notifications,
         u"Notifications"_s},
        {u"crashReporter"_s, u"doc.text.magnifyingglass"_s, u"Disable Crash Reporting Daemons"_s,
         &Settings::crashReporter, u"Crash Reporter"_s},
        {u"airdrop"_s, u"antenna.radiowaves.left.and.right.slash"_s, u"Deactivate AirDrop & Sharing Services"_s,
         &Settings::airdrop, u"AirDrop"_s},
        {u"siri"_s, u"mic.slash.fill"_s, u"Deactivate Siri Core Services"_s, &Settings::siri, u"Siri"_s},
        {u"uiSounds"_s, u"speaker.slash.fill"_s, u"Silence System UI Sound Effects"_s, &Settings::uiSounds,
         u"UI Sounds"_s},
        {u"cleanReboot"_s, u"power.circle.fill"_s, u"Start Clean on Reboot"_s, &Settings::cleanReboot,
         u"Clean Reboot"_s},
    };
    return tweaks;
}

const QList<TweakSection>& tweakSections() {
    static const QList<TweakSection> sections{
        {u"Power & Performance"_s,
         {{u"appNap"_s, u"Prevent macOS from throttling audio apps in the background"_s},
          {u"spotlight"_s, u"Stop mdworker from consuming CPU during sessions"_s},
          {u"usbPower"_s, u"Keep USB audio interfaces powered at all times"_s},
          {u"sms"_s, u"Prevent drive head parking from causing audio dropouts"_s}}},
        {u"Services & Background"_s,
         {{u"timeMachine"_s, u"Stop scheduled backups from interrupting audio processing"_s},
          {u"updates"_s, u"Prevent automatic macOS and App Store downloads"_s},
          {u"notifications"_s, u"Disable Notification Center during sessions"_s},
          {u"crashReporter"_s, u"Stop crash reporter dialogs from interrupting workflow"_s}}},
        {u"Connectivity & Features"_s,
         {{u"airdrop"_s, u"Disable proximity sharing to reduce network overhead"_s},
          {u"siri"_s, u"Stop Siri voice processing and background listening"_s},
          {u"uiSounds"_s, u"Mute system alert and interface sounds"_s}}},
        {u"Login & Reboot"_s,
         {{u"cleanReboot"_s, u"Prevent macOS from reopening apps and windows after restart. Only startup items you "
                             "leave enabled in Startup Items may still open."_s}}},
    };
    return sections;
}

const Tweak& tweakOf(bool PerformanceSettings::*isSelected) {
    const QList<Tweak>& tweaks = tweakCatalogue();
    return *std::find_if(tweaks.begin(), tweaks.end(),
                         [isSelected](const Tweak& tweak) { return tweak.isSelected == isSelected; });
}

const Tweak* findTweak(const QString& key) {
    const QList<Tweak>& tweaks = tweakCatalogue();
    const auto found =
        std::find_if(tweaks.begin(), tweaks.end(), [&key](const Tweak& tweak) { return tweak.key == key; });
    return found == tweaks.end() ? nullptr : &*found;
}

QString tweakIcon(const PerformanceSettings& settings, const Tweak& tweak) {
    return settings.customIcons.value(tweak.key, tweak.icon);
}

} // namespace quorvane
