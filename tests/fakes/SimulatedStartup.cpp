#include "fakes/SimulatedStartup.h"

#include "fakes/MacSetUp.h"

namespace quorvane {

QByteArray plistText(std::initializer_list<std::pair<QString, QString>> values) {
    QString text = u"<plist version=\"1.0\"><dict>"_s;
    for (const auto& [key, value] : values) {
        text += u"<key>"_s + key + u"</key><string>"_s + value.toHtmlEscaped() + u"</string>"_s;
    }
    return (text + u"</dict></plist>\n"_s).toUtf8();
}

QByteArray startingPlist(const QString& label, const QString& program) {
    return plistText({{u"Label"_s, label}, {u"Program"_s, program}, {u"StartInterval"_s, u"3600"_s}});
}

StartupApplyResult SimulatedStartup::applyStartup(const StartupConfiguration& configuration) {
    return QCoro::waitFor(system->applyStartupChanges(configuration));
}

StartupApplyResult SimulatedStartup::switchOff(const QList<StartupItem>& items) {
    StartupConfiguration configuration;
    configuration.items = items;
    return applyStartup(configuration);
}

QList<StartupItem> SimulatedStartup::discover() {
    return QCoro::waitFor(system->discoverStartupItems(SystemManager::StartupRefresh::Force));
}

bool SimulatedStartup::logs(const QString& line) const {
    return system->logMessages().contains(line);
}

void SimulatedStartup::changeState(const char* subject, const std::function<void(macsim::Json&)>& change) const {
    host->mac().state().update(subject, change);
}

void SimulatedStartup::addLoginItem(const QString& name, const QString& path) const {
    changeState("loginItems", [&](macsim::Json& items) {
        items.push_back({{"name", name.toStdString()}, {"path", path.toStdString()}, {"hidden", false}});
    });
}

QStringList SimulatedStartup::loginNames() const {
    QStringList names;
    const macsim::Json items = host->mac().state().read("loginItems");
    for (const macsim::Json& item : items) {
        names.append(QString::fromStdString(item.at("name").get<std::string>()));
    }
    return names;
}

void SimulatedStartup::addFile(const QString& path, const QByteArray& bytes) const {
    macsim::installFile(host->mac(), path, bytes);
}

void SimulatedStartup::giveToRoot(const QString& path) const {
    const macsim::Volume root = volume(macsim::Actor::Root);
    root.setOwner(path, macsim::Actor::Root);
    if (root.kind(path) == macsim::Volume::Kind::Folder) {
        for (const QString& name : root.list(path)) {
            giveToRoot(path + u'/' + name);
        }
    }
}

void SimulatedStartup::giveToUser(const QString& path) const {
    const macsim::Volume root = volume(macsim::Actor::Root);
    root.setOwner(path, macsim::Actor::User);
    if (root.kind(path) == macsim::Volume::Kind::Folder) {
        for (const QString& name : root.list(path)) {
            giveToUser(path + u'/' + name);
        }
    }
}

void SimulatedStartup::addLaunchItem(const QString& path, const QString& label) const {
    addFile(path, startingPlist(label, u"/usr/bin/true"_s));
    const std::string domain = path.contains(u"/LaunchDaemons/"_s) ? "system" : "gui/501";
    changeState("launchd", [&](macsim::Json& launchd) {
        launchd["jobs"][domain][label.toStdString()] = {{"path", path.toStdString()}, {"pid", nullptr}};
    });
}

void SimulatedStartup::addBackgroundTask(const macsim::Json& record) const {
    changeState("backgroundTasks", [&](macsim::Json& tasks) { tasks["records"].push_back(record); });
}

QString SimulatedStartup::addApplicationWithHelper(const QString& name, const QString& identifier) const {
    const QString application = u"/Applications/"_s + name + u".app"_s;
    const QString helper = application + u"/Contents/Library/LoginItems/"_s + name + u" Helper.app"_s;
    addFile(application + u"/Contents/Info.plist"_s, plistText({{u"CFBundleIdentifier"_s, identifier}}));
    addFile(helper + u"/Contents/Info.plist"_s, plistText({{u"CFBundleIdentifier"_s, identifier + u".helper"_s}}));
    addFile(helper + u"/Contents/MacOS/helper"_s, "helper");
    addBackgroundTask({{"uid", 501},
                       {"name", name.toStdString()},
                       {"type", "app"},
                       {"identifier", "2." + identifier.toStdString()},
                       {"enabled", false},
                       {"url", "file://" + QString(application).replace(u' ', u"%20"_s).toStdString() + "/"}});
    addBackgroundTask({{"uid", 501},
                       {"name", name.toStdString() + " Helper"},
                       {"type", "login item"},
                       {"identifier", "4." + identifier.toStdString() + ".helper"},
                       {"parent", "2." + identifier.toStdString()},
                       {"url", "Contents/Library/LoginItems/" + name.toStdString() + " Helper.app"}});
    return helper;
}

bool SimulatedStartup::isLoaded(const QString& label, macsim::LaunchdDomain domain) const {
    return macsim::LaunchdState(host->mac()).job(domain, label).has_value();
}

QStringList SimulatedStartup::disabledLabels() const {
    QStringList labels;
    for (const auto& [label, isDisabled] : macsim::LaunchdState(host->mac()).overrides(kSession)) {
        if (isDisabled) {
            labels.append(label);
        }
    }
    labels.sort();
    return labels;
}

QStringList SimulatedStartup::commandsOfRoot() const {
    QStringList lines;
    QFile file(macFolder() + macsim::kStateFolder.toString() + u"/journal.jsonl"_s);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly));
    while (!file.atEnd()) {
        const QByteArray line = file.readLine();
        const macsim::Json record = macsim::Json::parse(line.cbegin(), line.cend());
        if (record.value("user", std::string()) == "root") {
            QStringList arguments;
            for (const macsim::Json& argument : record.at("arguments")) {
                arguments.append(QString::fromStdString(argument.get<std::string>()));
            }
            lines.append(commandLine(arguments));
        }
    }
    return lines;
}

void SimulatedStartup::answerAfter(const QString& beginning, macsim::Authorization answer) {
    QObject::connect(system.get(), &SystemManager::messageLogged, [this, beginning, answer](const QString& line) {
        if (line.startsWith(beginning)) {
            authorization.setAnswer(answer);
        }
    });
}

} // namespace quorvane
