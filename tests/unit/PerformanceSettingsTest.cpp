#include "tweaks/PerformanceSettings.h"
#include "core/Json.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

QString settingsProblem(const Json& json) {
    try {
        decodedValue<PerformanceSettings>(json);
    } catch (const DecodingError& error) {
        return error.message();
    }
    return {};
}

TEST(PerformanceSettings, nothingIsSelectedAtFirst) {
    const PerformanceSettings settings;
    EXPECT_EQ(selectedTweakTitles(settings), QStringList());
    EXPECT_EQ(selectedTweakCount(settings), 0);
    EXPECT_TRUE(settings.customIcons.isEmpty());
}

TEST(PerformanceSettings, theFullSelectionHasAllButTheCleanReboot) {
    const PerformanceSettings& full = PerformanceSettings::fullSelection();
    for (const TweakField& field : tweakFields()) {
        SCOPED_TRACE(field.key);
        EXPECT_EQ(full.*field.isSelected, std::string_view(field.key) != "cleanReboot");
    }
    EXPECT_TRUE(full.customIcons.isEmpty());
    EXPECT_EQ(selectedTweakCount(full), 11);
}

TEST(PerformanceSettings, titlesStandInTheOrderOfTheCatalogue) {
    PerformanceSettings settings = PerformanceSettings::fullSelection();
    settings.cleanReboot = true;
    EXPECT_EQ(selectedTweakTitles(settings), (QStringList{
                                                 u"Bypass macOS App Nap Throttling"_s,
                                                 u"Suspend Spotlight Drive Indexing"_s,
                                                 u"Prevent USB Hardware Standby"_s,
                                                 u"Disable HDD Sudden Motion Sensor"_s,
                                                 u"Disable Time Machine Auto-Backups"_s,
                                                 u"Block Background Software Updates"_s,
                                                 u"Suppress Notifications and Alerts"_s,
                                                 u"Disable Crash Reporting Daemons"_s,
                                                 u"Deactivate AirDrop & Sharing Services"_s,
                                                 u"Deactivate Siri Core Services"_s,
                                                 u"Silence System UI Sound Effects"_s,
                                                 u"Start Clean on Reboot"_s,
                                             }));
    EXPECT_EQ(selectedTweakCount(settings), 12);
}

TEST(PerformanceSettings, onlyTheSelectedCount) {
    PerformanceSettings settings;
    settings.uiSounds = true;
    settings.sms = true;
    EXPECT_EQ(selectedTweakTitles(settings),
              (QStringList{u"Disable HDD Sudden Motion Sensor"_s, u"Silence System UI Sound Effects"_s}));
    EXPECT_EQ(selectedTweakCount(settings), 2);
}

TEST(PerformanceSettings, theFileHasTheKeysInTheOrderOfTheFields) {
    PerformanceSettings settings;
    settings.spotlight = true;
    settings.sms = true;
    settings.customIcons = {{u"siri"_s, u"star"_s}, {u"appNap"_s, u"moon"_s}};
    EXPECT_EQ(jsonText(encodeJson(settings)), R"({
  "appNap": false,
  "spotlight": true,
  "usbPower": false,
  "timeMachine": false,
  "updates": false,
  "uiSounds": false,
  "notifications": false,
  "airdrop": false,
  "siri": false,
  "sms": true,
  "crashReporter": false,
  "cleanReboot": false,
  "customIcons": {
    "appNap": "moon",
    "siri": "star"
  }
})");
}

TEST(PerformanceSettings, eachFieldSurvivesAFile) {
    for (const TweakField& field : tweakFields()) {
        SCOPED_TRACE(field.key);
        PerformanceSettings settings;
        settings.*field.isSelected = true;
        EXPECT_EQ(decodedValue<PerformanceSettings>(encodeJson(settings)), settings);
        EXPECT_NE(settings, PerformanceSettings());
    }
}

TEST(PerformanceSettings, onlyTheCleanRebootMayBeMissing) {
    const Json complete = encodeJson(PerformanceSettings::fullSelection());
    for (const auto& [key, value] : complete.items()) {
        SCOPED_TRACE(key);
        Json json = complete;
        json.erase(key);
        const bool isOptional = key == "cleanReboot";
        EXPECT_EQ(settingsProblem(json),
                  isOptional ? QString() : u"\"%1\": missing"_s.arg(QString::fromStdString(key)));
    }
}

TEST(PerformanceSettings, withoutACleanRebootItIsOff) {
    PerformanceSettings settings = PerformanceSettings::fullSelection();
    settings.cleanReboot = true;
    Json json = encodeJson(settings);
    json.erase("cleanReboot");
    EXPECT_EQ(decodedValue<PerformanceSettings>(json), PerformanceSettings::fullSelection());
}

TEST(PerformanceSettings, aBooleanIsNothingElse) {
    for (const TweakField& field : tweakFields()) {
        for (const Json& wrong : {Json(1), Json(0), Json("true"), Json::array(), Json::object(), Json(1.0)}) {
            SCOPED_TRACE(field.key + wrong.dump());
            Json json = encodeJson(PerformanceSettings());
            json[field.key] = wrong;
            EXPECT_EQ(settingsProblem(json), u"\"%1\": not a boolean"_s.arg(QString::fromUtf8(field.key)));
        }
    }
}

TEST(PerformanceSettings, customIconsAreTexts) {
    Json json = encodeJson(PerformanceSettings());
    json["customIcons"] = Json::array();
    EXPECT_EQ(settingsProblem(json), u"\"customIcons\": not an object"_s);
    json["customIcons"] = Json{{"appNap", 1}};
    EXPECT_EQ(settingsProblem(json), u"\"customIcons.appNap\": not a string"_s);
    json["customIcons"] = nullptr;
    EXPECT_EQ(settingsProblem(json), u"\"customIcons\": not an object"_s);
}

TEST(PerformanceSettings, unknownKeysAreIgnoredAndNotKept) {
    Json json = encodeJson(PerformanceSettings());
    json["turbo"] = true;
    const auto settings = decodedValue<PerformanceSettings>(json);
    EXPECT_EQ(settings, PerformanceSettings());
    EXPECT_FALSE(encodeJson(settings).contains("turbo"));
}

TEST(PerformanceSettings, anIconOfAnUnknownTweakIsKept) {
    PerformanceSettings settings;
    settings.customIcons = {{u"turbo"_s, u"hare.fill"_s}};
    EXPECT_EQ(decodedValue<PerformanceSettings>(encodeJson(settings)), settings);
}

TEST(PerformanceSettings, aCustomIconMakesADifference) {
    PerformanceSettings plain;
    PerformanceSettings starred;
    starred.customIcons = {{u"appNap"_s, u"star"_s}};
    EXPECT_NE(plain, starred);
    plain.customIcons = {{u"appNap"_s, u"moon"_s}};
    EXPECT_NE(plain, starred);
}

} // namespace
} // namespace quorvane
