#include "snapshots/MasterSystemBaseline.h"
#include "core/Json.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

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
    const MasterSystemBaseline baseline = masterBaselineOf(labelledSnapshot(), u"Studio"_s, u"Given"_s);
    const QByteArray text = R"({
  "capturedAt": "2026-11-15T21:05:37Z",
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
    EXPECT_EQ(masterBaselineOf(labelledSnapshot(), u"Studio"_s, {}).label, u"Own"_s);
    SystemSnapshot bare = labelledSnapshot();
    bare.label.reset();
    const MasterSystemBaseline baseline = masterBaselineOf(bare, u"Studio"_s, {});
    EXPECT_EQ(baseline.label, std::nullopt);
    EXPECT_EQ(decodeMasterBaseline(encodeMasterBaseline(baseline)).label, std::nullopt);
    EXPECT_FALSE(parseJson(encodeMasterBaseline(baseline)).contains("label"));
}

TEST(MasterSystemBaseline, needsEveryKeyButTheLabel) {
    const Json whole = parseJson(encodeMasterBaseline(masterBaselineOf(labelledSnapshot(), u"Studio"_s, {})));
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
        Json json = parseJson(encodeMasterBaseline(masterBaselineOf(labelledSnapshot(), u"Studio"_s, {})));
        json["formatVersion"] = version;
        EXPECT_EQ(decodeMasterBaseline(jsonText(json)).formatVersion, version);
        EXPECT_EQ(decodeMasterBaseline(jsonText(json)).snapshot, labelledSnapshot());
    }
}

TEST(MasterSystemBaseline, thatIsDamagedIsAnErrorOfReading) {
    const QByteArray whole = encodeMasterBaseline(masterBaselineOf(labelledSnapshot(), u"Studio"_s, {}));
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
    EXPECT_EQ(masterBaselineArchiveName(masterBaselineOf(labelledSnapshot(), u"Studio"_s, {})),
              u"master-baseline-2026-11-15T21:05:37Z.json"_s);
    SystemSnapshot later = labelledSnapshot();
    later.dateCreated = QDateTime(QDate(2026, 11, 15), QTime(22, 5, 37, 999), Qt::OffsetFromUTC, 3600);
    EXPECT_EQ(masterBaselineArchiveName(masterBaselineOf(later, u"Studio"_s, {})),
              u"master-baseline-2026-11-15T21:05:37Z.json"_s);
}

} // namespace quorvane
