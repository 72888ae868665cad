#include "fakes/ScriptedSystem.h"

namespace quorvane {

namespace {

class StartupApply : public ScriptedSystem {
protected:
    bool apply(const StartupConfiguration& configuration) {
        return QCoro::waitFor(system.applyStartupConfiguration(configuration));
    }
};

/// One item of each kind that asks for nothing.
StartupConfiguration nothingAskedFor() {
    StartupConfiguration configuration;
    for (const StartupItemKind kind : allStartupItemKinds()) {
        StartupItem item;
        item.id = rawValue(kind);
        item.kind = kind;
        item.runsAtStartup = kind != StartupItemKind::addedApp;
        configuration.items.append(item);
    }
    return configuration;
}

const QString kApplied = u"\nApplying startup configuration...\n"
                         "\nStartup configuration applied.\n"_s;
const QString kRefused = u"\nApplying startup configuration...\n"
                         "  [ERROR] Startup changes can't be applied yet.\n"
                         "\nStartup configuration applied with errors.\n"_s;

} // namespace

// The trace holds commands, scripts and log lines, so each of these also says that nothing was run.

TEST_F(StartupApply, anEmptyConfigurationIsAppliedByDoingNothing) {
    EXPECT_TRUE(apply({}));
    EXPECT_EQ(takeTrace(), kApplied);
}

TEST_F(StartupApply, itemsThatStayAsTheyAreAreAppliedByDoingNothing) {
    EXPECT_TRUE(apply(nothingAskedFor()));
    EXPECT_EQ(takeTrace(), kApplied);
}

TEST_F(StartupApply, whatIsAskedForIsRefused) {
    StartupConfiguration network;
    network.disableNetworkAtStartup = true;
    EXPECT_FALSE(apply(network));
    EXPECT_EQ(takeTrace(), kRefused);

    StartupConfiguration switchedOff = nothingAskedFor();
    switchedOff.items.first().runsAtStartup = false;
    EXPECT_FALSE(apply(switchedOff));
    EXPECT_EQ(takeTrace(), kRefused);
}

TEST_F(StartupApply, aManagedAppThatWouldHaveToGoIsRefusedAndStaysRecorded) {
    const QStringList managed{u"/Applications/X.app"_s};
    defaults.setStringArray(u"QuorvaneManagedStartupAppPaths"_s, managed);
    EXPECT_FALSE(apply({}));
    EXPECT_EQ(takeTrace(), kRefused);
    EXPECT_EQ(defaults.stringArray(u"QuorvaneManagedStartupAppPaths"_s), managed);
}

} // namespace quorvane
