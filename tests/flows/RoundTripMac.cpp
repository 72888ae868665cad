#include "flows/RoundTripMac.h"

#include "simulator/MacDescription.h"
#include "snapshots/SystemSnapshot.h"

#include <functional>

namespace quorvane {

using macsim::Json;

namespace {

// ---- Preferences

Json oneOf(std::initializer_list<Json> values, Draw& draw) {
    return *(values.begin() + draw.below(static_cast<int>(values.size())));
}

/// A value of any type that a property list has.
Json randomPreference(Draw& draw) {
    switch (draw.below(12)) {
    case 0:
        return oneOf({0, 1}, draw);
    case 1:
        return oneOf({7, -3, 86400, 9007199254740993}, draw);
    case 2:
        return oneOf({0.5, 1.0, 2.0, -1e-9, 6.02e23}, draw);
    case 3:
        return oneOf({"yes", "No", "TRUE", "false", "1", "0", "7", "+7", "-12", "007"}, draw);
    case 4:
        return oneOf({"", " ", "\n", " padded ", "tail\n", " yes"}, draw);
    case 5:
        return oneOf({Json{{"$date", "2026-03-14T20:30:00Z"}}, Json{{"$data", "3q2+7w=="}}, Json::array(),
                      Json{1, "two"}, Json{{"key", true}}},
                     draw);
    case 6:
    case 7:
        return oneOf({"Enabled", "none", "crashreport", "Bühne “A”", "-dashed", "(not, a list)", "a \"b\" \\ 'c' $d",
                      "two\nlines", "1e3", "99999999999999999999", "yes, please"},
                     draw);
    default:
        return draw.oneIn(2);
    }
}

/// Root writes no lists, dates or data back: the system's switches hold nothing of the kind.
Json randomSystemPreference(Draw& draw) {
    const Json value = randomPreference(draw);
    return value.is_structured() ? Json(true) : value;
}

/// Each of the captured preferences has some value, or none.
void drawPreferences(Json& mac, Draw& draw) {
    for (const char* scope : {"user", "userCurrentHost", "files"}) { // a member that comes later would move the others
        if (Json& preferences = mac["preferences"][scope]; preferences.is_null()) {
            preferences = Json::object();
        }
    }
    Json& user = mac["preferences"]["user"];
    for (const SnapshotPreference& preference : snapshotPreferences()) {
        Json& host = preference.isNotificationCenters() ? mac["preferences"]["userCurrentHost"]
                     : preference.isSystems()           ? mac["preferences"]["files"]
                                                        : user;
        const QString domain =
            preference.isNotificationCenters() ? u"com.apple.notificationcenterui"_s : preference.domain.toString();
        Json& values = host[domain.toStdString()];
        if (values.is_null()) {
            values = Json::object();
        }
        values.erase(preference.key.toString().toStdString());
        Draw later = draw; // what earlier versions didn't capture leaves the other draws as they were
        Draw& own = preference.text ? draw : later;
        if (!own.oneIn(5)) {
            values[preference.key.toString().toStdString()] =
                preference.isSystems() ? randomSystemPreference(own) : randomPreference(own);
        } else if (values.empty()) {
            host.erase(domain.toStdString());
        }
    }
    if (draw.oneIn(2)) {
        user["com.apple.ncprefs"]["dnd_prefs"] = oneOf({Json{{"dnd_enabled", false}}, Json{{"other", 1}}}, draw);
    } else if (draw.oneIn(2)) {
        user.erase("com.apple.ncprefs");
    }
}

// ---- The system's settings

Json randomPowerSection(const Json& supported, Draw& draw) {
    Json section = Json::object();
    for (const Json& setting : supported) {
        const std::string name = setting.get<std::string>();
        section[name] = name == "hibernatefile"      ? Json("/var/vm/sleepimage")
                        : name == "standbydelayhigh" ? Json(86400)
                        : name == "disksleep"        ? oneOf({0, 10, 15}, draw)
                        : name.ends_with("sleep")    ? oneOf({0, 1, 5, 30}, draw)
                                                     : oneOf({0, 1}, draw);
    }
    return section;
}

/// The sources of one Mac know the same settings. On some the delays of standby are listed before it.
void drawPower(Json& mac, Draw& draw) {
    Json supported = Json::array({"lidwake"});
    const auto add = [&](const char* name, bool isThere) {
        if (isThere) {
            supported.push_back(name);
        }
    };
    add("standbydelayhigh", draw.oneIn(4));
    add("standby", !draw.oneIn(6));
    add("standbydelaylow", draw.oneIn(3));
    add("hibernatefile", true);
    add("disksleep", !draw.oneIn(12));
    add("sms", draw.oneIn(2));
    add("sleep", !draw.oneIn(12));
    add("displaysleep", true);
    Json sources = Json::object();
    for (const char* source : {"Battery Power", "AC Power", "UPS Power"}) {
        const bool isThere = source == std::string("AC Power") || draw.oneIn(source[0] == 'B' ? 2 : 5);
        if (isThere) {
            sources[source] = randomPowerSection(supported, draw);
        }
    }
    mac["power"] = {
        {"sources", sources}, {"activeSource", "AC Power"}, {"sleepPreventedBy", Json::array({"coreaudiod"})}};
}

void drawSpotlight(Json& mac, Draw& draw) {
    const auto state = [&draw] {
        return draw.oneIn(4) ? oneOf({"searchDisabled", "noIndex", "readOnly", "unknown", "transitioning"}, draw)
                             : oneOf({"enabled", "disabled"}, draw);
    };
    Json& spotlight = mac["spotlight"];
    spotlight = {{"volumes", {{"/", state()}, {"/System/Volumes/Data", state()}}}, {"rootSwitchesData", draw.oneIn(2)}};
    if (draw.oneIn(2)) {
        spotlight["volumes"]["/Volumes/Sets"] = state();
    }
    if (draw.oneIn(6)) {
        spotlight["refusesSwitch"] = {draw.from({u"/"_s, u"/System/Volumes/Data"_s}).toStdString()};
    }
    if (draw.oneIn(12)) {
        spotlight["serverDisabled"] = true;
    }
}

void drawTimeMachine(Json& mac, Draw& draw) {
    mac["timeMachine"]["running"] = draw.oneIn(2);
    if (draw.oneIn(3)) {
        mac["timeMachine"].erase("destination");
    }
    Json& files = mac["preferences"]["files"];
    if (draw.oneIn(4)) {
        files.erase("/Library/Preferences/com.apple.TimeMachine");
    } else {
        files["/Library/Preferences/com.apple.TimeMachine"]["AutoBackup"] = draw.oneIn(2);
    }
}

/// Its agent is loaded and runs, or the user has switched it off for good.
void drawNotificationCenter(Json& mac, Draw& draw) {
    const std::string label = "com.apple.notificationcenterui.agent";
    Json& launchd = mac["launchd"];
    if (draw.oneIn(3)) {
        launchd["disabled"]["user/501"][label] = draw.oneIn(2);
    }
    launchd["disabled"]["user/501"]["com.example.other"] = false;
    if (launchd["disabled"]["user/501"].value(label, false)) {
        launchd["jobs"]["gui/501"].erase(label);
        Json& processes = mac["processes"];
        std::erase_if(processes.get_ref<Json::array_t&>(),
                      [](const Json& process) { return process["name"] == "NotificationCenter"; });
    }
}

void drawNetwork(Json& mac, Draw& draw) {
    Json services = Json::array();
    for (const char* name : {"Wi-Fi", "*Star*", "Bob's iPhone USB", "USB 10/100/1000 LAN (Bühne)", "-d",
                             "Mika’s \"Warm-up\" $(id) `id` \\ LAN", "Ethernet"}) {
        if (!draw.oneIn(3)) {
            services.push_back(
                {{"name", name}, {"device", "en" + std::to_string(services.size())}, {"enabled", !draw.oneIn(3)}});
        }
    }
    mac["networkServices"] = services;
}

void drawPermissions(Json& mac, Draw& draw) {
    mac["permissions"]["fullDiskAccess"] = !draw.oneIn(6);
    mac["permissions"]["systemIntegrityProtection"] = draw.oneIn(2);
    mac["permissions"]["automation"]["System Events"] = !draw.oneIn(10);
    if (draw.oneIn(3)) {
        mac["cloud"] = {{"account", true}, {"container", draw.oneIn(2)}};
    }
}

// ---- Login items

/// Files that can open at login; the last ones have paths that are hard to quote.
const QStringList kOpenable =
    kApplications + QStringList{u"/Applications/Helper.app"_s, u"/Applications/Chat.app/Contents/Helper.app/"_s,
                                u"/Users/alex/Music/Sets/intro.command"_s,
                                u"/Users/alex/Apps/Ünï “x” \"y\" \\ 'z'.app"_s, u"/Users/alex/Apps/a|b.app"_s};

QString fileNameOf(const QString& path) {
    const QString name = path.section(u'/', -1, -1, QString::SectionSkipEmpty);
    return name.endsWith(u".app"_s) ? name.chopped(4) : name;
}

/// Each file is there once. Some items have a name of their own; of some macOS doesn't find the file any more.
void drawLoginItems(Json& mac, Draw& draw) {
    Json items = Json::array();
    for (const QString& path : kOpenable) {
        if (draw.oneIn(3)) {
            const QString name =
                draw.oneIn(5) ? draw.from({u"My intro"_s, u"A | B"_s, u"“Q” \"x\""_s, u"helper"_s}) : fileNameOf(path);
            const Json item{{"name", name.toStdString()}, {"path", path.toStdString()}, {"hidden", draw.oneIn(2)}};
            items.insert(items.begin() + draw.below(static_cast<int>(items.size()) + 1), item);
        }
    }
    if (draw.oneIn(4)) {
        items.push_back({{"name", "Uninstalled"}, {"path", nullptr}, {"hidden", draw.oneIn(2)}});
    }
    mac["loginItems"] = items;
}

void drawManagedApplications(Json& mac, Draw& draw) {
    if (draw.oneIn(3)) {
        mac["preferences"]["user"]["com.quorvane.app"]["QuorvaneManagedStartupAppPaths"] = {
            draw.from(kOpenable).toStdString()};
    }
    if (draw.oneIn(3)) {
        mac["preferences"]["user"]["com.quorvane.app"]["QuorvaneLastAppliedProfileName"] = "Yesterday";
    }
}

// ---- Launch items and background items

/// A plist in one of the launch folders; its job may be loaded, may run, and may have an override of the user's.
void addLaunchItem(Json& mac, const QString& folder, int number, Draw& draw) {
    const bool isUsers = folder.startsWith(u"/Users/"_s);
    const bool isDaemon = domainOf(folder) == u"system";
    const std::string label = kLaunchLabel.toStdString() +
                              draw.from({u"plain"_s, u"it's \"odd\" $x"_s, u"Übung"_s}).toStdString() +
                              std::to_string(number);
    const std::string name = draw.oneIn(3) ? "file " + std::to_string(number) : label;
    const std::string path = folder.toStdString() + '/' + name + ".plist";
    const std::string program = "job" + std::to_string(number);
    mac["files"].push_back(
        {{"path", path},
         {"propertyList", {{"Label", label}, {"Program", "/usr/local/bin/" + program}, {"RunAtLoad", draw.oneIn(2)}}},
         {"format", draw.oneIn(2) ? "binary" : "xml"}});
    if (isUsers && draw.oneIn(6)) {
        mac["ownedByRoot"].push_back(path);
    }
    const bool isRunning = mac["files"].back()["propertyList"]["RunAtLoad"].get<bool>();
    Json& launchd = mac["launchd"];
    const char* overrides = isDaemon ? "system" : "user/501";
    if (draw.oneIn(4)) {
        launchd["disabled"][overrides][label] = draw.oneIn(2);
    }
    if (launchd["disabled"][overrides].value(label, false) || draw.oneIn(5)) {
        return;
    }
    const int pid = 2000 + number;
    launchd["jobs"][domainOf(folder).toStdString()][label] = {
        {"path", path}, {"pid", isRunning ? Json(pid) : Json()}, {"lastExitStatus", draw.oneIn(3) ? Json(0) : Json()}};
    if (isRunning) {
        mac["processes"].push_back({{"pid", pid},
                                    {"name", program},
                                    {"path", "/usr/local/bin/" + program},
                                    {"uid", isDaemon ? 0 : 501},
                                    {"label", label}});
    }
}

void drawLaunchItems(Json& mac, Draw& draw) {
    mac["launchd"]["disabled"]["system"]["com.example.other"] = false;
    for (int number = draw.below(6); number > 0; --number) {
        addLaunchItem(mac, draw.from(kLaunchFolders), number, draw);
    }
}

void drawBackgroundTasks(Json& mac, Draw& draw) {
    for (const QString& application : kApplications) {
        mac["files"].push_back(
            {{"path", application.toStdString() + "/Contents/Info.plist"}, {"propertyList", {{"CFBundleName", "x"}}}});
    }
    addBackgroundTasks(mac, draw);
    if (draw.oneIn(4)) {
        mac["ownedByRoot"].push_back(draw.from(kApplications).toStdString());
    }
}

StartupItem switchedOff(const Json& loginItem) {
    StartupItem item;
    item.kind = StartupItemKind::loginApp;
    item.name = QString::fromStdString(loginItem["name"].get<std::string>());
    item.path =
        loginItem["path"].is_string() ? QString::fromStdString(loginItem["path"].get<std::string>()) : QString();
    item.id = loginItemId(item.name, item.path);
    item.runsAtStartup = false;
    return item;
}

/// The plists in the launch folders.
QStringList launchPlists(const Json& mac) {
    QStringList paths;
    for (const Json& file : mac["files"]) {
        const QString path = QString::fromStdString(file["path"].get<std::string>());
        if (kLaunchFolders.contains(path.left(path.lastIndexOf(u'/')))) {
            paths.append(path);
        }
    }
    return paths;
}

StartupItem switchedOff(const QString& launchPlist) {
    StartupItem item;
    const bool isDaemon = launchPlist.contains(u"/LaunchDaemons/"_s);
    item.kind = isDaemon ? StartupItemKind::launchDaemon : StartupItemKind::launchAgent;
    item.launchIdentifier = launchPlist.mid(launchPlist.lastIndexOf(u'/') + 1);
    item.name = *item.launchIdentifier;
    item.id = launchItemId(*item.launchIdentifier);
    item.path = launchPlist;
    item.runsAtStartup = false;
    return item;
}

StartupItem backgroundItemSwitchedOff(const QString& label) {
    StartupItem item;
    item.kind = StartupItemKind::backgroundLoginItem;
    item.name = label;
    item.launchIdentifier = label;
    item.id = backgroundItemId(label);
    item.runsAtStartup = false;
    return item;
}

StartupItem opened(const QString& path, Draw& draw) {
    return StartupItem::fromLaunchItem({fileNameOf(path), path, draw.oneIn(2)});
}

} // namespace

macsim::Json randomRoundTripMac(Draw& draw) {
    Json mac = macsim::macDescriptionFromFile(QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/fresh-macbook.json"));
    mac["machine"]["caseSensitiveVolume"] = true;
    for (const auto& drawPart :
         {drawPreferences, drawPower, drawSpotlight, drawTimeMachine, drawNotificationCenter, drawNetwork,
          drawPermissions, drawLoginItems, drawManagedApplications, drawLaunchItems, drawBackgroundTasks}) {
        drawPart(mac, draw);
    }
    return mac;
}

void changeWorld(const macsim::Mac& mac, Draw& draw) {
    const macsim::StateStore& state = mac.state();
    state.update("permissions", [&draw](Json& permissions) {
        permissions["automation"]["System Events"] = !draw.oneIn(3);
        permissions["fullDiskAccess"] = !draw.oneIn(5);
    });
    state.update("networkServices", [&draw](Json& services) {
        if (!services.empty() && draw.oneIn(2)) {
            services.erase(services.begin() + draw.below(static_cast<int>(services.size())));
        }
        if (draw.oneIn(2)) {
            services.push_back({{"name", "Dock LAN"}, {"device", "en9"}, {"enabled", true}});
        }
    });
    state.update("displays", [&draw](Json& displays) {
        displays[0]["isConnected"] = draw.oneIn(2);
        displays.push_back({{"number", 7}, {"localizedName", "Projector"}, {"frame", {0, 0, 1024, 768}}, {"scale", 1}});
    });
    if (draw.oneIn(2)) {
        QDir(mac.hostFolder() + draw.from(kApplications)).removeRecursively();
    }
    QDir().mkpath(mac.hostFolder() + u"/Applications/New Toy.app/Contents"_s);
}

UnifiedProfile randomRoundTripProfile(const macsim::Json& mac, Draw& draw) {
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = u"Random %1"_s.arg(draw.below(3));
    profile.dateCreated = QDateTime(QDate(2026, 3, 14), QTime(20, 30), Qt::UTC);
    for (const TweakField& field : tweakFields()) {
        profile.settings.*field.isSelected = draw.oneIn(2);
    }
    for (const Json& item : mac["loginItems"]) {
        if (draw.oneIn(2)) {
            profile.startup.items.append(switchedOff(item));
        }
    }
    for (const QString& plist : launchPlists(mac)) {
        if (draw.oneIn(2)) {
            profile.startup.items.append(switchedOff(plist));
        }
    }
    for (int count = draw.below(3); count > 0; --count) {
        profile.startup.items.append(backgroundItemSwitchedOff(draw.from(kLabels)));
    }
    for (int count = draw.below(4); count > 0; --count) {
        profile.startup.items.append(opened(draw.from(kOpenable), draw));
    }
    profile.startup.disableNetworkAtStartup = draw.oneIn(2);
    if (draw.oneIn(3)) {
        profile.startup.disabledCloudSyncAtStartup = {CloudSyncService::dropbox, CloudSyncService::googleDrive};
    }
    return profile;
}

} // namespace quorvane
