#include "startup/items/StartupChanges.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

StartupConfiguration withItem(StartupItemKind kind, bool runs) {
    StartupItem item;
    item.id = u"item"_s;
    item.name = u"Item"_s;
    item.kind = kind;
    item.runsAtStartup = runs;
    StartupConfiguration configuration;
    configuration.items.append(item);
    return configuration;
}

TEST(StartupChanges, anEmptyConfigurationAsksForNothing) {
    EXPECT_FALSE(hasStartupChanges({}));
}

TEST(StartupChanges, aSwitchedOffItemIsAChangeAndARunningOneIsNone) {
    for (const StartupItemKind kind : allStartupItemKinds()) {
        if (kind != StartupItemKind::addedApp) {
            SCOPED_TRACE(rawValue(kind).toStdString());
            EXPECT_TRUE(hasStartupChanges(withItem(kind, false)));
            EXPECT_FALSE(hasStartupChanges(withItem(kind, true)));
        }
    }
}

TEST(StartupChanges, anAddedAppIsAChangeWhileItRuns) {
    EXPECT_TRUE(hasStartupChanges(withItem(StartupItemKind::addedApp, true)));
    EXPECT_FALSE(hasStartupChanges(withItem(StartupItemKind::addedApp, false)));
}

TEST(StartupChanges, oneItemAmongManyIsEnough) {
    StartupConfiguration configuration = withItem(StartupItemKind::loginApp, true);
    configuration.items += withItem(StartupItemKind::launchDaemon, true).items;
    EXPECT_FALSE(hasStartupChanges(configuration));
    configuration.items += withItem(StartupItemKind::launchAgent, false).items;
    EXPECT_TRUE(hasStartupChanges(configuration));
}

TEST(StartupChanges, theNetworkOrAServiceAloneIsAChange) {
    StartupConfiguration network;
    network.disableNetworkAtStartup = true;
    EXPECT_TRUE(hasStartupChanges(network));
    StartupConfiguration service;
    service.disabledCloudSyncAtStartup = {CloudSyncService::dropbox};
    EXPECT_TRUE(hasStartupChanges(service));
}

} // namespace
} // namespace quorvane
