#include "profiles/ProfileCloudBackup.h"
#include "core/Json.h"

#include "core/DeviceName.h"
#include "core/FileTimestamp.h"
#include "fakes/ProfileStore.h"
#include "platform/Machine.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using BackupKind = ProfileCloudBackupKind;

class MachineThatWritesDates final : public Machine {
public:
    QString homeFolder() const override { return {}; }
    QString applicationSupportFolder() const override { return {}; }
    QString temporaryFolder() const override { return {}; }
    QString computerName() const override { return {}; }
    QString hardwareId() const override { return {}; }
    QString systemVersion() const override { return {}; }
    quint32 userId() const override { return 501; }
    QString processName() const override { return {}; }
    bool isRunning(const QString& /*processName*/) const override { return false; }
    QString dateAndTimeText(const QDateTime& moment) const override {
        return u"on "_s + moment.toString(u"d.M. H:mm"_s);
    }
};

const QDateTime kEvening(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);

ProfileCloudBackup backupOf(const QList<UnifiedProfile>& profiles) {
    ProfileCloudBackup backup;
    backup.createdAt = kEvening;
    backup.deviceName = u"Studio"_s;
    backup.profiles = profiles;
    return backup;
}

QString backupDecodingError(const QByteArray& bytes) {
    try {
        decodeProfileCloudBackup(bytes);
    } catch (const DecodingError& error) {
        return error.message();
    }
    return u"none"_s;
}

/// True when the members of each object in it stand in the order of their keys.
bool hasSortedKeys(const Json& json) {
    std::string before;
    for (const auto& [key, value] : json.items()) {
        if (json.is_object() && key < before) {
            return false;
        }
        if (value.is_structured() && !hasSortedKeys(value)) {
            return false;
        }
        before = key;
    }
    return true;
}

ProfileCloudBackupInfo row(const QString& id, const QDateTime& createdAt = kEvening) {
    return {id, u"/cloud/"_s + id, createdAt, 3, u"Studio"_s, backupKindOf(id)};
}

// ---- The file

TEST(ProfileCloudBackup, standsInItsFileWithSortedKeys) {
    EXPECT_EQ(encodeProfileCloudBackup(backupOf({})), R"({
  "createdAt": "2026-11-15T21:05:37Z",
  "deviceName": "Studio",
  "formatVersion": 1,
  "profiles": []
})");
}

TEST(ProfileCloudBackup, itsProfilesAreWrittenWithSortedKeysToo) {
    UnifiedProfile profile = numberedProfile(1, u"Live"_s);
    profile.settings.cleanReboot = true;
    profile.startup.items = {StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false})};
    const QByteArray bytes = encodeProfileCloudBackup(backupOf({profile, numberedProfile(2, u"Gig"_s)}));
    EXPECT_TRUE(hasSortedKeys(parseJson(bytes)));
    EXPECT_FALSE(hasSortedKeys(encodeJson(profile))) << "a profile's own file has an order of its own";
    const ProfileCloudBackup read = decodeProfileCloudBackup(bytes);
    EXPECT_EQ(read.createdAt, kEvening);
    EXPECT_EQ(read.deviceName, u"Studio"_s);
    ASSERT_EQ(namesOf(read.profiles), (QStringList{u"Live"_s, u"Gig"_s}));
    EXPECT_EQ(read.profiles.first().id, profile.id);
    EXPECT_EQ(read.profiles.first().dateCreated, profile.dateCreated);
    EXPECT_TRUE(read.profiles.first().hasSameContent(profile));
}

TEST(ProfileCloudBackup, everyKeyIsRequiredAndNoOtherCounts) {
    const Json whole = parseJson(encodeProfileCloudBackup(backupOf({numberedProfile(1, u"Live"_s)})));
    for (const char* key : {"formatVersion", "createdAt", "deviceName", "profiles"}) {
        Json json = whole;
        json.erase(key);
        EXPECT_EQ(backupDecodingError(jsonText(json)), u"\"%1\": missing"_s.arg(QString::fromUtf8(key)));
    }
    Json later = whole;
    later["formatVersion"] = 9;
    later["encryptedWith"] = "nothing";
    EXPECT_EQ(decodeProfileCloudBackup(jsonText(later)).formatVersion, 9);
    EXPECT_EQ(namesOf(decodeProfileCloudBackup(jsonText(later)).profiles), QStringList(u"Live"_s));
}

TEST(ProfileCloudBackup, whatIsNoBackupIsTold) {
    const QByteArray whole = encodeProfileCloudBackup(backupOf({numberedProfile(1, u"Live"_s)}));
    const QByteArray head = R"({"formatVersion": 1, "createdAt": "2026-11-15T21:05:37Z", "deviceName": "Studio", )";
    const struct {
        QByteArray bytes;
        QString error;
    } cases[] = {
        {"", u"not valid JSON (line 1)"_s},
        {whole.chopped(2), u"not valid JSON (line %1)"_s.arg(whole.count('\n'))},
        {"[]", u"not an object"_s},
        {"null", u"not an object"_s},
        {"<?xml version=\"1.0\"?>\n<plist version=\"1.0\"><dict/></plist>\n", u"not valid JSON (line 1)"_s},
        {QByteArray("bplist00\xd0\x08\0\0", 12), u"not valid JSON (line 1)"_s},
        {QByteArray("{}\0", 3), u"not valid JSON (line 1)"_s},
        {QByteArray(100000, '['), u"nested too deeply"_s},
        {head + R"("profiles": {}})", u"\"profiles\": not an array"_s},
        {head + R"("profiles": [7]})", u"\"profiles[0]\": not an object"_s},
        {head + R"("profiles": [{"id": "x"}]})", u"\"profiles[0].id\": not a UUID"_s},
        {R"({"formatVersion": "1"})", u"\"formatVersion\": not a whole number"_s},
        {R"({"formatVersion": 1, "createdAt": 790000000})", u"\"createdAt\": not a string"_s},
    };
    for (const auto& [bytes, error] : cases) {
        EXPECT_EQ(backupDecodingError(bytes), error) << bytes.left(60).toStdString();
    }
}

TEST(ProfileCloudBackup, ofADateThatNoFileCanHoldIsNotWritten) {
    ProfileCloudBackup backup = backupOf({});
    backup.createdAt = QDateTime(QDate(10000, 1, 1), QTime(0, 0), Qt::UTC);
    EXPECT_THROW(encodeProfileCloudBackup(backup), EncodingError);
    EXPECT_THROW(encodeProfileCloudBackup(backupOf({UnifiedProfile()})), EncodingError);
    EXPECT_THROW(timestampedBackupName(backup.createdAt), EncodingError);
}

// ---- Names

TEST(ProfileCloudBackup, itsNameTellsItsKind) {
    EXPECT_EQ(timestampedBackupName(kEvening), u"backup-2026-11-15T21:05:37Z.json"_s);
    EXPECT_EQ(timestampedBackupName(kEvening.toOffsetFromUtc(3600).addMSecs(999)),
              u"backup-2026-11-15T21:05:37Z.json"_s);
    EXPECT_EQ(backupKindOf(u"latest.json"_s), BackupKind::fullLatest);
    EXPECT_EQ(backupKindOf(u"default-current.json"_s), BackupKind::defaultCurrent);
    EXPECT_EQ(backupKindOf(u"default-previous.json"_s), BackupKind::defaultPrevious);
    for (const QString& other :
         {timestampedBackupName(kEvening), u"latest 2.json"_s, u"Latest.json"_s, u"default.json"_s, u"mine.json"_s}) {
        EXPECT_EQ(backupKindOf(other), BackupKind::fullTimestamped) << other.toStdString();
    }
}

TEST(ProfileCloudBackup, onlyJsonFilesMayHoldOne) {
    for (const QString& name : {u"latest.json"_s, u"a.b.json"_s, u" .json"_s}) {
        EXPECT_TRUE(isBackupName(name)) << name.toStdString();
    }
    for (const QString& name : {u".json"_s, u"latest.JSON"_s, u"latest.json~"_s, u"json"_s, u".latest.json.icloud"_s,
                                u".quorvane.abcdef"_s, u".DS_Store"_s}) {
        EXPECT_FALSE(isBackupName(name)) << name.toStdString();
    }
}

TEST(FileTimestamp, isTheDateAsFilesHoldIt) {
    EXPECT_EQ(fileTimestamp(kEvening.addMSecs(999)), u"2026-11-15T21:05:37Z"_s);
    EXPECT_THROW(fileTimestamp(QDateTime()), EncodingError);
}

TEST(DeviceName, isMacWhereTheComputerHasNone) {
    EXPECT_EQ(deviceNameOf(u"Studio"_s), u"Studio"_s);
    EXPECT_EQ(deviceNameOf({}), u"Mac"_s);
}

// ---- The list

TEST(ProfileCloudBackupInfo, tellsWhatItsFileHolds) {
    const ProfileCloudBackup backup = backupOf({numberedProfile(1, u"Live"_s), numberedProfile(2, u"Gig"_s)});
    EXPECT_EQ(backupInfo(u"/cloud/ProfileBackups/latest.json"_s, backup),
              (ProfileCloudBackupInfo{u"latest.json"_s, u"/cloud/ProfileBackups/latest.json"_s, kEvening, 2,
                                      u"Studio"_s, BackupKind::fullLatest}));
}

TEST(ProfileCloudBackupInfo, hasATitleAndADetailForEachKind) {
    const MachineThatWritesDates machine;
    const struct {
        QString id;
        QString title;
        QString detail;
    } cases[] = {
        {u"latest.json"_s, u"Latest Backup"_s, u"3 profile(s) from Studio"_s},
        {u"default-current.json"_s, u"Default Profile (Current)"_s, u"Default profile backup from Studio"_s},
        {u"default-previous.json"_s, u"Default Profile (Previous)"_s, u"Default profile backup from Studio"_s},
        {u"backup-2026-11-15T21:05:37Z.json"_s, u"on 15.11. 21:05"_s, u"3 profile(s) from Studio"_s},
        {u"mine.json"_s, u"on 15.11. 21:05"_s, u"3 profile(s) from Studio"_s},
    };
    for (const auto& [id, title, detail] : cases) {
        EXPECT_EQ(row(id).title(machine), title);
        EXPECT_EQ(row(id).detail(), detail);
    }
    ProfileCloudBackupInfo odd = row(u"latest.json"_s);
    odd.deviceName = u"%1 & %2"_s;
    EXPECT_EQ(odd.detail(), u"3 profile(s) from %1 & %2"_s);
}

TEST(ProfileCloudBackupInfo, isSortedByKindThenByDateThenByName) {
    QList<ProfileCloudBackupInfo> rows{row(u"b.json"_s),
                                       row(u"default-previous.json"_s, kEvening.addDays(9)),
                                       row(u"c.json"_s),
                                       row(u"newest.json"_s, kEvening.addSecs(1)),
                                       row(u"default-current.json"_s, kEvening.addDays(-9)),
                                       row(u"a.json"_s),
                                       row(u"latest.json"_s, kEvening.addDays(-99))};
    sortBackups(rows);
    QStringList ids;
    for (const ProfileCloudBackupInfo& each : rows) {
        ids.append(each.id);
    }
    EXPECT_EQ(ids, (QStringList{u"latest.json"_s, u"default-current.json"_s, u"default-previous.json"_s,
                                u"newest.json"_s, u"c.json"_s, u"b.json"_s, u"a.json"_s}));
}

// ---- What is said

TEST(ProfileCloudError, hasItsText) {
    using Code = ProfileCloudError::Code;
    const struct {
        Code code;
        QString text;
    } cases[] = {
        {Code::readFailed, u"Could not read the iCloud backup: why"_s},
        {Code::writeFailed, u"Could not write the iCloud backup: why"_s},
        {Code::iCloudUnavailable,
         u"iCloud Drive is not available. Sign in to iCloud in System Settings and enable iCloud Drive."_s},
        {Code::noProfilesToBackup, u"There are no custom profiles to back up."_s},
        {Code::backupNotFound, u"The selected iCloud backup could not be found."_s},
        {Code::emptyBackup, u"The selected backup does not contain any profiles."_s},
    };
    for (const auto& [code, text] : cases) {
        const ProfileCloudError error(code, u"why"_s);
        EXPECT_EQ(error.code(), code);
        EXPECT_EQ(error.message(), text);
        EXPECT_EQ(QString::fromUtf8(error.what()), text);
    }
}

TEST(ProfileImportSummary, countsWhatChanged) {
    EXPECT_EQ(summary(0, 0, {}), u"No profiles changed."_s);
    EXPECT_EQ(summary(2, 0, {}), u"2 imported"_s);
    EXPECT_EQ(summary(0, 1, {}), u"1 updated"_s);
    EXPECT_EQ(summary(2, 1, {u"Gig → Gig 2"_s}), u"2 imported, 1 updated\nRenamed: Gig → Gig 2"_s);
    EXPECT_EQ(summary(2, 0, {u"Gig → Gig 2"_s, u"Live → Live 2"_s}),
              u"2 imported\nRenamed: Gig → Gig 2, Live → Live 2"_s);
    EXPECT_EQ(summary(0, 0, {u"Gig → Gig 2"_s}), u"No profiles changed."_s);
    EXPECT_EQ(summary(1, 0, {u"G\nig\u202e → G\nig\u202e 2"_s}), u"1 imported\nRenamed: G ig  → G ig  2"_s);
}

TEST(ProfileCloudAlerts, sayWhatWasDone) {
    EXPECT_EQ(
        backupCompleteAlert({backupOf({numberedProfile(1, u"Live"_s)}), {}}),
        (ClosingAlert{u"Backup Complete"_s, u"Saved 1 profile(s) to iCloud.\n\n"
                                            "Latest Backup\nDefault Profile (Current)\nDefault Profile (Previous)"_s}));
    EXPECT_EQ(backupCompleteAlert({backupOf({numberedProfile(1, u"Live"_s)}), {u"Gig"_s, u"Cl\nub"_s}}).text,
              u"Saved 1 profile(s) to iCloud.\n\n"
              "Latest Backup\nDefault Profile (Current)\nDefault Profile (Previous)\n\n"
              "Not saved, because it can't be read: Gig, Cl ub"_s);
    EXPECT_EQ(profilesRestoredAlert({1, 2, {u"Gig → Gig 2"_s}}),
              (ClosingAlert{u"Profiles Restored"_s, u"1 imported, 2 updated\nRenamed: Gig → Gig 2"_s}));
}

} // namespace
} // namespace quorvane
