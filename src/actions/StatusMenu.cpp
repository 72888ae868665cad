#include "actions/StatusMenu.h"

#include "core/OneLine.h"
#include "profiles/ProfileNames.h"
#include "tweaks/TweakCatalogue.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = StatusMenuEntry::Kind;

/// What a tweak is called where there is little room.
struct TweakRow {
    QString key;
    QString title;
};

const QList<TweakRow>& tweakRows() {
    static const QList<TweakRow> rows{
        {u"appNap"_s, u"App Nap Bypass"_s},
        {u"spotlight"_s, u"Spotlight Indexing"_s},
        {u"usbPower"_s, u"USB Power"_s},
        {u"sms"_s, u"Motion Sensor"_s},
        {u"timeMachine"_s, u"Time Machine"_s},
        {u"updates"_s, u"Software Updates"_s},
        {u"notifications"_s, u"Notifications"_s},
        {u"crashReporter"_s, u"Crash Reporter"_s},
        {u"airdrop"_s, u"AirDrop"_s},
        {u"siri"_s, u"Siri"_s},
        {u"uiSounds"_s, u"UI Sounds"_s},
    };
    return rows;
}

StatusMenuEntry separator() {
    return {};
}

StatusMenuEntry text(const QString& title, const QString& symbol = {}) {
    return {.kind = Kind::Text, .title = title, .symbol = symbol};
}

StatusMenuEntry header(const QString& title) {
    return {.kind = Kind::Header, .title = title};
}

StatusMenuEntry onSystem(const ActiveConfiguration& active) {
    if (!active.verification) {
        return text(u"On system: No match"_s, u"questionmark.circle"_s);
    }
    const QString symbol =
        active.verification->failed.isEmpty() ? u"checkmark.seal.fill"_s : u"exclamationmark.triangle.fill"_s;
    return text(u"On system: "_s + nameOnOneLine(active.name), symbol);
}

/// The check mark takes the symbol's place.
StatusMenuEntry choice(Kind kind, const QString& title, const QString& symbol, bool isCurrent, bool isIdle) {
    return {.kind = kind,
            .title = title,
            .symbol = isCurrent ? QString() : symbol,
            .isEnabled = isIdle,
            .isChecked = isCurrent};
}

StatusMenuEntry restoreDefault(const ActiveConfiguration& active, bool isIdle) {
    return choice(Kind::RestoreDefault, u"Restore Default"_s, u"display"_s, isDefaultProfileName(active.current.name),
                  isIdle);
}

StatusMenuEntry profileEntry(const UnifiedProfile& profile, bool isCurrent, bool isIdle) {
    StatusMenuEntry entry =
        choice(Kind::Profile, nameOnOneLine(profile.name), u"slider.horizontal.3"_s, isCurrent, isIdle);
    entry.name = profile.name;
    entry.id = profile.id;
    return entry;
}

QList<StatusMenuEntry> savedProfiles(const ActiveConfiguration& active, const QList<UnifiedProfile>& profiles,
                                     bool isIdle) {
    if (profiles.isEmpty()) {
        return {};
    }
    QList<StatusMenuEntry> entries{separator(), header(u"Saved Profiles"_s)};
    const QString current = profileNameKey(active.current.name);
    for (const UnifiedProfile& profile : profiles) {
        entries.append(profileEntry(profile, profileNameKey(profile.name) == current, isIdle));
    }
    return entries;
}

QString menuIcon(const PerformanceSettings& settings, const Tweak& tweak) {
    const QString icon = tweakIcon(settings, tweak);
    return icon.isEmpty() ? u"gearshape.fill"_s : icon;
}

QList<StatusMenuEntry> activeTweaks(const std::optional<PerformanceSettings>& settings) {
    if (!settings) {
        return {};
    }
    QList<StatusMenuEntry> entries{header(u"Active Tweaks"_s)};
    for (const TweakRow& row : tweakRows()) {
        const Tweak* const tweak = findTweak(row.key);
        if ((*settings).*(tweak->isSelected)) {
            entries.append(text(row.title, menuIcon(*settings, *tweak)));
        }
    }
    entries.append(separator());
    return entries;
}

StatusMenuEntry command(Kind kind, const QString& title, const QString& symbol, const QString& key) {
    return {.kind = kind, .title = title, .symbol = symbol, .isEnabled = true, .key = key};
}

} // namespace

QList<StatusMenuEntry> statusMenu(const ActiveConfiguration& active, const QList<UnifiedProfile>& profiles,
                                  bool isIdle) {
    QList<StatusMenuEntry> menu{text(u"Quorvane"_s)};
    if (active.wasVerified) {
        menu.append(onSystem(active));
    }
    menu.append({separator(), restoreDefault(active, isIdle)});
    menu.append(savedProfiles(active, profiles, isIdle));
    menu.append(separator());
    menu.append(activeTweaks(active.current.tweaks));
    menu.append({command(Kind::OpenWindow, u"Open Quorvane"_s, u"app.fill"_s, {}), separator(),
                 command(Kind::Quit, u"Quit Quorvane"_s, {}, u"q"_s)});
    return menu;
}

} // namespace quorvane
