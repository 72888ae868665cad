#pragma once

#include "ToolRun.h"
#include "simulator/BackgroundTasks.h"
#include "simulator/PropertyList.h"
#include "simulator/StartupServices.h"
#include "simulator/tools/Launchctl.h"

namespace macsim {

/// A Mac of alex's on which things start by themselves.
class StartupBench : public testing::Test {
protected:
    explicit StartupBench(const char* systemVersion = "15.6")
        : mac({}, {{"userName", "alex"}, {"userId", 501}, {"systemVersion", systemVersion}}) {}

    static QByteArray plist(const QString& label) { return plist(label, {}); }
    static QByteArray plist(const QString& label, PropertyList::Dictionary more) {
        more[QStringLiteral("Label")] = label;
        more[QStringLiteral("Program")] = QString(QStringLiteral("/opt/") + label);
        more[QStringLiteral("RunAtLoad")] = true;
        return xmlPropertyList(more);
    }
    void addRecords(const Json& records) {
        mac.mac.state().update("backgroundTasks", [&records](Json& state) {
            for (const Json& record : records) {
                state["records"].push_back(record);
            }
        });
    }
    Json recordOf(const char* identifier) const {
        const Json records = mac.mac.state().read("backgroundTasks").value("records", Json::array());
        for (const Json& record : records) {
            if (record.value("identifier", std::string()) == identifier) {
                return record;
            }
        }
        return {};
    }
    /// An application with a login item, an agent and a daemon in it, and what it has registered of them.
    void addChat() {
        const QString contents = QStringLiteral("/Applications/Big Chat.app/Contents");
        putFile(mac, contents + QStringLiteral("/MacOS/Big Chat"), "x");
        putFile(mac, contents + QStringLiteral("/Library/LoginItems/Chat Helper.app/Contents/MacOS/Chat Helper"), "x");
        putFile(mac, contents + QStringLiteral("/Library/LaunchAgents/com.chat.agent.plist"),
                plist(QStringLiteral("com.chat.agent")));
        putFile(mac, contents + QStringLiteral("/Library/LaunchDaemons/com.chat.daemon.plist"),
                plist(QStringLiteral("com.chat.daemon")));
        addRecords({{{"uid", 501},
                     {"type", "app"},
                     {"identifier", "2.com.chat"},
                     {"url", "file:///Applications/Big%20Chat.app/"},
                     {"enabled", false}},
                    {{"uid", 501},
                     {"type", "login item"},
                     {"identifier", "4.com.chat.helper"},
                     {"parent", "2.com.chat"},
                     {"url", "Contents/Library/LoginItems/Chat%20Helper.app/"}},
                    {{"uid", 501},
                     {"type", "agent"},
                     {"identifier", "8.com.chat.agent"},
                     {"parent", "2.com.chat"},
                     {"url", "Contents/Library/LaunchAgents/com.chat.agent.plist"}},
                    {{"uid", -2},
                     {"type", "daemon"},
                     {"identifier", "16.com.chat.daemon"},
                     {"parent", "2.com.chat"},
                     {"url", "Contents/Library/LaunchDaemons/com.chat.daemon.plist"}}});
    }
    ToolRun launchctl(const QString& verb, const QString& target, Actor actor = Actor::Root) {
        return runTool(mac, runLaunchctl, {QStringLiteral("launchctl"), verb, target}, actor);
    }

    /// Each service as "label or path: domain[, runs][, starts]", sorted.
    QStringList services() const {
        QStringList lines;
        const std::vector<StartupService> all = startupServices(mac.mac);
        for (const StartupService& service : all) {
            const QString name = service.job.label.isEmpty() ? service.job.path : service.job.label;
            lines.append(name + QStringLiteral(": ") + service.domain.key() +
                         (service.runsNow ? QStringLiteral(", runs") : QString()) +
                         (service.startsAtNextLogin ? QStringLiteral(", starts") : QString()));
        }
        lines.sort();
        return lines;
    }
    /// What runs as a process, by the programs' paths, sorted.
    QStringList programs() const {
        QStringList paths;
        const std::vector<Process> processes = ProcessTable(mac.mac.state()).list();
        for (const Process& process : processes) {
            paths.append(process.path);
        }
        paths.sort();
        return paths;
    }

    SimulatedMacFolder mac;
};

} // namespace macsim
