#include "snapshots/SystemSnapshot.h"
#include "core/Json.h"

#include <gtest/gtest.h>

#include <set>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

SystemSnapshot bareSnapshot() {
    SystemSnapshot snapshot;
    snapshot.id = QUuid::fromString(u"0F8FAD5B-D9CB-469F-A165-70867728950E"_s);
    snapshot.dateCreated = QDateTime(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);
    return snapshot;
}

SystemSnapshot wholeSnapshot() {
    SystemSnapshot snapshot = bareSnapshot();
    snapshot.label = u"Manual snapshot"_s;
    int number = 0;
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        preference.put(u"value %1"_s.arg(++number), snapshot);
    }
    snapshot.typedPreferences =
        TypedValues{{u"NSGlobalDomain NSAppSleepDisabled"_s, *TypedValue::ofXml(u"<string> value 1</string>"_s)},
                    {u"-currentHost com.apple.notificationcenterui doNotDisturb"_s,
                     *TypedValue::ofXml(u"<array><true/></array>"_s)}};
    snapshot.pmsetStandby = u"1"_s;
    snapshot.pmsetDisksleep = u"10"_s;
    snapshot.pmsetSleep = u"5"_s;
    snapshot.pmsetSms = u"0"_s;
    snapshot.powerBySource = QMap<QString, PowerSettings>{{u"Battery Power"_s, {u"1"_s, u"10"_s, u"5"_s, u"0"_s}},
                                                          {u"AC Power"_s, {u"0"_s, {}, u"0"_s, {}}}};
    snapshot.timeMachineEnabled = true;
    snapshot.spotlightIndexingEnabled = false;
    snapshot.spotlightByVolume = QMap<QString, QString>{{u"/"_s, u"on"_s}, {u"/Volumes/Samples"_s, u"search off"_s}};
    snapshot.networkServicesEnabled = QMap<QString, bool>{{u"Wi-Fi"_s, true}, {u"Ethernet"_s, false}};
    snapshot.loginItems = QList<LoginItemSnapshot>{{u"Live"_s, u"/Applications/Live.app"_s, true}};
    return snapshot;
}

const QByteArray kWholeText = R"({
  "id": "0F8FAD5B-D9CB-469F-A165-70867728950E",
  "dateCreated": "2026-11-15T21:05:37Z",
  "label": "Manual snapshot",
  "appNapDisabled": "value 1",
  "abletonAppNapDisabled": "value 2",
  "automaticDownload": "value 3",
  "automaticCheckEnabled": "value 4",
  "commerceAutoUpdate": "value 5",
  "systemAutomaticDownload": {
    "value": "value 6"
  },
  "systemAutomaticInstall": {
    "value": "value 7"
  },
  "systemStoreAutoUpdate": {
    "value": "value 8"
  },
  "doNotDisturb": "value 9",
  "siriStatus": "value 10",
  "assistantEnabled": "value 11",
  "crashReporterDialogType": "value 12",
  "uiSoundsEnabled": "value 13",
  "interfaceSoundsEnabled": {
    "value": "value 14"
  },
  "disableAirDrop": "value 15",
  "talLogoutSavesState": "value 16",
  "loginwindowLaunchesRelaunchApps": "value 17",
  "quitAlwaysKeepsWindows": "value 18",
  "typedPreferences": {
    "-currentHost com.apple.notificationcenterui doNotDisturb": "<array><true/></array>",
    "NSGlobalDomain NSAppSleepDisabled": "<string> value 1</string>"
  },
  "pmsetStandby": "1",
  "pmsetDisksleep": "10",
  "pmsetSleep": "5",
  "pmsetSms": "0",
  "powerBySource": {
    "AC Power": {
      "standby": "0",
      "sleep": "0"
    },
    "Battery Power": {
      "standby": "1",
      "disksleep": "10",
      "sleep": "5",
      "sms": "0"
    }
  },
  "timeMachineEnabled": true,
  "spotlightIndexingEnabled": false,
  "spotlightByVolume": {
    "/": "on",
    "/Volumes/Samples": "search off"
  },
  "networkServicesEnabled": {
    "Ethernet": false,
    "Wi-Fi": true
  },
  "loginItems": [
    {
      "name": "Live",
      "path": "/Applications/Live.app",
      "hidden": true
    }
  ]
})";

QString decodingError(const QByteArray& text) {
    try {
        decodedValue<SystemSnapshot>(parseJson(text));
    } catch (const DecodingError& error) {
        return error.message();
    }
    return {};
}

} // namespace

TEST(SystemSnapshot, standsInItsFileInTheOrderOfItsFields) {
    EXPECT_EQ(jsonText(encodeJson(wholeSnapshot())), kWholeText);
    EXPECT_EQ(decodedValue<SystemSnapshot>(parseJson(kWholeText)), wholeSnapshot());
}

TEST(SystemSnapshot, leavesOutWhatHasNoValue) {
    EXPECT_EQ(jsonText(encodeJson(bareSnapshot())), R"({
  "id": "0F8FAD5B-D9CB-469F-A165-70867728950E",
  "dateCreated": "2026-11-15T21:05:37Z"
})");
}

TEST(SystemSnapshot, tellsAKeyThatWasNotSetFromOneThatWasNotCaptured) {
    SystemSnapshot snapshot = bareSnapshot();
    snapshot.systemAutomaticDownload = CapturedValue{};
    const Json json = encodeJson(snapshot);
    EXPECT_EQ(json.at("systemAutomaticDownload"), Json::object());
    EXPECT_EQ(decodedValue<SystemSnapshot>(json), snapshot);
    EXPECT_NE(snapshot, bareSnapshot());
    EXPECT_EQ(decodedValue<SystemSnapshot>(encodeJson(bareSnapshot())).systemAutomaticDownload, std::nullopt);
}

TEST(SystemSnapshot, keepsAnEmptyListOfLoginItemsApartFromNone) {
    SystemSnapshot snapshot = bareSnapshot();
    snapshot.loginItems = QList<LoginItemSnapshot>();
    const Json json = encodeJson(snapshot);
    EXPECT_EQ(json.at("loginItems"), Json::array());
    EXPECT_EQ(decodedValue<SystemSnapshot>(json), snapshot);
}

TEST(SystemSnapshot, tellsBackupsThatWereSwitchedOffFromOnesThatOnlyDidNotRun) {
    SystemSnapshot snapshot = bareSnapshot();
    snapshot.timeMachineEnabled = false;
    Json json = encodeJson(snapshot);
    EXPECT_EQ(json.at("timeMachineEnabled"), false);
    EXPECT_EQ(decodedValue<SystemSnapshot>(json), snapshot);
    json.erase("timeMachineSwitchedOff"); // as an earlier version wrote it on any Mac that made no backup just then
    EXPECT_EQ(decodedValue<SystemSnapshot>(json), bareSnapshot());
    json["timeMachineEnabled"] = true;
    snapshot.timeMachineEnabled = true;
    EXPECT_EQ(decodedValue<SystemSnapshot>(json), snapshot);
    EXPECT_EQ(encodeJson(snapshot), json);
}

TEST(SystemSnapshot, withoutAFieldThatMayBeMissingIsRead) {
    QByteArray text = kWholeText;
    text.replace("  \"pmsetSms\": \"0\",\n", "");
    SystemSnapshot expected = wholeSnapshot();
    expected.pmsetSms.reset();
    EXPECT_EQ(decodedValue<SystemSnapshot>(parseJson(text)), expected);
}

TEST(SystemSnapshot, needsItsIdentityAndItsDate) {
    EXPECT_EQ(decodingError(R"({"dateCreated": "2026-11-15T21:05:37Z"})"), u"\"id\": missing"_s);
    EXPECT_EQ(decodingError(R"({"id": "0F8FAD5B-D9CB-469F-A165-70867728950E"})"), u"\"dateCreated\": missing"_s);
    EXPECT_EQ(decodingError(R"({"id": 7, "dateCreated": "2026-11-15T21:05:37Z"})"), u"\"id\": not a string"_s);
}

TEST(SystemSnapshot, needsEveryFieldOfALoginItem) {
    for (const char* key : {"name", "path", "hidden"}) {
        Json json = encodeJson(wholeSnapshot());
        json["loginItems"][0].erase(key);
        EXPECT_EQ(decodingError(jsonText(json)), u"\"loginItems[0].%1\": missing"_s.arg(QString::fromUtf8(key)));
    }
}

TEST(SystemSnapshot, refusesValuesOfAnotherType) {
    Json json = encodeJson(wholeSnapshot());
    json["pmsetSleep"] = 5;
    EXPECT_EQ(decodingError(jsonText(json)), u"\"pmsetSleep\": not a string"_s);
    json = encodeJson(wholeSnapshot());
    json["networkServicesEnabled"]["Wi-Fi"] = "on";
    EXPECT_EQ(decodingError(jsonText(json)), u"\"networkServicesEnabled.Wi-Fi\": not a boolean"_s);
    EXPECT_EQ(decodingError("[]"), u"not an object"_s);
}

TEST(SystemSnapshot, isReadWhateverElseItsFileHolds) {
    Json json = encodeJson(wholeSnapshot());
    json["formatVersion"] = 99;
    json["somethingOfALaterVersion"] = Json::object({{"a", 1}});
    EXPECT_EQ(decodedValue<SystemSnapshot>(json), wholeSnapshot());
}

TEST(SystemSnapshot, readsEachPreferenceFromAPlaceOfItsOwn) {
    std::set<std::pair<QString, QString>> places;
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        places.insert({preference.domain.toString(), preference.key.toString()});
        EXPECT_EQ(preference.isNotificationCenters(), preference.key == u"doNotDisturb");
    }
    EXPECT_EQ(places.size(), snapshotPreferences().size());
}

TEST(SystemSnapshot, leavesOutATypedValueThatIsNone) {
    const QByteArray text = QByteArray(kWholeText).replace("<array><true/></array>", "<array><reboot/></array>");
    SystemSnapshot expected = wholeSnapshot();
    expected.typedPreferences->remove(u"-currentHost com.apple.notificationcenterui doNotDisturb"_s);
    EXPECT_EQ(decodedValue<SystemSnapshot>(parseJson(text)), expected);
    EXPECT_TRUE(
        decodingError(QByteArray(kWholeText).replace("\"<array><true/></array>\"", "7")).endsWith(u": not a string"_s));
}

TEST(SystemSnapshot, knowsTheTypeOfWhatIsSetAlone) {
    SystemSnapshot snapshot = bareSnapshot();
    const SnapshotPreference& appSleep = snapshotPreferences()[0];
    const TypedValue value = *TypedValue::ofXml(u"<integer>1</integer>"_s);
    appSleep.put(u"1"_s, snapshot);
    EXPECT_EQ(appSleep.typedIn(snapshot), std::nullopt);
    snapshot.typedPreferences = TypedValues{{u"NSGlobalDomain NSAppSleepDisabled"_s, value}};
    EXPECT_EQ(appSleep.typedIn(snapshot), value);
    EXPECT_EQ(snapshotPreferences()[1].typedIn(snapshot), std::nullopt) << "the same key of another domain";
    appSleep.put(std::nullopt, snapshot);
    EXPECT_EQ(appSleep.typedIn(snapshot), std::nullopt);
}

} // namespace quorvane
