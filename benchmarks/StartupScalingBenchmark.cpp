// How discovery and what decides by it grow with what runs at login.

#include "core/NotificationCenter.h"
#include "platform/CommandLauncher.h"
#include "platform/simulated/SimulatedHost.h"
#include "simulator/MacDescription.h"
#include "simulator/tools/Registry.h"
#include "startup/apply/StartupTargets.h"
#include "startup/background/BackgroundDisableTarget.h"
#include "startup/background/BackgroundItemPermission.h"
#include "startup/background/BackgroundTaskDump.h"
#include "startup/login/LoginItemScripts.h"
#include "system/SystemManager.h"

#include <QCoroTask>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

#include <cstdio>
#include <memory>

namespace quorvane {

namespace {

using namespace Qt::StringLiterals;

constexpr int kSmallDump = 2000;
constexpr int kLargeDump = 20000;
constexpr int kStartupRepetitions = 3;
constexpr quint32 kUser = 501;
const QString kNoProgram = u"/nowhere/macsim"_s; // no tool of the simulated Mac is started

/// A dump as macOS prints it: every tenth record is an application, and carries the nine that follow.
QByteArray dumpOf(int records) {
    QByteArray dump = "========================\n Records for UID 501 : 00000000-0000-0000-0000-000000000501\n"
                      "========================\n\n Items:\n\n";
    for (int number = 1; number <= records; ++number) {
        const QByteArray n = QByteArray::number(number);
        const QByteArray parent = QByteArray::number(number - number % 10);
        const bool isApplication = number % 10 == 0;
        dump += " #" + n + ":\n                 UUID: 00000000-0000-0000-0000-" + n.rightJustified(12, '0') +
                "\n                 Name: Helper " + n + "\n       Developer Name: Example\n                 Type: " +
                (isApplication ? "app (0x2)" : "agent (0x8)") +
                "\n                Flags: [  ] (0)\n          Disposition: [enabled, allowed, notified] (0xb)\n"
                "           Identifier: " +
                (isApplication ? "2" : "8") + ".com.example.h" + n +
                "\n                  URL: file:///Applications/Example%20" + n +
                ".app/\n           Generation: 1\n    Bundle Identifier: com.example.h" + n +
                (isApplication ? QByteArray() : "\n    Parent Identifier: 2.com.example.h" + parent) + "\n\n";
    }
    return dump;
}

/// What System Events prints.
QByteArray loginItemsOf(int count) {
    QByteArray output;
    for (int number = 0; number < count; ++number) {
        const QByteArray n = QByteArray::number(number);
        output += "App " + n + "|/Applications/App " + n + ".app|false\n";
    }
    return output;
}

/// Answers the two questions that discovery asks of tools.
class CannedTools final : public CommandLauncher {
public:
    QByteArray loginItems;
    QByteArray noOverrides = "disabled services = {\n}\n";

    QFuture<CommandOutcome> run(QStringList arguments, OutputCapture) override {
        CommandOutcome outcome;
        outcome.ending = CommandOutcome::Ending::Exited;
        outcome.standardOutput = arguments.first() == u"/usr/bin/osascript"_s ? loginItems : noOverrides;
        return QtFuture::makeReadyFuture(outcome);
    }
    void shutDown() override {}
    bool isShutDown() const override { return false; }
};

/// A simulated Mac with a number of launch plists, XML and binary by turns.
class MacWithLaunchPlists {
public:
    explicit MacWithLaunchPlists(int plists) {
        macsim::Json description = {{"machine", {{"userName", "alex"}, {"userId", 501}}}};
        for (int number = 0; number < plists; ++number) {
            const std::string n = std::to_string(number);
            const std::string folder =
                number % 2 == 0 ? "/Users/alex/Library/LaunchAgents/" : "/Library/LaunchDaemons/";
            description["files"].push_back({{"path", folder + "com.example.job" + n + ".plist"},
                                            {"propertyList",
                                             {{"Label", "com.example.job" + n},
                                              {"ProgramArguments", {"/usr/local/bin/job", n}},
                                              {"RunAtLoad", true}}},
                                            {"format", number % 3 == 0 ? "binary" : "xml"}});
        }
        macsim::createMac(folder(), description, macsim::simulatorTools().keys(), kNoProgram);
    }

    QString folder() const { return m_folder.path() + u"/Mac"_s; }

private:
    QTemporaryDir m_folder;
};

StartupConfiguration configurationWith(int runningItems) {
    StartupConfiguration configuration;
    for (int number = 0; number < runningItems; ++number) {
        StartupItem item;
        item.name = u"Kept %1"_s.arg(number);
        item.id = loginItemId(item.name, {});
        configuration.items.append(item);
    }
    return configuration;
}

void parseDump(benchmark::State& state) {
    const QString dump = QString::fromUtf8(dumpOf(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseBackgroundTaskDump(dump, kUser));
    }
}

/// As it comes from AppleScript.
void parseDumpWithReturns(benchmark::State& state) {
    const QByteArray dump = dumpOf(static_cast<int>(state.range(0))).replace("\n", "\r\n");
    const QString text = QString::fromUtf8(dump);
    for (auto _ : state) {
        benchmark::DoNotOptimize(parseBackgroundTaskDump(text, kUser));
    }
}

void selectBackgroundItems(benchmark::State& state) {
    const auto items = parseBackgroundTaskDump(QString::fromUtf8(dumpOf(static_cast<int>(state.range(0)))), kUser);
    const StartupConfiguration configuration = configurationWith(30);
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            nonPermittedBackgroundItems(items, configuration.permittedLoginNames(), configuration));
    }
}

void readLoginItems(benchmark::State& state) {
    const QString output = QString::fromUtf8(loginItemsOf(static_cast<int>(state.range(0))));
    for (auto _ : state) {
        benchmark::DoNotOptimize(parsedLoginItems(output));
    }
}

/// The whole of it: login items, launch plists on a disk and background items. The argument is the number of records;
/// there are a quarter as many plists and a tenth as many login items.
void discover(benchmark::State& state) {
    const int records = static_cast<int>(state.range(0));
    const MacWithLaunchPlists mac(records / 4);
    AuthorizationPolicy authorization(macsim::Authorization::Deny);
    SimulatedHost simulated(mac.folder(), authorization, {kNoProgram, {}, {}});
    CannedTools tools;
    const QByteArray dump = dumpOf(records) + "Quorvane: end of the list\n";
    tools.loginItems = loginItemsOf(records / 10);
    const Host ports = simulated.host();
    const Host host{tools,          ports.scripts,       ports.files,      ports.defaults,
                    ports.machine,  ports.propertyLists, ports.bundles,    ports.backgroundTaskPermissions,
                    ports.cloud,    ports.clock,         ports.keychain,   ports.biometrics,
                    ports.displays, ports.notifications, ports.filePanels, ports.loginService};
    for (auto _ : state) {
        NotificationCenter notifications;
        SystemManager system(host, notifications);
        ports.files.writeAtomically(system.backgroundDumpPath(), dump);
        QCoro::waitFor(system.loadPrivilegedBackgroundDump());
        const auto items = QCoro::waitFor(system.discoverStartupItems(SystemManager::StartupRefresh::UseCache));
        if (items.size() < records) {
            state.SkipWithError("items are missing");
        }
    }
}

BENCHMARK(parseDump)->Arg(kSmallDump)->Arg(kLargeDump)->Repetitions(kStartupRepetitions)->Unit(benchmark::kMillisecond);
BENCHMARK(parseDumpWithReturns)
    ->Arg(kSmallDump)
    ->Arg(kLargeDump)
    ->Repetitions(kStartupRepetitions)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(selectBackgroundItems)
    ->Arg(kSmallDump)
    ->Arg(kLargeDump)
    ->Repetitions(kStartupRepetitions)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(readLoginItems)->Arg(200)->Arg(2000)->Repetitions(kStartupRepetitions)->Unit(benchmark::kMicrosecond);
BENCHMARK(discover)
    ->Arg(kSmallDump)
    ->Arg(kLargeDump)
    ->Repetitions(kStartupRepetitions)
    ->UseRealTime()
    ->Unit(benchmark::kMillisecond);

} // namespace

} // namespace quorvane
