#include "profiles/ProfileJson.h"
#include "core/Json.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

// Every key of the format, and every kind of value under it.
const QByteArray kCompleteFile = R"({
  "id": "0B7E9D60-3C1F-4A52-8E6D-9F00AABBCCDD",
  "name": "Live Set",
  "dateCreated": "2026-11-15T21:05:37Z",
  "settings": {
    "appNap": true,
    "spotlight": false,
    "usbPower": true,
    "timeMachine": false,
    "updates": true,
    "uiSounds": false,
    "notifications": true,
    "airdrop": false,
    "siri": true,
    "sms": false,
    "crashReporter": true,
    "cleanReboot": true,
    "customIcons": {
      "appNap": "star"
    }
  },
  "startup": {
    "items": [
      {
        "id": "login:/Applications/Sync.app",
        "name": "Sync",
        "path": "/Applications/Sync.app",
        "kind": "loginApp",
        "runsAtStartup": false,
        "hidden": false,
        "isProtected": false
      },
      {
        "id": "login:/Applications/Keys.app",
        "name": "Keys",
        "path": "/Applications/Keys.app",
        "kind": "loginApp",
        "runsAtStartup": true,
        "isProtected": true
      },
      {
        "id": "launch:com.example.plist",
        "name": "com.example",
        "path": "/Library/LaunchAgents/com.example.plist",
        "kind": "launchAgent",
        "runsAtStartup": false,
        "isProtected": false,
        "launchIdentifier": "com.example.plist"
      },
      {
        "id": "btm:com.example.helper",
        "name": "Helper é \"1\"",
        "path": "",
        "kind": "backgroundLoginItem",
        "runsAtStartup": true,
        "isProtected": false,
        "launchIdentifier": "com.example.helper"
      },
      {
        "id": "added:/Applications/Live.app",
        "name": "Live",
        "path": "/Applications/Live.app",
        "kind": "addedApp",
        "runsAtStartup": true,
        "isProtected": false
      },
      {
        "id": "login:Backup",
        "name": "Backup",
        "path": "",
        "kind": "backgroundAgent",
        "runsAtStartup": false,
        "isProtected": false
      }
    ],
    "disableNetworkAtStartup": true,
    "disabledCloudSyncAtStartup": [
      "box",
      "mega"
    ]
  },
  "disabledLoginItems": [
    "Backup",
    "Sync"
  ],
  "disabledLaunchItems": [
    "com.example.plist"
  ],
  "excludedBackgroundActivityItems": [],
  "knownBackgroundActivityItemIds": [],
  "permittedStartupApps": [
    "Helper é \"1\"",
    "Keys"
  ],
  "startupLaunchItems": [
    {
      "name": "Live",
      "path": "/Applications/Live.app",
      "hidden": false
    }
  ],
  "disableNetwork": true
})";

const QByteArray kSettings = R"({"appNap":false,"spotlight":false,"usbPower":false,"timeMachine":false,
    "updates":false,"uiSounds":false,"notifications":false,"airdrop":false,"siri":false,"sms":false,
    "crashReporter":false,"cleanReboot":%1,"customIcons":{}})";

/// The smallest file, with more members added.
QByteArray fileWith(const QByteArray& members, const QByteArray& cleanReboot = "false") {
    return R"({"id":"0B7E9D60-3C1F-4A52-8E6D-9F00AABBCCDD","name":"Old","dateCreated":"2026-11-15T21:05:37Z",
        "settings":)" +
           QByteArray(kSettings).replace("%1", cleanReboot) + members + "}";
}

QString problemOf(const QByteArray& bytes) {
    try {
        decodeProfile(bytes);
    } catch (const DecodingError& error) {
        return error.message();
    }
    return {};
}

TEST(ProfileJson, aFileIsWrittenAsItWasRead) {
    EXPECT_EQ(encodeProfile(decodeProfile(kCompleteFile)), kCompleteFile);
}

TEST(ProfileJson, everyFieldOfAFileIsRead) {
    const UnifiedProfile profile = decodeProfile(kCompleteFile);
    EXPECT_EQ(profile.id, QUuid(u"0B7E9D60-3C1F-4A52-8E6D-9F00AABBCCDD"_s));
    EXPECT_EQ(profile.name, u"Live Set"_s);
    EXPECT_EQ(profile.dateCreated, QDateTime(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC));
    EXPECT_EQ(selectedTweakCount(profile.settings), 7);
    ASSERT_EQ(profile.startup.items.size(), 6);
    EXPECT_EQ(profile.startup.items.at(3).name, u"Helper é \"1\""_s);
    EXPECT_EQ(profile.startup.disabledCloudSyncAtStartup,
              (CloudSyncServices{CloudSyncService::box, CloudSyncService::mega}));
    EXPECT_EQ(profile.legacyDisabledLoginItems, (QStringList{u"Backup"_s, u"Sync"_s}));
    EXPECT_EQ(profile.legacyDisabledLaunchItems, QStringList{u"com.example.plist"_s});
    EXPECT_EQ(profile.legacyPermittedStartupApps, (QStringList{u"Helper é \"1\""_s, u"Keys"_s}));
    ASSERT_EQ(profile.legacyStartupLaunchItems.size(), 1);
    EXPECT_EQ(profile.legacyStartupLaunchItems.first().name, u"Live"_s);
    EXPECT_TRUE(profile.legacyDisableNetwork);
}

TEST(ProfileJson, permittedAppsAreWrittenOnlyForACleanReboot) {
    UnifiedProfile profile = decodeProfile(kCompleteFile);
    profile.settings.cleanReboot = false;
    EXPECT_EQ(encodeJson(profile)["permittedStartupApps"], Json::array());
}

TEST(ProfileJson, theLegacyFieldsAreNotWritten) {
    UnifiedProfile profile = UnifiedProfile::defaultProfile();
    profile.legacyDisabledLoginItems = profile.legacyKnownBackgroundActivityItemIds = {u"x"_s};
    profile.legacyDisableNetwork = true;
    EXPECT_EQ(encodeProfile(profile), encodeProfile(UnifiedProfile::defaultProfile()));
}

TEST(ProfileJson, theDefaultProfileSurvivesAFile) {
    const UnifiedProfile profile = decodeProfile(encodeProfile(UnifiedProfile::defaultProfile()));
    EXPECT_EQ(profile, UnifiedProfile::defaultProfile());
    EXPECT_TRUE(profile.hasSameContent(UnifiedProfile::defaultProfile()));
    EXPECT_EQ(profile.dateCreated, UnifiedProfile::defaultProfile().dateCreated);
}

TEST(ProfileJson, aProfileWithoutADateIsNotWritten) {
    EXPECT_THROW(encodeProfile(UnifiedProfile()), EncodingError);
}

// The fields of a complete file, each with the kind of value that it takes.
struct Field {
    const char* pointer;
    const char* key; // as an error names it
    Json::value_t type;
    bool isRequired;
};

using Type = Json::value_t;

const Field kFields[] = {
    {"/id", "id", Type::string, true},
    {"/name", "name", Type::string, true},
    {"/dateCreated", "dateCreated", Type::string, true},
    {"/settings", "settings", Type::object, true},
    {"/settings/appNap", "settings.appNap", Type::boolean, true},
    {"/settings/spotlight", "settings.spotlight", Type::boolean, true},
    {"/settings/usbPower", "settings.usbPower", Type::boolean, true},
    {"/settings/timeMachine", "settings.timeMachine", Type::boolean, true},
    {"/settings/updates", "settings.updates", Type::boolean, true},
    {"/settings/uiSounds", "settings.uiSounds", Type::boolean, true},
    {"/settings/notifications", "settings.notifications", Type::boolean, true},
    {"/settings/airdrop", "settings.airdrop", Type::boolean, true},
    {"/settings/siri", "settings.siri", Type::boolean, true},
    {"/settings/sms", "settings.sms", Type::boolean, true},
    {"/settings/crashReporter", "settings.crashReporter", Type::boolean, true},
    {"/settings/cleanReboot", "settings.cleanReboot", Type::boolean, false},
    {"/settings/customIcons", "settings.customIcons", Type::object, true},
    {"/startup", "startup", Type::object, false},
    {"/startup/items", "startup.items", Type::array, true},
    {"/startup/items/0/id", "startup.items[0].id", Type::string, true},
    {"/startup/items/0/name", "startup.items[0].name", Type::string, true},
    {"/startup/items/0/path", "startup.items[0].path", Type::string, true},
    {"/startup/items/0/kind", "startup.items[0].kind", Type::string, true},
    {"/startup/items/0/runsAtStartup", "startup.items[0].runsAtStartup", Type::boolean, true},
    {"/startup/items/0/hidden", "startup.items[0].hidden", Type::boolean, false},
    {"/startup/items/0/isProtected", "startup.items[0].isProtected", Type::boolean, true},
    {"/startup/items/2/launchIdentifier", "startup.items[2].launchIdentifier", Type::string, false},
    {"/startup/disableNetworkAtStartup", "startup.disableNetworkAtStartup", Type::boolean, false},
    {"/startup/disabledCloudSyncAtStartup", "startup.disabledCloudSyncAtStartup", Type::array, false},
    {"/disabledLoginItems", "disabledLoginItems", Type::array, false},
    {"/disabledLaunchItems", "disabledLaunchItems", Type::array, false},
    {"/excludedBackgroundActivityItems", "excludedBackgroundActivityItems", Type::array, false},
    {"/knownBackgroundActivityItemIds", "knownBackgroundActivityItemIds", Type::array, false},
    {"/permittedStartupApps", "permittedStartupApps", Type::array, false},
    {"/startupLaunchItems", "startupLaunchItems", Type::array, false},
    {"/startupLaunchItems/0/name", "startupLaunchItems[0].name", Type::string, true},
    {"/startupLaunchItems/0/path", "startupLaunchItems[0].path", Type::string, true},
    {"/startupLaunchItems/0/hidden", "startupLaunchItems[0].hidden", Type::boolean, true},
    {"/disableNetwork", "disableNetwork", Type::boolean, false},
};

/// The complete file without a field.
QByteArray fileWithout(const Field& field) {
    const Json::json_pointer place(field.pointer);
    Json json = parseJson(kCompleteFile);
    json[place.parent_pointer()].erase(place.back());
    return jsonText(json);
}

/// The complete file with another value in a field.
QByteArray fileWithValue(const Field& field, const Json& value) {
    Json json = parseJson(kCompleteFile);
    json[Json::json_pointer(field.pointer)] = value;
    return jsonText(json);
}

TEST(ProfileJson, aRequiredFieldThatIsMissingIsNamed) {
    for (const Field& field : kFields) {
        SCOPED_TRACE(field.key);
        const QString expected = field.isRequired ? u"\"%1\": missing"_s.arg(QString::fromUtf8(field.key)) : QString();
        EXPECT_EQ(problemOf(fileWithout(field)), expected);
    }
}

TEST(ProfileJson, aFieldOfAnotherTypeIsNamed) {
    const Json values[] = {nullptr, true, 0, 1, -1.5, "text", Json::array(), Json::object()};
    for (const Field& field : kFields) {
        for (const Json& value : values) {
            if (value.type() == field.type) {
                continue;
            }
            SCOPED_TRACE(field.key + value.dump());
            const QString problem = problemOf(fileWithValue(field, value));
            if (value.is_null() && !field.isRequired) {
                EXPECT_EQ(problem, QString());
            } else {
                EXPECT_TRUE(problem.startsWith(u"\"%1\": not "_s.arg(QString::fromUtf8(field.key))));
            }
        }
    }
}

TEST(ProfileJson, aValueOutsideTheFormatIsNamed) {
    const std::pair<Field, Json> cases[] = {
        {kFields[0], "0B7E9D60-3C1F-4A52-8E6D"},
        {kFields[2], "2026-11-15T21:05:37+01:00"},
        {{"/settings/customIcons/appNap", "settings.customIcons.appNap", Type::string, false}, 1},
        {{"/startup/items/3", "startup.items[3]", Type::object, false}, "text"},
        {{"/startup/items/1/kind", "startup.items[1].kind", Type::string, false}, "Login"},
        {{"/startup/disabledCloudSyncAtStartup/1", "startup.disabledCloudSyncAtStartup[1]", Type::string, false},
         "Mega"},
        {{"/disabledLoginItems/1", "disabledLoginItems[1]", Type::string, false}, nullptr},
        {{"/startupLaunchItems/0", "startupLaunchItems[0]", Type::object, false}, Json::array()},
    };
    for (const auto& [field, value] : cases) {
        SCOPED_TRACE(field.key);
        const QString start = u"\"%1\": "_s.arg(QString::fromUtf8(field.key));
        EXPECT_TRUE(problemOf(fileWithValue(field, value)).startsWith(start));
    }
}

TEST(ProfileJson, whatIsNoProfileIsAnError) {
    for (const QByteArray& bytes : {QByteArray(), QByteArray("[]"), QByteArray("null"), QByteArray("\"x\""),
                                    kCompleteFile.chopped(1), kCompleteFile + "x", QByteArray(1 << 20, '[')}) {
        SCOPED_TRACE(bytes.left(20).toStdString());
        EXPECT_FALSE(problemOf(bytes).isEmpty());
    }
}

TEST(ProfileJson, aFileCutAnywhereIsAnError) {
    for (qsizetype size = 0; size < kCompleteFile.size(); ++size) {
        ASSERT_FALSE(problemOf(kCompleteFile.left(size)).isEmpty()) << size;
    }
}

TEST(ProfileJson, unknownKeysAreIgnored) {
    EXPECT_EQ(problemOf(fileWith(R"(,"future":{"a":[1,2,{"b":null}]})")), QString());
}

TEST(ProfileJson, theSmallestFileHoldsNothingBack) {
    const UnifiedProfile profile = decodeProfile(fileWith(""));
    EXPECT_EQ(profile.startup, StartupConfiguration());
    EXPECT_EQ(profile.settings, PerformanceSettings());
}

TEST(ProfileJson, startupWinsOverTheLegacyKeys) {
    const UnifiedProfile profile =
        decodeProfile(fileWith(R"(,"startup":{"items":[]},"disabledLoginItems":["Sync"],"disableNetwork":true)"));
    EXPECT_EQ(profile.startup, StartupConfiguration());
    EXPECT_EQ(profile.legacyDisabledLoginItems, QStringList{u"Sync"_s});
    EXPECT_TRUE(profile.legacyDisableNetwork);
}

TEST(ProfileJson, aLegacyFileIsMigratedAndSavedInTheNewForm) {
    const QByteArray legacy = fileWith(R"(,"disabledLoginItems":[" Sync "],"disabledLaunchItems":["a.plist"],
        "excludedBackgroundActivityItems":["login:/Applications/Keys.app"],"knownBackgroundActivityItemIds":["x"],
        "permittedStartupApps":["Live"],"startupLaunchItems":[{"name":"Mix","path":"/Mix.app","hidden":true}],
        "disableNetwork":true)",
                                       "true");
    const UnifiedProfile profile = decodeProfile(legacy);
    QStringList ids;
    for (const StartupItem& item : profile.startup.items) {
        ids.append(item.id);
    }
    EXPECT_EQ(ids, (QStringList{u"login:Sync"_s, u"launch:a.plist"_s, u"login:/Applications/Keys.app"_s,
                                u"login:Live"_s, u"added:/Mix.app"_s}));
    EXPECT_TRUE(profile.startup.disableNetworkAtStartup);
    EXPECT_EQ(profile.legacyKnownBackgroundActivityItemIds, QStringList{u"x"_s});

    const Json saved = parseJson(encodeProfile(profile));
    EXPECT_EQ(saved["startup"]["items"].size(), 5U);
    EXPECT_EQ(saved["disabledLoginItems"].dump(), "[\" Sync \"]");
    EXPECT_EQ(saved["disabledLaunchItems"].dump(), "[\"a.plist\"]");
    EXPECT_EQ(saved["excludedBackgroundActivityItems"], Json::array());
    EXPECT_EQ(saved["knownBackgroundActivityItemIds"], Json::array());
    EXPECT_EQ(saved["permittedStartupApps"].dump(), "[\"Keys.app\",\"Live\"]");
    EXPECT_EQ(saved["startupLaunchItems"].dump(), R"([{"name":"Mix","path":"/Mix.app","hidden":true}])");
    EXPECT_EQ(saved["disableNetwork"], true);
    EXPECT_TRUE(decodeProfile(encodeProfile(profile)).hasSameContent(profile));
}

TEST(ProfileJson, permittedAppsOfALegacyFileNeedACleanReboot) {
    EXPECT_TRUE(decodeProfile(fileWith(R"(,"permittedStartupApps":["Live"])")).startup.items.isEmpty());
    EXPECT_EQ(decodeProfile(fileWith(R"(,"permittedStartupApps":["Live"])", "true")).startup.items.size(), 1);
}

TEST(ProfileJson, aLargeProfileSurvivesAFile) {
    UnifiedProfile profile = UnifiedProfile::defaultProfile();
    StartupItem item;
    item.kind = StartupItemKind::launchAgent;
    for (int number = 0; number < 5000; ++number) {
        item.id = u"launch:com.example.%1.plist"_s.arg(number);
        item.name = u"com.example.%1"_s.arg(number);
        profile.startup.items.append(item);
    }
    EXPECT_TRUE(decodeProfile(encodeProfile(profile)).hasSameContent(profile));
}

} // namespace
} // namespace quorvane
