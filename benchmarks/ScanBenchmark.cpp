// What a scan over many profiles costs against one over few. The tools of the simulated Mac are processes, as a Mac's are.

#include "core/NotificationCenter.h"
#include "platform/simulated/SimulatedHost.h"
#include "profiles/UnifiedProfile.h"
#include "simulator/MacDescription.h"
#include "simulator/tools/Registry.h"
#include "system/SystemManager.h"

#include <QCoroTask>
#include <QTemporaryDir>

#include <benchmark/benchmark.h>

namespace quorvane {

namespace {

using namespace Qt::StringLiterals;

constexpr int kScanRepetitions = 3;

StartupItem mailOff() {
    StartupItem item;
    item.id = u"login:Mail"_s;
    item.name = u"Mail"_s;
    item.kind = StartupItemKind::loginApp;
    item.runsAtStartup = false;
    return item;
}

/// Profiles of which none fits; every second one looks at what runs at login, and every fourth at the network.
QList<UnifiedProfile> profilesThatDoNotFit(int count) {
    QList<UnifiedProfile> profiles;
    for (int number = 0; number < count; ++number) {
        UnifiedProfile profile;
        profile.id = QUuid::createUuid();
        profile.name = u"Profile %1"_s.arg(number);
        profile.settings.appNap = true;
        profile.settings.updates = number % 3 == 0;
        profile.settings.cleanReboot = number % 5 == 0;
        if (number % 2 == 0) {
            profile.startup.items = {mailOff()};
        }
        profile.startup.disableNetworkAtStartup = number % 4 == 0;
        profiles.append(profile);
    }
    return profiles;
}

void scanOver(benchmark::State& state, int count) {
    const QString description = QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/fresh-macbook.json");
    const QString program = QStringLiteral(MACSIM_PROGRAM);
    QTemporaryDir folder;
    const QString mac = folder.path() + u"/Mac"_s;
    macsim::createMac(mac, macsim::macDescriptionFromFile(description), macsim::simulatorTools().keys(), program);
    AuthorizationPolicy authorization(macsim::Authorization::Deny);
    SimulatedHost simulated(mac, authorization, {program, {}, {}});
    NotificationCenter notifications;
    SystemManager system(simulated.host(), notifications);
    const QList<UnifiedProfile> profiles = profilesThatDoNotFit(count);
    for (auto _ : state) {
        system.invalidateStartupCaches();
        const auto match = QCoro::waitFor(system.scanCurrentSystem(profiles));
        if (match && match->kind == MatchedConfigurationKind::savedProfile) {
            state.SkipWithError("a profile fits");
        }
    }
}

void scanOverTenProfiles(benchmark::State& state) {
    scanOver(state, 10);
}

void scanOverAThousandProfiles(benchmark::State& state) {
    scanOver(state, 1000);
}

BENCHMARK(scanOverTenProfiles)->Repetitions(kScanRepetitions)->UseRealTime()->Unit(benchmark::kMillisecond);
BENCHMARK(scanOverAThousandProfiles)->Repetitions(kScanRepetitions)->UseRealTime()->Unit(benchmark::kMillisecond);

} // namespace

} // namespace quorvane
