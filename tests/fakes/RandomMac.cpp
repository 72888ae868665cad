#include "fakes/RandomMac.h"

#include "fakes/BackgroundList.h"
#include "simulator/MacDescription.h"
#include "simulator/tools/Registry.h"

#include <QCoroTask>

namespace quorvane {

QString caseFolder() {
    const QFileInfo memory(u"/dev/shm"_s);
    return (memory.isDir() && memory.isWritable() ? memory.filePath() : QDir::tempPath()) + u"/quorvane-XXXXXX"_s;
}

int Draw::below(int bound) {
    return static_cast<int>(m_engine() % static_cast<quint64>(bound));
}

bool Draw::oneIn(int count) {
    return below(count) == 0;
}

const QString& Draw::from(const QStringList& texts) {
    return texts[below(static_cast<int>(texts.size()))];
}

QString domainOf(const QString& launchFolder) {
    return launchFolder.endsWith(u"Daemons"_s) ? u"system"_s : u"gui/501"_s;
}

void addFileOnce(macsim::Json& description, const macsim::Json& file) {
    const macsim::Json& files = description["files"];
    if (std::none_of(files.begin(), files.end(),
                     [&file](const macsim::Json& other) { return other["path"] == file["path"]; })) {
        description["files"].push_back(file);
    }
}

void addLaunchItems(macsim::Json& description, Draw& draw) {
    for (int count = draw.below(9); count > 0; --count) {
        const QString folder = draw.from(kLaunchFolders);
        const std::string label = draw.from(kLabels).toStdString();
        const std::string path = folder.toStdString() + "/" + label + ".plist";
        macsim::Json& job = description["launchd"]["jobs"][domainOf(folder).toStdString()][label];
        if (job.is_null()) {
            job = {{"path", path}, {"pid", nullptr}};
            macsim::Json plist{{"Label", label}, {"Program", "/x"}};
            if (label.size() % 3 != 0) { // the others wait until somebody asks for them
                plist["RunAtLoad"] = true;
            }
            description["files"].push_back({{"path", path}, {"propertyList", plist}});
        }
    }
}

void addBackgroundTasks(macsim::Json& description, Draw& draw) {
    macsim::Json records = macsim::Json::array();
    for (int i = 0; i < kApplications.size(); ++i) {
        records.push_back({{"uid", 501},
                           {"name", "Application " + std::to_string(i)},
                           {"type", "app"},
                           {"identifier", "2.com.app" + std::to_string(i)},
                           {"url", kApplications[i].toStdString()},
                           {"enabled", draw.oneIn(2)}});
    }
    for (int count = draw.below(12); count > 0; --count) {
        const int application = draw.below(static_cast<int>(kApplications.size()));
        const QString name = draw.from(kNames);
        const QString label = draw.from(kLabels);
        const bool isAgent = draw.oneIn(2);
        const QString inside = u"Contents/Library/"_s + (isAgent ? u"LaunchAgents/"_s + label + u".plist"_s
                                                                 : u"LoginItems/"_s + name + u".app"_s);
        macsim::Json record{{"uid", 501},
                            {"name", name.toStdString()},
                            {"type", isAgent ? "agent" : "login item"},
                            {"identifier", (isAgent ? "8." : "4.") + label.toStdString()},
                            {"url", inside.toStdString()},
                            {"allowed", !draw.oneIn(6)}};
        if (draw.oneIn(4)) {
            record["url"] = (kApplications[application] + u'/' + inside).toStdString();
        } else {
            record["parent"] = "2.com.app" + std::to_string(application);
        }
        if (draw.oneIn(4)) {
            record["executablePath"] = (draw.from(kApplications) + u"/Contents/MacOS/x"_s).toStdString();
        }
        records.push_back(record);
        const std::string file = (kApplications[application] + u'/' + inside).toStdString();
        const macsim::Json plist{{"Label", label.toStdString()}, {"Program", "/x"}, {"RunAtLoad", true}};
        addFileOnce(description, isAgent ? macsim::Json{{"path", file}, {"propertyList", plist}}
                                         : macsim::Json{{"path", file + "/x"}, {"text", label.toStdString()}});
    }
    description["backgroundTasks"]["records"] = records;
    if (draw.oneIn(2)) {
        description["backgroundTasks"]["entryPoints"] = {"SMLoginItemSetUserAllowed_4BTM",
                                                         "SMLaunchdPlistSetUserAllowed_4BTM"};
    }
}

StartupItem randomItem(Draw& draw) {
    StartupItem item;
    item.kind = allStartupItemKinds()[draw.below(static_cast<int>(allStartupItemKinds().size()))];
    item.name = draw.from(kNames);
    item.path = draw.from(kApplications) + (draw.oneIn(2) ? u""_s : u"/Contents/"_s + item.name + u".app"_s);
    item.runsAtStartup = draw.oneIn(4);
    if (item.kind == StartupItemKind::launchAgent || item.kind == StartupItemKind::launchDaemon ||
        (item.kind == StartupItemKind::backgroundAgent && draw.oneIn(2))) {
        item.launchIdentifier = draw.from(kLabels) + u".plist"_s;
        item.id = launchItemId(*item.launchIdentifier);
        item.path = draw.from(kLaunchFolders) + u'/' + *item.launchIdentifier;
    } else if (item.kind == StartupItemKind::backgroundLoginItem) {
        item.launchIdentifier = draw.from(kLabels);
        item.id = backgroundItemId(*item.launchIdentifier);
    } else {
        item.id = item.kind == StartupItemKind::addedApp ? addedItemId(item.path) : loginItemId(item.name, item.path);
    }
    return item;
}

macsim::Json macWithStartupItems(const macsim::Json& loginItems, Draw& draw) {
    macsim::Json description =
        macsim::macDescriptionFromFile(QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/fresh-macbook.json"));
    description["machine"]["caseSensitiveVolume"] = true;
    description["loginItems"] = loginItems;
    for (const QString& application : kApplications) {
        description["files"].push_back(
            {{"path", application.toStdString() + "/Contents/Info.plist"}, {"propertyList", {{"CFBundleName", "x"}}}});
    }
    addLaunchItems(description, draw);
    addBackgroundTasks(description, draw);
    return description;
}

namespace {

/// Makes the Mac.
const QString& madeIn(const QString& macFolder, const macsim::Json& description) {
    macsim::createMac(macFolder, description, macsim::simulatorTools().keys(), QStringLiteral(MACSIM_PROGRAM));
    return macFolder;
}

} // namespace

ProgramOnMac::ProgramOnMac(const macsim::Json& description)
    : host(madeIn(macFolder, description), QStringLiteral(MACSIM_PROGRAM)) {}

void ProgramOnMac::learnBackgroundItems() {
    quorvane::learnBackgroundItems(system);
}

} // namespace quorvane
