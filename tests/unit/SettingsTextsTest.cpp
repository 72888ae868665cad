// What the pages of services and settings say.

#include "actions/SettingsTexts.h"

#include "actions/ActionTexts.h"
#include "actions/ServicePages.h"
#include "actions/SettingsStatus.h"
#include "fakes/ScriptedSystem.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QDateTime firstOf(int year) {
    return {QDate(year, 1, 1), QTime(0, 0), Qt::UTC};
}

QString yearText(int year) {
    return FixedMachine().dateAndTimeText(firstOf(year));
}

ProfileCloudBackupInfo backupOf(ProfileCloudBackupKind kind, int year, int count, const QString& device = u"Booth"_s) {
    ProfileCloudBackupInfo info;
    info.kind = kind;
    info.createdAt = firstOf(year);
    info.profileCount = count;
    info.deviceName = device;
    return info;
}

template <typename Choices>
QStringList rowsOf(const QList<ServiceSection<Choices>>& sections) {
    QStringList rows;
    for (const ServiceSection<Choices>& section : sections) {
        for (const ServiceBox<Choices>& box : section.boxes) {
            rows.append(QStringList{section.title, box.text.title, box.text.subtitle, box.text.symbol}.join(u" | "_s));
        }
    }
    return rows;
}

using OfBackup = ProfileCloudBackupKind;

} // namespace

TEST(ServicePages, offerWhatCanBeDoneInItsOrder) {
    EXPECT_EQ(
        rowsOf(maintenanceSections()),
        (QStringList{u"File Cleanup | Clear System Caches | Remove user and system cache files to free disk space "
                     "| folder.fill.badge.minus"_s,
                     u"File Cleanup | Clean User Trash | Permanently delete all items in the Trash | trash.fill"_s,
                     u"File Cleanup | Purge Downloads Folder | Remove all files from the Downloads directory | "
                     "folder.fill.badge.minus"_s}));
    EXPECT_EQ(
        rowsOf(networkSections()),
        (QStringList{u"Network Diagnostics | Flush DNS & DHCP Caches | Clear DNS resolver cache and DHCP lease "
                     "information | arrow.triangle.2.circlepath"_s,
                     u"Network Diagnostics | Reset Network Configuration | Reset DNS servers to empty and flush all "
                     "caches | arrow.counterclockwise.circle.fill"_s,
                     u"Network Control | Disable All Network Interfaces | Turn off all network services (Wi-Fi, "
                     "Ethernet, etc.) | wifi.slash"_s,
                     u"Network Control | Restore Network Connectivity | Re-enable all network services | network"_s}));
}

TEST(ServicePages, eachBoxIsOneChoiceOfItsOwn) {
    MaintenanceSelection all;
    for (const auto& box : maintenanceSections().first().boxes) {
        EXPECT_FALSE(all.*box.isTicked);
        all.*box.isTicked = true;
    }
    EXPECT_EQ(all, (MaintenanceSelection{true, true, true}));
    NetworkOperations operations;
    for (const auto& section : networkSections()) {
        for (const auto& box : section.boxes) {
            EXPECT_FALSE(operations.*box.isTicked);
            operations.*box.isTicked = true;
        }
    }
    EXPECT_EQ(operations, (NetworkOperations{true, true, true, true}));
}

TEST(SettingsTexts, theLooksAreThree) {
    QStringList rows;
    for (const AppearanceChoice& choice : appearanceChoices()) {
        rows.append(choice.mode + u": "_s + choice.text.title + u" | "_s + choice.text.subtitle);
    }
    EXPECT_EQ(rows, (QStringList{u"system: Follow macOS | Automatically match your system theme"_s,
                                 u"light: Light Mode | Always use light appearance"_s,
                                 u"dark: Dark Mode | Always use dark appearance"_s}));
}

TEST(SettingsTexts, theLockSpeaksOfTheMeansByItsName) {
    EXPECT_EQ(appLockRow(BiometryType::OpticId).subtitle,
              u"Require a password to open Quorvane and switch profiles. When available, Optic ID can be used instead "
              "of typing your password."_s);
    EXPECT_TRUE(appLockRow(BiometryType::None).subtitle.contains(u"Biometrics can be used"_s));
}

TEST(SettingsTexts, theLatestFullBackupIsNamed) {
    const FixedMachine machine;
    const struct {
        QList<ProfileCloudBackupInfo> backups;
        QString subtitle;
    } cases[] = {
        {{}, {}},
        {{backupOf(OfBackup::defaultCurrent, 2026, 1)}, {}},
        {{backupOf(OfBackup::fullLatest, 2026, 3), backupOf(OfBackup::fullTimestamped, 2027, 4)},
         u"Latest backup: %1 (3 profile(s))"_s.arg(yearText(2026))},
        {{backupOf(OfBackup::defaultCurrent, 2026, 1), backupOf(OfBackup::fullTimestamped, 2025, 4),
          backupOf(OfBackup::fullTimestamped, 2024, 5)},
         u"Latest backup: %1 (4 profile(s))"_s.arg(yearText(2025))},
    };
    for (const auto& [backups, subtitle] : cases) {
        EXPECT_EQ(cloudRow(true, backups, machine).subtitle, subtitle);
    }
    EXPECT_EQ(cloudRow(true, {}, machine).title, u"iCloud Drive is available"_s);
    EXPECT_EQ(cloudRow(false, {}, machine).title, u"iCloud Drive is unavailable"_s);
}

TEST(SettingsTexts, theLabelIsOnlySaidToBeMissingWhereItShouldBe) {
    const QString waits = u"Shown after a profile was applied."_s;
    const QString isLeftOut = u"Could not be shown on every display. Check the Logs tab."_s;
    const QString isAnimated =
        u"Not shown where macOS animates the picture. Switch this off and on to show it there, too."_s;
    const struct {
        SettingsFacts facts;
        QString note;
    } cases[] = {
        {{.showsLabel = false, .hasLabelName = true}, {}},
        {{}, {}},
        {{.showsLabel = true, .hasLabelName = true, .isLabelInPlace = true}, {}},
        {{.showsLabel = true, .hasLabelName = false}, waits},
        {{.showsLabel = true, .hasLabelName = false, .hasAnimatedPicture = true}, waits},
        {{.showsLabel = true, .hasLabelName = true}, isLeftOut},
        {{.showsLabel = true, .hasLabelName = true, .hasAnimatedPicture = true}, isAnimated},
    };
    for (const auto& [facts, note] : cases) {
        EXPECT_EQ(wallpaperNote(facts), note);
    }
}

TEST(SettingsTexts, onlyWhatWaitsForTheUserSaysWhatToDo) {
    EXPECT_EQ(launchAtLoginNote(LoginService::State::NotEnabled), QString());
    EXPECT_EQ(launchAtLoginNote(LoginService::State::Enabled), QString());
    EXPECT_EQ(launchAtLoginNote(LoginService::State::RequiresApproval),
              u"Allow Quorvane in System Settings → General → Login Items."_s);
}

TEST(SettingsTexts, eachStateOfTheDiskAccessLooksDifferent) {
    const QList<RowText> rows{fullDiskAccessRow(FullDiskAccess::Given), fullDiskAccessRow(FullDiskAccess::Missing),
                              fullDiskAccessRow(FullDiskAccess::Unknown)};
    for (const RowText& row : rows) {
        EXPECT_EQ(row.title, u"Full Disk Access"_s);
        EXPECT_EQ(std::count_if(rows.begin(), rows.end(),
                                [&row](const RowText& other) {
                                    return other.subtitle == row.subtitle || other.symbol == row.symbol;
                                }),
                  1);
    }
}

TEST(SettingsTexts, aBackupsDeviceStaysOnItsLine) {
    const FixedMachine machine;
    EXPECT_EQ(backupRow(backupOf(OfBackup::fullLatest, 2026, 2), machine),
              (RowText{u"Latest Backup"_s, u"2 profile(s) from Booth"_s, u"icloud.fill"_s}));
    EXPECT_EQ(backupRow(backupOf(OfBackup::defaultCurrent, 2026, 1), machine).symbol, u"display.and.arrow.down"_s);
    EXPECT_EQ(backupRow(backupOf(OfBackup::defaultPrevious, 2026, 1), machine).symbol,
              u"arrow.counterclockwise.icloud"_s);
    EXPECT_EQ(backupRow(backupOf(OfBackup::fullTimestamped, 2026, 1), machine).symbol, u"clock.arrow.circlepath"_s);
    EXPECT_EQ(backupRow(backupOf(OfBackup::fullLatest, 2026, 2, u"Booth\nSaved 9 profile(s)"_s), machine).subtitle,
              u"2 profile(s) from Booth Saved 9 profile(s)"_s);
}

TEST(SettingsTexts, theAlertsSayWhatToDo) {
    EXPECT_EQ(loginAlert(u"no\nway"_s),
              (ClosingAlert{u"Login Item"_s, u"Could not update login item settings: no way"_s, AlertStyle::Warning}));
    EXPECT_EQ(fullDiskAlert().title, u"Full Disk Access Required"_s);
    EXPECT_TRUE(fullDiskAlert().text.endsWith(u"\n3. Ensure the toggle is switched ON."_s));
}

} // namespace quorvane
