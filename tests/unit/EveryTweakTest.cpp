#include "fakes/ReadingLines.h"
#include "fakes/ScriptedLoginItems.h"

#include "snapshots/RestoreCommands.h"
#include "snapshots/SnapshotManager.h"
#include "tweaks/TweakCatalogue.h"
#include "tweaks/TweakCommands.h"

#include <QRegularExpression>

#include <algorithm>
#include <set>

namespace quorvane {

namespace {

using Unselected = SystemManager::UnselectedTweaks;
using Verify = SystemManager::VerifyAfterSync;

PerformanceSettings only(const Tweak& tweak) {
    PerformanceSettings settings;
    settings.*tweak.isSelected = true;
    return settings;
}

/// What a command changes, whatever it changes it to: "/usr/bin/defaults NSGlobalDomain NSAppSleepDisabled",
/// "pmset -a sms #".
QString settingOf(QString command) {
    static const QRegularExpression verb(u" (write|delete) "_s);
    static const QRegularExpression typedValue(u" -(bool|boolean|int|string) .*$"_s);
    static const QRegularExpression switchedTo(u"\\b(\\d+|on|off|enable|disable)$"_s);
    static const QRegularExpression number(u" \\d+\\b"_s);
    static const QRegularExpression indexing(u"^mdutil (-a )?-i .*$"_s);
    return command.replace(indexing, u"mdutil"_s)
        .replace(verb, u" "_s)
        .remove(typedValue)
        .replace(switchedTo, u"#"_s)
        .replace(number, u" #"_s);
}

QSet<QString> settingsOf(const QStringList& commands) {
    QSet<QString> settings;
    for (const QString& command : commands) {
        settings.insert(settingOf(command));
    }
    return settings;
}

QSet<QString> rowNames(const ApplyVerificationResult& result) {
    QSet<QString> names;
    for (const ApplyVerificationResult::Item& item : result.verified + result.failed) {
        names.insert(item.name);
    }
    return names;
}

/// What belongs to each tweak of the catalogue, so that none comes without it. Every tweak is in force.
class EveryTweak : public ScriptedStartup {
protected:
    EveryTweak() {
        noteEveryTweakChanged();
        commands.respond = [this, respond = commands.respond](const QStringList& arguments) {
            for (const MacPreference& preference : kMacPreferences) {
                const bool isMeant =
                    arguments == defaultsCommand(u"read"_s, preference, system.notificationCenterPreferences());
                if (isMeant) {
                    return std::optional(ScriptedCommandLauncher::succeeded(
                        preference.isSystems() ? systemsSwitch : preference.applied.toUtf8() + '\n'));
                }
            }
            return respond(arguments);
        };
        commands.print(reading::kPower, "standby 0\n disksleep 0\n sleep 0\n sms 0\n");
        commands.print(reading::kSpotlight, reading::indexing("Indexing disabled."));
        commands.print(reading::kSpotlightOfAll, reading::indexing("Indexing disabled."));
    }

    /// The commands since the last call that changed something, the user's and root's.
    QStringList takeChanges() {
        QStringList lines;
        for (const QString& line : std::exchange(trace, {})) {
            if (line.startsWith(u"$ /usr/bin/defaults "_s)) {
                lines.append(line.mid(2));
            } else if (line.startsWith(u"& do shell script "_s)) {
                lines += line.section(u'"', 1, 1).remove(u" || true"_s).split(u" ; "_s);
                lines.removeIf([](const QString& each) { return each.contains(u"sfltool"_s); }); // a look
            }
        }
        return lines;
    }
    QStringList synced(const PerformanceSettings& settings) {
        QCoro::waitFor(system.syncPerformanceTweaks(settings, Verify::No));
        return takeChanges();
    }
    QStringList applied(const PerformanceSettings& settings) {
        QCoro::waitFor(system.applyPerformanceTweaks(settings));
        QStringList lines = takeChanges();
        lines.removeIf([](const QString& line) { return line.contains(u"dnd_prefs"_s); }); // nothing puts that back
        return lines;
    }
    QByteArray systemsSwitch = "0\n"; ///< what each of the system's own preferences is

    QSet<QString> rows(const PerformanceSettings& settings, Unselected unselected) {
        return rowNames(QCoro::waitFor(system.verifyAppliedSettings(settings, unselected)));
    }
};

} // namespace

TEST_F(EveryTweak, isPutInForceByItself) {
    EXPECT_EQ(applied({}), QStringList());
    for (const Tweak& tweak : tweakCatalogue()) {
        EXPECT_FALSE(applied(only(tweak)).isEmpty()) << tweak.key.toStdString();
    }
}

TEST_F(EveryTweak, isSwitchedBothWaysWithAllOthers) {
    const QStringList off = synced({});
    const auto differs = [](const QStringList& lines, const QStringList& others) {
        return std::any_of(lines.begin(), lines.end(),
                           [&others](const QString& line) { return !others.contains(line); });
    };
    for (const Tweak& tweak : tweakCatalogue()) {
        const QStringList on = synced(only(tweak));
        EXPECT_TRUE(differs(on, off)) << tweak.key.toStdString();
        EXPECT_TRUE(differs(off, on)) << tweak.key.toStdString();
    }
}

TEST_F(EveryTweak, isPutBackToStandardDefaults) {
    QCoro::waitFor(system.undoPerformanceTweaks());
    const QSet<QString> undone = settingsOf(takeChanges());
    for (const Tweak& tweak : tweakCatalogue()) {
        EXPECT_EQ(settingsOf(applied(only(tweak))) - undone, QSet<QString>()) << tweak.key.toStdString();
    }
}

TEST_F(EveryTweak, isKeptInASnapshotAndBroughtBack) {
    ASSERT_TRUE(QCoro::waitFor(system.captureSystemSnapshot({}, SystemManager::MasterArchive::No)).isSaved);
    const std::optional<SystemSnapshot> snapshot = SnapshotManager(files, machine).load();
    ASSERT_TRUE(snapshot);
    systemsSwitch = "1\n";
    commands.print(reading::kSpotlightOfAll, reading::indexing("Indexing enabled. "));
    QCoro::waitFor(system.restoreFromSnapshot(*snapshot));
    const QStringList restoring = takeChanges();
    EXPECT_EQ(restoring.filter(u" delete "_s), QStringList()) << "a value that was read and not kept";
    for (const Tweak& tweak : tweakCatalogue()) {
        EXPECT_EQ(settingsOf(applied(only(tweak))) - settingsOf(restoring), QSet<QString>()) << tweak.key.toStdString();
    }
}

TEST_F(EveryTweak, isVerifiedInARowOfItsOwn) {
    EXPECT_EQ(rows({}, Unselected::Ignored), QSet<QString>());
    const QSet<QString> restored = rows({}, Unselected::ExpectedRestored);
    EXPECT_EQ(restored.size(), tweakCatalogue().size());
    QSet<QString> verified;
    for (const Tweak& tweak : tweakCatalogue()) {
        const QSet<QString> own = rows(only(tweak), Unselected::Ignored) & restored;
        EXPECT_EQ(own.size(), 1) << tweak.key.toStdString();
        verified += own;
    }
    EXPECT_EQ(verified, restored);
}

TEST_F(EveryTweak, isDescribedOnce) {
    QStringList described;
    for (const TweakSection& section : tweakSections()) {
        for (const TweakDescription& description : section.tweaks) {
            EXPECT_FALSE(description.text.isEmpty()) << description.key.toStdString();
            described.append(description.key);
        }
    }
    QStringList keys;
    for (const Tweak& tweak : tweakCatalogue()) {
        keys.append(tweak.key);
    }
    described.sort();
    keys.sort();
    EXPECT_EQ(described, keys);
}

// ---- The table of preferences

TEST(MacPreferences, standOnceEachAndByTheirTweaks) {
    std::set<std::pair<QString, QString>> places;
    QList<bool PerformanceSettings::*> tweaks;
    for (const MacPreference& preference : kMacPreferences) {
        places.insert({preference.domain.toString(), preference.key.toString()});
        if (tweaks.isEmpty() || tweaks.last() != preference.tweak) {
            tweaks.append(preference.tweak);
        }
    }
    EXPECT_EQ(places.size(), kMacPreferences.size());
    QList<bool PerformanceSettings::*> grouped;
    for (const PreferenceGroup& group : preferenceGroups()) {
        grouped.append(group.tweak);
    }
    EXPECT_EQ(tweaks, grouped);
}

TEST(MacPreferences, areKeptBySnapshotsInTheirOrder) {
    const auto isSame = [](const MacPreference& preference, const MacPreference& kept) {
        return preference.domain == kept.domain && preference.key == kept.key;
    };
    EXPECT_TRUE(std::equal(kMacPreferences.begin(), kMacPreferences.end(), snapshotPreferences().begin(),
                           snapshotPreferences().end(), isSame));
}

} // namespace quorvane
