// What flows come to that end after the program has begun to quit.

#include "fakes/ReadingLines.h"
#include "fakes/StartupSystem.h"

#include "maintenance/MaintenanceSelection.h"
#include "network/NetworkOperations.h"
#include "profiles/UnifiedProfile.h"
#include "snapshots/RestoreBaseline.h"
#include "startup/apply/StartupVerification.h"
#include "startup/login/LoginItemScripts.h"

#include <functional>

namespace quorvane {

namespace {

/// A Mac with something for every flow to do, on which the ports are shut down when the n-th command has been asked for.
/// Whatever is asked for after that is answered as if nothing had happened.
class QuittingMac : public StartupSystem {
public:
    explicit QuittingMac(qsizetype lastCommand)
        : m_left(lastCommand) {
        login = {{u"Mail"_s, u"/Applications/Mail.app"_s, false}, {u"Live"_s, kLive, false}};
        system.recordManagedStartupAppPath(kLive);
        files.addFile(u"/Users/alex/Library/LaunchAgents/com.example.agent.plist"_s, "plist");
        files.addFile(u"/Users/alex/.Trash/old"_s, "old");
        commands.print(u"networksetup -listallnetworkservices"_s, "An asterisk (*) denotes\nWi-Fi\n");
        commands.print(u"/usr/sbin/networksetup -listallnetworkservices"_s, "An asterisk (*) denotes\nWi-Fi\n");
        commands.print(u"/usr/sbin/networksetup -getnetworkserviceenabled Wi-Fi"_s, "Disabled\n");
        for (const QString& line : reading::kTweaksOff) {
            commands.fail(line, 1);
        }
        commands.print(reading::kPower, " standby 1\n disksleep 10\n sleep 1\n sms 1\n");
        commands.print(reading::kSpotlight, reading::indexing("Indexing enabled. "));
        commands.print(reading::kSpotlightOfAll, reading::indexing("Indexing enabled. "));
        setAutomaticBackups(true);
        commands.print(reading::kSounds, "0\n"); // the one tweak of these flows is in force
        for (const QString& line : reading::kAppRestoration) {
            commands.print(line, "1\n");
        }
        QCoro::waitFor(system.captureSystemSnapshot({}, MasterArchive::No));
        commands.respond = [this, respond = commands.respond](const QStringList& arguments) {
            ++commandCount;
            if (--m_left == 0) {
                commands.shutDown();
            }
            const bool isForFinder = arguments.last().startsWith(u"tell application \"Finder\""_s);
            return isForFinder ? ScriptedCommandLauncher::succeeded({}) : respond(arguments);
        };
    }

    SystemManager& manager() { return system; }
    static PerformanceSettings muted() {
        PerformanceSettings settings;
        settings.uiSounds = true;
        return settings;
    }
    static StartupConfiguration startup() {
        StartupConfiguration configuration;
        configuration.items = {loginAppOff(u"Mail"_s), launchAgentOff(u"com.example.agent.plist"_s),
                               StartupItem::fromLaunchItem({u"Deck"_s, u"/Applications/Deck.app"_s, false})};
        configuration.disableNetworkAtStartup = true;
        return configuration;
    }
    static UnifiedProfile profile() {
        UnifiedProfile made;
        made.id = QUuid::createUuid();
        made.name = u"Live"_s;
        made.settings = muted();
        made.startup = startup();
        return made;
    }
    static SystemSnapshot snapshot() { return {}; }

    qsizetype commandCount = 0;

    inline static const QString kLive = u"/Applications/Live.app"_s;

private:
    void TestBody() override {}

    qsizetype m_left;
};

using Mac = QuittingMac;
using Flow = std::function<bool(SystemManager& system)>;

bool ended(QCoro::Task<bool> flow) {
    return QCoro::waitFor(std::move(flow));
}

bool ended(QCoro::Task<QList<bool>> flow) {
    return !QCoro::waitFor(std::move(flow)).contains(false);
}

bool ended(QCoro::Task<RestoreOutcome> flow) {
    return QCoro::waitFor(std::move(flow)).succeeded;
}

const QList<std::pair<const char*, Flow>>& flows() {
    static const QList<std::pair<const char*, Flow>> all{
        {"tweaks", [](auto& system) { return ended(system.applyPerformanceTweaks(Mac::muted())); }},
        {"sync",
         [](auto& system) {
             return ended(system.syncPerformanceTweaks(Mac::muted(), SystemManager::VerifyAfterSync::No));
         }},
        {"sync and verify",
         [](auto& system) {
             return ended(system.syncPerformanceTweaks(Mac::muted(), SystemManager::VerifyAfterSync::Yes));
         }},
        {"undo", [](auto& system) { return ended(system.undoPerformanceTweaks()); }},
        {"profile", [](auto& system) { return ended(system.applyProfile(Mac::profile())); }},
        {"clean reboot", [](auto& system) { return ended(system.applyCleanReboot({})); }},
        {"capture",
         [](auto& system) { return QCoro::waitFor(system.captureSystemSnapshot({}, MasterArchive::No)).isSaved; }},
        {"restore", [](auto& system) { return ended(system.restoreFromSnapshot(Mac::snapshot())); }},
        {"revert", [](auto& system) { return ended(system.revertPerformanceTweaks()); }},
        {"reinstate", [](auto& system) { return ended(system.reinstateSystem()); }},
        {"undo tweaks", [](auto& system) { return ended(system.undoTweaks()); }},
        {"default", [](auto& system) { return ended(system.restoreDefault()); }},
        {"reinstate the whole", [](auto& system) { return ended(system.reinstateWholeSystem()); }},
        {"startup", [](auto& system) { return ended(system.applyStartupConfiguration(Mac::startup())); }},
        {"startup changes",
         [](auto& system) { return QCoro::waitFor(system.applyStartupChanges(Mac::startup())).applySucceeded; }},
        {"remove by name",
         [](auto& system) {
             return ended(system.removeLoginItems({{u"Mail"_s, {}}}));
         }},
        {"remove by path",
         [](auto& system) {
             return ended(system.removeLoginItems({{{}, Mac::kLive}}));
         }},
        {"add",
         [](auto& system) {
             return ended(system.addLoginItems({{u"/Applications/Deck.app"_s, false}}));
         }},
        {"disable login items",
         [](auto& system) { return ended(system.disableLoginItems(QStringList(u"Mail"_s), {})); }},
        {"disable launch items",
         [](auto& system) { return ended(system.disableLaunchItems({u"com.example.agent.plist"_s}, {})); }},
        {"remove applications", [](auto& system) { return ended(system.removeManagedStartupApps({})); }},
        {"configure applications",
         [](auto& system) {
             return ended(system.configureStartupApps({{u"Deck"_s, u"/Applications/Deck.app"_s, false}}));
         }},
        {"network off", [](auto& system) { return ended(system.disableAllNetworkConnections()); }},
        {"network",
         [](auto& system) {
             return QCoro::waitFor(system.runNetworkOperations({false, false, true, false})).success;
         }},
        {"maintenance",
         [](auto& system) {
             return QCoro::waitFor(system.runMaintenance({false, true, false})).succeeded;
         }},
    };
    return all;
}

} // namespace

TEST(QuittingFlows, noneHasSucceededThatEndsWhileTheProgramQuits) {
    for (const auto& [name, flow] : flows()) {
        SCOPED_TRACE(name);
        QuittingMac whole(0);
        EXPECT_TRUE(flow(whole.manager())) << "without a quit";
        ASSERT_GT(whole.commandCount, 0);
        for (qsizetype last = 1; last <= whole.commandCount; ++last) {
            QuittingMac mac(last);
            EXPECT_FALSE(flow(mac.manager())) << "ports shut down at command " << last;
        }
    }
}

} // namespace quorvane
