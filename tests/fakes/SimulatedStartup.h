#pragma once

#include "fakes/SimulatedSystem.h"
#include "fakes/StartupSystem.h"
#include "simulator/LaunchdState.h"
#include "startup/apply/StartupVerification.h"

#include <initializer_list>

namespace quorvane {

/// A launch plist, or the information of a bundle, with text values.
inline QByteArray plistText(std::initializer_list<std::pair<QString, QString>> values) {
    QString text = u"<plist version=\"1.0\"><dict>"_s;
    for (const auto& [key, value] : values) {
        text += u"<key>"_s + key + u"</key><string>"_s + value.toHtmlEscaped() + u"</string>"_s;
    }
    return (text + u"</dict></plist>\n"_s).toUtf8();
}

/// A fresh Mac of alex's (501), on which a test puts what runs at login, and the program on it.
class SimulatedStartup : public SimulatedSystem {
protected:
    using SimulatedSystem::SimulatedSystem;

    StartupApplyResult applyStartup(const StartupConfiguration& configuration) {
        return QCoro::waitFor(system->applyStartupChanges(configuration));
    }
    StartupApplyResult switchOff(const QList<StartupItem>& items) {
        StartupConfiguration configuration;
        configuration.items = items;
        return applyStartup(configuration);
    }
    QList<StartupItem> discover() {
        return QCoro::waitFor(system->discoverStartupItems(SystemManager::StartupRefresh::Force));
    }
    bool logs(const QString& line) const { return system->logMessages().contains(line); }

    // ---- What the Mac holds

    void changeState(const char* subject, const std::function<void(macsim::Json&)>& change) const {
        host->mac().state().update(subject, change);
    }
    void addLoginItem(const QString& name, const QString& path) const {
        changeState("loginItems", [&](macsim::Json& items) {
            items.push_back({{"name", name.toStdString()}, {"path", path.toStdString()}, {"hidden", false}});
        });
    }
    QStringList loginNames() const {
        QStringList names;
        const macsim::Json items = host->mac().state().read("loginItems");
        for (const macsim::Json& item : items) {
            names.append(QString::fromStdString(item.at("name").get<std::string>()));
        }
        return names;
    }

    /// Belongs to whom its place says.
    void addFile(const QString& path, const QByteArray& bytes) const {
        const bool isUsers = path.startsWith(u"/Users/"_s) || path.startsWith(u"/Applications/"_s);
        const macsim::Volume disk = volume(isUsers ? macsim::Actor::User : macsim::Actor::Root);
        disk.createFolders(path.left(path.lastIndexOf(u'/')));
        disk.write(path, bytes);
    }
    /// Gives a tree to whom its place doesn't imply.
    void giveToRoot(const QString& path) const {
        const macsim::Volume root = volume(macsim::Actor::Root);
        root.setOwner(path, macsim::Actor::Root);
        if (root.kind(path) == macsim::Volume::Kind::Folder) {
            for (const QString& name : root.list(path)) {
                giveToRoot(path + u'/' + name);
            }
        }
    }
    void giveToUser(const QString& path) const {
        const macsim::Volume root = volume(macsim::Actor::Root);
        root.setOwner(path, macsim::Actor::User);
        if (root.kind(path) == macsim::Volume::Kind::Folder) {
            for (const QString& name : root.list(path)) {
                giveToUser(path + u'/' + name);
            }
        }
    }
    /// A plist in a launch folder, its job loaded.
    void addLaunchItem(const QString& path, const QString& label) const {
        addFile(path, plistText({{u"Label"_s, label}, {u"Program"_s, u"/usr/bin/true"_s}}));
        const std::string domain = path.contains(u"/LaunchDaemons/"_s) ? "system" : "gui/501";
        changeState("launchd", [&](macsim::Json& launchd) {
            launchd["jobs"][domain][label.toStdString()] = {{"path", path.toStdString()}, {"pid", nullptr}};
        });
    }
    void addBackgroundTask(const macsim::Json& record) const {
        changeState("backgroundTasks", [&](macsim::Json& tasks) { tasks["records"].push_back(record); });
    }
    /// "/Applications/{name}.app" with the helper "{name} Helper.app", which is {identifier}.helper, and both records.
    QString addApplicationWithHelper(const QString& name, const QString& identifier) const {
        const QString application = u"/Applications/"_s + name + u".app"_s;
        const QString helper = application + u"/Contents/Library/LoginItems/"_s + name + u" Helper.app"_s;
        addFile(application + u"/Contents/Info.plist"_s, plistText({{u"CFBundleIdentifier"_s, identifier}}));
        addFile(helper + u"/Contents/Info.plist"_s, plistText({{u"CFBundleIdentifier"_s, identifier + u".helper"_s}}));
        addFile(helper + u"/Contents/MacOS/helper"_s, "helper");
        addBackgroundTask({{"uid", 501},
                           {"name", name.toStdString()},
                           {"type", "app"},
                           {"identifier", "2." + identifier.toStdString()},
                           {"url", "file://" + QString(application).replace(u' ', u"%20"_s).toStdString() + "/"}});
        addBackgroundTask({{"uid", 501},
                           {"name", name.toStdString() + " Helper"},
                           {"type", "login item"},
                           {"identifier", "4." + identifier.toStdString() + ".helper"},
                           {"parent", "2." + identifier.toStdString()},
                           {"url", "Contents/Library/LoginItems/" + name.toStdString() + " Helper.app"}});
        return helper;
    }

    bool isLoaded(const QString& label, macsim::LaunchdDomain domain = kSession) const {
        return macsim::LaunchdState(host->mac()).job(domain, label).has_value();
    }
    /// The labels that launchd won't load again in the user's session.
    QStringList disabledLabels() const {
        QStringList labels;
        for (const auto& [label, isDisabled] : macsim::LaunchdState(host->mac()).overrides(kSession)) {
            if (isDisabled) {
                labels.append(label);
            }
        }
        labels.sort();
        return labels;
    }
    /// What root has run since the Mac was made, the tools as lines.
    QStringList commandsOfRoot() const {
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

    /// From when a line that begins so is logged, prompts get this answer.
    void answerAfter(const QString& beginning, macsim::Authorization answer) {
        QObject::connect(system.get(), &SystemManager::messageLogged, [this, beginning, answer](const QString& line) {
            if (line.startsWith(beginning)) {
                authorization.setAnswer(answer);
            }
        });
    }

    static constexpr macsim::LaunchdDomain kSession{macsim::LaunchdDomain::Kind::Gui, 501};
    static constexpr macsim::LaunchdDomain kSystemDomain{macsim::LaunchdDomain::Kind::System, 0};
};

} // namespace quorvane
