#include "snapshots/MasterSystemBaseline.h"
#include "core/Json.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

const MacIdentity kStudio{u"Studio"_s, u"AA-11"_s};

SystemSnapshot labelledSnapshot() {
    SystemSnapshot snapshot;
    snapshot.id = QUuid::fromString(u"0F8FAD5B-D9CB-469F-A165-70867728950E"_s);
    snapshot.dateCreated = QDateTime(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);
    snapshot.label = u"Own"_s;
    snapshot.uiSoundsEnabled = u"1"_s;
    return snapshot;
}

QString readError(const QByteArray& bytes) {
    try {
        decodeMasterBaseline(bytes);
    } catch (const MasterSystemBaselineError& error) {
        EXPECT_EQ(error.code(), MasterSystemBaselineError::Code::readFailed);
        return error.message();
    }
    return {};
}

} // namespace

TEST(MasterSystemBaseline, standsInItsFileWithSortedKeys) {
    const MasterSystemBaseline baseline = masterBaselineOf(labelledSnapshot(), kStudio, u"Given"_s);
    const QByteArray text = R"({
  "capturedAt": "2026-11-15T21:05:37Z",
  "deviceId": "AA-11",
  "deviceName": "Studio",
  "formatVersion": 1,
  "label": "Given",
  "snapshot": {
    "dateCreated": "2026-11-15T21:05:37Z",
    "id": "0F8FAD5B-D9CB-469F-A165-70867728950E",
    "label": "Own",
    "uiSoundsEnabled": "1"
  }
})";
    EXPECT_EQ(encodeMasterBaseline(baseline), text);
    EXPECT_EQ(decodeMasterBaseline(text), baseline);
}

TEST(MasterSystemBaseline, takesTheSnapshotsLabelWhenItIsGivenNone) {
    EXPECT_EQ(masterBaselineOf(labelledSnapshot(), kStudio, {}).label, u"Own"_s);
    SystemSnapshot bare = labelledSnapshot();
    bare.label.reset();
    const MasterSystemBaseline baseline = masterBaselineOf(bare, kStudio, {});
    EXPECT_EQ(baseline.label, std::nullopt);
    EXPECT_EQ(decodeMasterBaseline(encodeMasterBaseline(baseline)).label, std::nullopt);
    EXPECT_FALSE(parseJson(encodeMasterBaseline(baseline)).contains("label"));
}

TEST(MasterSystemBaseline, needsEveryKeyButTheLabel) {
    const Json whole = parseJson(encodeMasterBaseline(masterBaselineOf(labelledSnapshot(), kStudio, {})));
    for (const char* key : {"formatVersion", "capturedAt", "deviceName", "snapshot"}) {
        Json json = whole;
        json.erase(key);
        EXPECT_EQ(readError(jsonText(json)),
                  u"Could not read the master system baseline: \"%1\": missing"_s.arg(QString::fromUtf8(key)));
    }
    Json unlabelled = whole;
    unlabelled.erase("label");
    EXPECT_EQ(decodeMasterBaseline(jsonText(unlabelled)).label, std::nullopt);
}

TEST(MasterSystemBaseline, ofAnyFormatVersionIsReadByItsKeys) {
    for (const int version : {0, 2, 99}) {
        Json json = parseJson(encodeMasterBaseline(masterBaselineOf(labelledSnapshot(), kStudio, {})));
        json["formatVersion"] = version;
        EXPECT_EQ(decodeMasterBaseline(jsonText(json)).formatVersion, version);
        EXPECT_EQ(decodeMasterBaseline(jsonText(json)).snapshot, labelledSnapshot());
    }
}

TEST(MasterSystemBaseline, thatIsDamagedIsAnErrorOfReading) {
    const QByteArray whole = encodeMasterBaseline(masterBaselineOf(labelledSnapshot(), kStudio, {}));
    for (qsizetype length = 0; length < whole.size(); ++length) {
        EXPECT_TRUE(readError(whole.left(length)).startsWith(u"Could not read the master system baseline: "_s))
            << length;
    }
    EXPECT_EQ(readError("[]"), u"Could not read the master system baseline: not an object"_s);
    Json json = parseJson(whole);
    json["formatVersion"] = 1.5;
    EXPECT_EQ(readError(jsonText(json)),
              u"Could not read the master system baseline: \"formatVersion\": not a whole number"_s);
}

TEST(MasterSystemBaseline, saysWhatCouldNotBeSaved) {
    const MasterSystemBaselineError error(MasterSystemBaselineError::Code::writeFailed, u"the disk is full"_s);
    EXPECT_EQ(error.message(), u"Could not save the master system baseline: the disk is full"_s);
    EXPECT_STREQ(error.what(), "Could not save the master system baseline: the disk is full");
}

TEST(MasterSystemBaseline, isArchivedUnderTheSecondOfItsCapture) {
    EXPECT_EQ(masterBaselineArchiveName(masterBaselineOf(labelledSnapshot(), kStudio, {})),
              u"master-baseline-2026-11-15T21:05:37Z.json"_s);
    SystemSnapshot later = labelledSnapshot();
    later.dateCreated = QDateTime(QDate(2026, 11, 15), QTime(22, 5, 37, 999), Qt::OffsetFromUTC, 3600);
    EXPECT_EQ(masterBaselineArchiveName(masterBaselineOf(later, kStudio, {})),
              u"master-baseline-2026-11-15T21:05:37Z.json"_s);
}

TEST(MasterSystemBaseline, ofAnOlderFileHasNoId) {
    Json json = parseJson(encodeMasterBaseline(masterBaselineOf(labelledSnapshot(), kStudio, {})));
    json.erase("deviceId");
    const MasterSystemBaseline older = decodeMasterBaseline(jsonText(json));
    EXPECT_EQ(older.deviceId, std::nullopt);
    EXPECT_EQ(older.deviceName, u"Studio"_s);
    EXPECT_EQ(parseJson(encodeMasterBaseline(older)), json);
}

// ---- Whose it is

namespace {

/// As a file, of a Mac with this name and id; no id where it is empty.
MasterSystemBaseline savedOn(const QString& name, const QString& id, const QString& label) {
    return masterBaselineOf(labelledSnapshot(), {name, id.isEmpty() ? std::nullopt : std::optional(id)}, label);
}

/// "cloud", "home", "another's cloud", "another's home", "none".
QString served(const std::optional<MasterSystemBaseline>& inCloud, const std::optional<MasterSystemBaseline>& atHome,
               const MacIdentity& mac = kStudio) {
    const std::optional<LatestBaseline> latest = latestBaseline(inCloud, atHome, mac);
    if (!latest) {
        return u"none"_s;
    }
    const bool isICloud = latest->place == BaselinePlace::ICloud;
    EXPECT_EQ(latest->baseline, isICloud ? inCloud : atHome);
    return (latest->isAnotherMacs ? u"another's "_s : QString()) + (isICloud ? u"cloud"_s : u"home"_s);
}

} // namespace

TEST(LatestBaseline, isThisMacsByItsIdWhateverTheNames) {
    const MasterSystemBaseline own = savedOn(u"Studio"_s, u"AA-11"_s, u"own"_s);
    const MasterSystemBaseline renamed = savedOn(u"Old name"_s, u"AA-11"_s, u"renamed"_s);
    const MasterSystemBaseline namesake = savedOn(u"Studio"_s, u"BB-22"_s, u"namesake"_s);
    EXPECT_EQ(served(own, own), u"cloud"_s);
    EXPECT_EQ(served(renamed, own), u"cloud"_s) << "all Macs write iCloud's, but this one wrote it last";
    EXPECT_EQ(served(namesake, own), u"home"_s);
    EXPECT_EQ(served(namesake, renamed), u"home"_s);
    EXPECT_EQ(served(own, namesake), u"cloud"_s) << "the home folder came from another Mac";
    EXPECT_EQ(served(namesake, {}), u"another's cloud"_s);
    EXPECT_EQ(served({}, namesake), u"another's home"_s);
    EXPECT_EQ(served(namesake, namesake), u"another's home"_s);
    EXPECT_EQ(served({}, {}), u"none"_s);
}

TEST(LatestBaseline, goesByTheNameWhereAnIdIsMissingAndThenHomeGoesFirst) {
    const MasterSystemBaseline own = savedOn(u"Studio"_s, u"AA-11"_s, u"own"_s);
    const MasterSystemBaseline older = savedOn(u"Studio"_s, {}, u"older"_s);
    const MasterSystemBaseline another = savedOn(u"Booth"_s, {}, u"another"_s);
    EXPECT_EQ(served(older, older), u"home"_s);
    EXPECT_EQ(served(older, own), u"home"_s);
    EXPECT_EQ(served(older, {}), u"cloud"_s);
    EXPECT_EQ(served(own, older), u"cloud"_s);
    EXPECT_EQ(served(older, another), u"cloud"_s);
    EXPECT_EQ(served(another, older), u"home"_s);
    EXPECT_EQ(served(another, another), u"another's home"_s);
    const MacIdentity unknown{u"Studio"_s, std::nullopt};
    EXPECT_EQ(served(own, own, unknown), u"home"_s);
    EXPECT_EQ(served(another, {}, unknown), u"another's cloud"_s);
}

/// Every world of two places, each with any baseline or none, and a Mac that knows its id or doesn't.
TEST(LatestBaseline, isNeverAnotherMacsWhereOneOfThisMacsIsThere) {
    QList<std::optional<MasterSystemBaseline>> files{std::nullopt};
    for (const QString& name : {u"Studio"_s, u"Booth"_s}) {
        for (const QString& id : {u"AA-11"_s, u"BB-22"_s, QString()}) {
            files.append(savedOn(name, id, u"any"_s));
        }
    }
    for (const MacIdentity& mac : {kStudio, MacIdentity{u"Studio"_s, std::nullopt}}) {
        for (const auto& inCloud : files) {
            for (const auto& atHome : files) {
                const auto isOwn = [&mac](const std::optional<MasterSystemBaseline>& file) {
                    const bool hasIds = file && file->deviceId && mac.id;
                    return file && (hasIds ? file->deviceId == mac.id : file->deviceName == mac.name);
                };
                const bool hasOwn = isOwn(inCloud) || isOwn(atHome);
                const QString found = served(inCloud, atHome, mac);
                EXPECT_EQ(found == u"none"_s, !inCloud && !atHome);
                EXPECT_EQ(found.startsWith(u"another's"_s), found != u"none"_s && !hasOwn);
            }
        }
    }
}

} // namespace quorvane
