#include "simulator/tools/Launchctl.h"

#include "ToolRun.h"
#include "simulator/ProcessTable.h"
#include "simulator/PropertyList.h"
#include "simulator/SessionEnvironment.h"

#include <stdexcept>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

const QString kAgent = u"/Users/alex/Library/LaunchAgents/file-name.plist"_s;
const QString kIdleAgent = u"/Users/alex/Library/LaunchAgents/idle.plist"_s;
const QString kDaemon = u"/Library/LaunchDaemons/com.x.daemon.plist"_s;
const QString kSharedAgent = u"/Library/LaunchAgents/com.x.shared.plist"_s;
const QString kSystemAgent = u"/System/Library/LaunchAgents/com.apple.notificationcenterui.plist"_s;

QByteArray plist(const QString& label, const QString& program, bool keepAlive) {
    PropertyList::Dictionary job{{u"Label"_s, label}, {u"KeepAlive"_s, keepAlive}};
    job[u"ProgramArguments"_s] = PropertyList::Array{program, u"--quiet"_s};
    return binaryPropertyList(job);
}

class Launchctl : public testing::Test {
protected:
    explicit Launchctl(const char* systemVersion = "14.7")
        : mac({}, {{"userName", "alex"}, {"userId", 501}, {"systemVersion", systemVersion}}) {}

    void SetUp() override {
        putFile(mac, kAgent, plist(u"com.x.agent"_s, u"/opt/x/agent"_s, true));
        putFile(mac, kIdleAgent, plist(u"com.x.idle"_s, u"/opt/x/idle"_s, false));
        putFile(mac, kDaemon, plist(u"com.x.daemon"_s, u"/opt/x/daemon"_s, true));
        putFile(mac, kSharedAgent, plist(u"com.x.shared"_s, u"/opt/x/shared"_s, true));
        putFile(mac, kSystemAgent, plist(u"com.apple.notificationcenterui"_s, u"/System/NotificationCenter"_s, true));
        setState(mac, "processes",
                 Json::array({{{"pid", 400},
                               {"name", "NotificationCenter"},
                               {"uid", 501},
                               {"label", "com.apple.notificationcenterui"},
                               {"keepAlive", true}}}));
        setState(mac, "launchd",
                 {{"jobs",
                   {{"gui/501",
                     {{"com.apple.notificationcenterui",
                       {{"path", kSystemAgent.toStdString()}, {"pid", 400}, {"lastExitStatus", 0}}}}},
                    {"system", Json::object()}}}});
    }

    ToolRun run(const QStringList& words, Actor actor = Actor::User) {
        return runTool(mac, runLaunchctl, QStringList{u"launchctl"_s} + words, actor);
    }
    Json launchd() const { return mac.mac.state().read("launchd"); }
    bool isLoaded(const char* domain, const char* label) const {
        const Json jobs = launchd()["jobs"];
        return jobs.contains(domain) && jobs[domain].contains(label);
    }
    /// "true", "false", or "null" where there is no override.
    std::string override(const char* store, const char* label) const {
        const Json state = launchd();
        const Json all = state.value("disabled", Json::object()).value(store, Json::object());
        return all.value(label, Json()).dump();
    }
    QStringList running() const {
        QStringList names;
        for (const Process& process : ProcessTable(mac.mac.state()).list()) {
            names.append(process.name);
        }
        return names;
    }

    SimulatedMacFolder mac;
};

/// One on which an override of the system's own agent holds, whose label isn't the name of its file.
class LaunchctlThatKeepsApplesOverrides : public Launchctl {
protected:
    void SetUp() override {
        Launchctl::SetUp();
        putFile(mac, kSystemAgent,
                plist(u"com.apple.notificationcenterui.agent"_s, u"/System/NotificationCenter"_s, true));
        setState(mac, "processes",
                 Json::array({{{"pid", 400},
                               {"name", "NotificationCenter"},
                               {"uid", 501},
                               {"label", kApplesLabel},
                               {"keepAlive", true}}}));
        setState(mac, "launchd",
                 {{"jobs", {{"gui/501", {{kApplesLabel, {{"path", kSystemAgent.toStdString()}, {"pid", 400}}}}}}},
                  {"appleOverrides", "kept"}});
    }

    static constexpr const char* kApplesLabel = "com.apple.notificationcenterui.agent";
    const QString target = u"gui/501/com.apple.notificationcenterui.agent"_s;
};

class LaunchctlOnTahoe : public Launchctl {
protected:
    LaunchctlOnTahoe()
        : Launchctl("26.1") {}
};

class LaunchctlOnSequoia : public Launchctl {
protected:
    LaunchctlOnSequoia()
        : Launchctl("15.6") {}
};

class LaunchctlOnMonterey : public Launchctl {
protected:
    LaunchctlOnMonterey()
        : Launchctl("12.7") {}
};

} // namespace

// bootstrap and bootout

TEST_F(Launchctl, bootstrapLoadsByTheLabelInTheFileAndStartsTheJob) {
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}), kSilent);
    EXPECT_EQ(running(), (QStringList{u"NotificationCenter"_s, u"agent"_s}));
    const Process agent = ProcessTable(mac.mac.state()).list().at(1);
    EXPECT_EQ(launchd()["jobs"]["gui/501"]["com.x.agent"],
              (Json{{"path", kAgent.toStdString()}, {"pid", agent.pid}, {"lastExitStatus", nullptr}}));
    EXPECT_EQ(agent.label, u"com.x.agent"_s);
    EXPECT_EQ(agent.userId, 501);
    EXPECT_TRUE(agent.keepAlive);
}

TEST_F(Launchctl, aJobThatDoesNotRunAtLoadHasNoProcess) {
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kIdleAgent}), kSilent);
    EXPECT_TRUE(isLoaded("gui/501", "com.x.idle"));
    EXPECT_EQ(running(), QStringList{u"NotificationCenter"_s});
}

TEST_F(Launchctl, bootstrapFailsForWhatCannotBeLoaded) {
    const ToolRun failed{5, {}, "Bootstrap failed: 5: Input/output error\n"};
    ASSERT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}), kSilent);
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}), failed);
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, u"/missing.plist"_s}), failed);
    putFile(mac, u"/Users/alex/broken.plist"_s, "<plist><dict><key>Label");
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, u"broken.plist"_s}), failed);
    putFile(mac, u"/Users/alex/nameless.plist"_s, xmlPropertyList(PropertyList::Dictionary{{u"RunAtLoad"_s, true}}));
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, u"nameless.plist"_s}), failed);
    ASSERT_EQ(run({u"disable"_s, u"gui/501/com.x.idle"_s}), kSilent);
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kIdleAgent}), failed);
    ASSERT_EQ(run({u"enable"_s, u"user/501/com.x.idle"_s}), kSilent);
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kIdleAgent}), kSilent);
}

TEST_F(Launchctl, aPlistsOwnDisabledKeyCountsWithoutAnOverride) {
    putFile(mac, u"/Users/alex/off.plist"_s,
            xmlPropertyList(PropertyList::Dictionary{{u"Label"_s, u"com.x.off"_s}, {u"Disabled"_s, true}}));
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, u"off.plist"_s}).status, 5);
    run({u"enable"_s, u"gui/501/com.x.off"_s});
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, u"off.plist"_s}), kSilent);
}

TEST_F(Launchctl, bootoutStopsAJobByItsLabel) {
    run({u"bootstrap"_s, u"gui/501"_s, kAgent});
    EXPECT_EQ(run({u"bootout"_s, u"gui/501/com.x.agent"_s}), kSilent);
    EXPECT_FALSE(isLoaded("gui/501", "com.x.agent"));
    EXPECT_EQ(running(), QStringList{u"NotificationCenter"_s});
    EXPECT_EQ(override("user/501", "com.x.agent"), "null");
    EXPECT_EQ(run({u"bootout"_s, u"gui/501/com.x.agent"_s}), (ToolRun{3, {}, "Boot-out failed: 3: No such process\n"}));
}

TEST_F(Launchctl, bootoutStopsAJobByItsFile) {
    const ToolRun failed{5, {}, "Boot-out failed: 5: Input/output error\n"};
    run({u"bootstrap"_s, u"gui/501"_s, kAgent});
    EXPECT_EQ(run({u"bootout"_s, u"gui/501"_s, u"Library/LaunchAgents/file-name.plist"_s}), kSilent);
    EXPECT_FALSE(isLoaded("gui/501", "com.x.agent"));
    EXPECT_EQ(run({u"bootout"_s, u"gui/501"_s, kAgent}), failed);
    EXPECT_EQ(run({u"bootout"_s, u"gui/501"_s, u"/missing.plist"_s}), failed);
}

TEST_F(Launchctl, aLabelBehindABlankIsAMissingFile) {
    run({u"bootstrap"_s, u"gui/501"_s, kAgent});
    EXPECT_EQ(run({u"bootout"_s, u"gui/501"_s, u"com.x.agent"_s}, Actor::Root),
              (ToolRun{5, {}, "Boot-out failed: 5: Input/output error\n"}));
    EXPECT_TRUE(isLoaded("gui/501", "com.x.agent"));
    EXPECT_TRUE(running().contains(u"agent"_s));
}

TEST_F(Launchctl, aWordBehindADomainIsAFileOfTheWorkingFolderEvenWhereItLooksLikeALabel) {
    run({u"bootstrap"_s, u"gui/501"_s, kAgent});
    run({u"bootstrap"_s, u"gui/501"_s, kIdleAgent});
    putFile(mac, u"/Users/alex/com.x.agent"_s, plist(u"com.x.idle"_s, u"/opt/x/idle"_s, false));
    EXPECT_EQ(run({u"bootout"_s, u"gui/501"_s, u"com.x.agent"_s}), kSilent);
    EXPECT_FALSE(isLoaded("gui/501", "com.x.idle"));
    EXPECT_TRUE(isLoaded("gui/501", "com.x.agent"));
}

TEST_F(Launchctl, everythingBehindTheDomainIsTheLabel) {
    run({u"bootstrap"_s, u"gui/501"_s, kAgent});
    EXPECT_EQ(run({u"bootout"_s, u"gui/501/com.x.agent/more"_s}),
              (ToolRun{3, {}, "Boot-out failed: 3: No such process\n"}));
    EXPECT_TRUE(isLoaded("gui/501", "com.x.agent"));
    EXPECT_EQ(run({u"disable"_s, u"system/a/b"_s}, Actor::Root), kSilent);
    EXPECT_EQ(override("system", "a/b"), "true");
    EXPECT_EQ(override("system", "a"), "null");
}

TEST_F(Launchctl, anAgentsFileIsNoJobOfTheSystem) {
    run({u"bootstrap"_s, u"gui/501"_s, kSharedAgent});
    EXPECT_EQ(run({u"bootout"_s, u"system"_s, kSharedAgent}, Actor::Root),
              (ToolRun{5, {}, "Boot-out failed: 5: Input/output error\n"}));
    EXPECT_TRUE(isLoaded("gui/501", "com.x.shared"));
    EXPECT_EQ(running(), (QStringList{u"NotificationCenter"_s, u"shared"_s}));
    EXPECT_EQ(run({u"bootout"_s, u"gui/501"_s, kSharedAgent}, Actor::Root), kSilent);
    EXPECT_EQ(running(), QStringList{u"NotificationCenter"_s});
}

TEST_F(Launchctl, rootReachesTheUsersSession) {
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}, Actor::Root), kSilent);
    EXPECT_EQ(ProcessTable(mac.mac.state()).list().at(1).userId, 501);
    EXPECT_EQ(run({u"disable"_s, u"gui/501/com.x.agent"_s}, Actor::Root), kSilent);
    EXPECT_TRUE(running().contains(u"agent"_s));
    EXPECT_EQ(override("system", "com.x.agent"), "null");
    EXPECT_EQ(run({u"bootout"_s, u"gui/501/com.x.agent"_s}, Actor::Root), kSilent);
    EXPECT_EQ(running(), QStringList{u"NotificationCenter"_s});
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}, Actor::Root).status, 5);
    EXPECT_EQ(run({u"enable"_s, u"gui/501/com.x.agent"_s}, Actor::Root), kSilent);
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}, Actor::Root), kSilent);
}

TEST_F(Launchctl, aJobWhoseFileIsGoneRunsOnAndEndsByItsLabelOnly) {
    run({u"bootstrap"_s, u"gui/501"_s, kAgent});
    mac.mac.volume(Actor::User).remove(kAgent);
    EXPECT_TRUE(running().contains(u"agent"_s));
    EXPECT_EQ(run({u"bootout"_s, u"gui/501"_s, kAgent}).status, 5);
    EXPECT_TRUE(run({u"unload"_s, u"-w"_s, kAgent}).error.startsWith("Unload failed: 5: "));
    EXPECT_TRUE(isLoaded("gui/501", "com.x.agent"));
    EXPECT_EQ(override("user/501", "com.x.agent"), "null");
    EXPECT_EQ(run({u"bootout"_s, u"gui/501/com.x.agent"_s}), kSilent);
    EXPECT_EQ(running(), QStringList{u"NotificationCenter"_s});
}

TEST_F(Launchctl, aListInXmlWithRemarksIsAJobAsABinaryOneIs) {
    const QString file = u"/Users/alex/Library/LaunchAgents/remarks.plist"_s;
    putFile(mac, file,
            "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!-- by hand -->\n"
            "<!DOCTYPE plist PUBLIC \"-//Apple//DTD PLIST 1.0//EN\" "
            "\"http://www.apple.com/DTDs/PropertyList-1.0.dtd\">\n"
            "<plist version=\"1.0\"><dict>\n<key>RunAtLoad</key><true/>\n<!-- last -->\n"
            "<key>Program</key><string>/opt/x y/tool</string>\n"
            "<key>Label</key><string>com.x.remarks</string>\n</dict></plist>\n");
    EXPECT_EQ(run({u"load"_s, u"-w"_s, file}), kSilent);
    EXPECT_TRUE(running().contains(u"tool"_s));
    EXPECT_EQ(run({u"bootout"_s, u"gui/501"_s, file}), kSilent);
    EXPECT_EQ(running(), QStringList{u"NotificationCenter"_s});
}

TEST_F(Launchctl, whatIsNoJobFailsAsAMissingFileDoes) {
    putFile(mac, u"/Users/alex/broken.plist"_s, "<?xml version=1.0?><plist><dict><key>Label");
    putFile(mac, u"/Users/alex/nameless.plist"_s, xmlPropertyList(PropertyList::Dictionary{{u"RunAtLoad"_s, true}}));
    const Json before = launchd();
    for (const QString& file : {u"broken.plist"_s, u"nameless.plist"_s, u"missing.plist"_s, u""_s, u"/Users/alex"_s}) {
        EXPECT_EQ(run({u"bootout"_s, u"gui/501"_s, file}), (ToolRun{5, {}, "Boot-out failed: 5: Input/output error\n"}))
            << file.toStdString();
    }
    for (const QString& file : {u"broken.plist"_s, u"nameless.plist"_s, u"missing.plist"_s}) {
        for (const QString& verb : {u"load"_s, u"unload"_s}) {
            const ToolRun failed = run({verb, u"-w"_s, file});
            EXPECT_EQ(failed.status, 0);
            EXPECT_TRUE(failed.error.contains("oad failed: 5: Input/output error\n"));
        }
    }
    EXPECT_EQ(launchd(), before);
}

TEST_F(Launchctl, theSystemDomainIsRoots) {
    EXPECT_EQ(run({u"bootstrap"_s, u"system"_s, kDaemon}),
              (ToolRun{1, {}, "Bootstrap failed: 1: Operation not permitted\n"}));
    EXPECT_EQ(run({u"bootstrap"_s, u"system"_s, kDaemon}, Actor::Root), kSilent);
    EXPECT_EQ(ProcessTable(mac.mac.state()).list().at(1).userId, 0);
    const ToolRun refused{1, {}, "Boot-out failed: 1: Operation not permitted\n"};
    EXPECT_EQ(run({u"bootout"_s, u"system/com.x.daemon"_s}), refused);
    EXPECT_EQ(run({u"bootout"_s, u"system"_s, kDaemon}), refused);
    EXPECT_TRUE(isLoaded("system", "com.x.daemon"));
    EXPECT_EQ(run({u"bootout"_s, u"system"_s, kDaemon}, Actor::Root), kSilent);
    EXPECT_FALSE(isLoaded("system", "com.x.daemon"));
}

TEST_F(Launchctl, aSessionThatIsNotThereSupportsNothing) {
    const ToolRun failed{125, {}, "Boot-out failed: 125: Domain does not support specified action\n"};
    EXPECT_EQ(run({u"bootout"_s, u"gui/502/com.x.agent"_s}, Actor::Root), failed);
    mac.mac.state().update("launchd", [](Json& state) { state["guiSession"] = false; });
    EXPECT_EQ(run({u"bootout"_s, u"gui/501/com.x.agent"_s}, Actor::Root), failed);
    EXPECT_EQ(run({u"print"_s, u"gui/501"_s}), (ToolRun{112, {}, "Could not find domain for user gui: 501\n"}));
}

TEST_F(Launchctl, integrityProtectionKeepsTheSystemsJobs) {
    const ToolRun refused{
        150, {}, "Boot-out failed: 150: Operation not permitted while System Integrity Protection is engaged\n"};
    EXPECT_EQ(run({u"bootout"_s, u"gui/501/com.apple.notificationcenterui"_s}), refused);
    EXPECT_EQ(run({u"bootout"_s, u"gui/501"_s, kSystemAgent}, Actor::Root), refused);
    EXPECT_TRUE(running().contains(u"NotificationCenter"_s));

    setState(mac, "permissions", {{"systemIntegrityProtection", false}});
    EXPECT_EQ(run({u"bootout"_s, u"gui/501/com.apple.notificationcenterui"_s}), kSilent);
    EXPECT_EQ(running(), QStringList());
}

TEST_F(Launchctl, badTargetsEndWithTheUsage) {
    for (const QStringList& words : {QStringList{u"bootout"_s, u"com.x.agent"_s},
                                     {u"bootout"_s, u"gui"_s},
                                     {u"bootout"_s, u"gui/alex/x"_s},
                                     {u"print"_s, u"nonsense/501"_s},
                                     {u"disable"_s, u"gui/501"_s},
                                     {u"bootstrap"_s, u"gui/501/x"_s, kAgent}}) {
        const ToolRun refused = run(words);
        EXPECT_EQ(refused.status, 64) << words.join(u' ').toStdString();
        EXPECT_TRUE(refused.error.startsWith("Unrecognized target specifier."));
        EXPECT_TRUE(refused.error.contains("\nUsage: launchctl " + words[0].toUtf8() + ' '));
    }
    EXPECT_EQ(run({u"load"_s}).status, 64);
    EXPECT_EQ(run({u"nonsense"_s}).status, 64);
}

// disable and enable

TEST_F(Launchctl, disableIsSilentAndLeavesTheJobRunning) {
    run({u"bootstrap"_s, u"gui/501"_s, kAgent});
    for (int time = 0; time < 2; ++time) {
        EXPECT_EQ(run({u"disable"_s, u"gui/501/com.x.agent"_s}), kSilent);
    }
    EXPECT_EQ(run({u"disable"_s, u"gui/501/no.such.label"_s}), kSilent);
    EXPECT_TRUE(running().contains(u"agent"_s));
    EXPECT_EQ(run({u"print-disabled"_s, u"user/501"_s}),
              (ToolRun{0,
                       "\tdisabled services = {\n\t\t\"com.x.agent\" => disabled\n"
                       "\t\t\"no.such.label\" => disabled\n\t}\n\tlogin item associations = {\n\t}\n",
                       {}}));
    EXPECT_EQ(run({u"enable"_s, u"user/501/com.x.agent"_s}), kSilent);
    EXPECT_TRUE(run({u"print-disabled"_s, u"gui/501"_s}).output.contains("\t\t\"com.x.agent\" => enabled\n"));
}

TEST_F(Launchctl, onlyRootOverridesInTheSystem) {
    EXPECT_EQ(run({u"disable"_s, u"system/com.x.daemon"_s}),
              (ToolRun{1, {}, "Could not disable service: 1: Operation not permitted\n"}));
    EXPECT_EQ(run({u"enable"_s, u"system/com.x.daemon"_s}),
              (ToolRun{1, {}, "Could not enable service: 1: Operation not permitted\n"}));
    EXPECT_EQ(run({u"disable"_s, u"gui/502/com.x.agent"_s}).status, 1);
    EXPECT_EQ(override("system", "com.x.daemon"), "null");
    EXPECT_EQ(run({u"disable"_s, u"system/com.x.daemon"_s}, Actor::Root), kSilent);
    EXPECT_EQ(override("system", "com.x.daemon"), "true");
    EXPECT_EQ(run({u"disable"_s, u"gui/501/com.x.agent"_s}, Actor::Root), kSilent);
    EXPECT_EQ(override("user/501", "com.x.agent"), "true");
}

TEST_F(Launchctl, theSystemsOverridesAndTheUsersAreApart) {
    run({u"disable"_s, u"system/com.x.agent"_s}, Actor::Root);
    run({u"disable"_s, u"gui/501/com.x.daemon"_s});
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}), kSilent);
    EXPECT_EQ(run({u"bootstrap"_s, u"system"_s, kDaemon}, Actor::Root), kSilent);
    EXPECT_FALSE(run({u"print-disabled"_s, u"system"_s}).output.contains("com.x.daemon"));
    EXPECT_FALSE(run({u"print-disabled"_s, u"gui/501"_s}).output.contains("com.x.agent"));
}

TEST_F(Launchctl, rootUnloadsADaemonForGood) {
    run({u"load"_s, kDaemon}, Actor::Root);
    ASSERT_TRUE(running().contains(u"daemon"_s));
    EXPECT_EQ(run({u"unload"_s, u"-w"_s, kDaemon}, Actor::Root), kSilent);
    EXPECT_FALSE(running().contains(u"daemon"_s));
    EXPECT_EQ(override("system", "com.x.daemon"), "true");
    EXPECT_EQ(run({u"bootstrap"_s, u"system"_s, kDaemon}, Actor::Root).status, 5);
}

TEST_F(Launchctl, aSystemLabelIsDisabledWithoutAWordAndWithoutEffect) {
    EXPECT_EQ(run({u"disable"_s, u"gui/501/com.apple.notificationcenterui"_s}, Actor::Root), kSilent);
    EXPECT_EQ(override("user/501", "com.apple.notificationcenterui"), "null");
}

TEST_F(Launchctl, whatBecomesOfApplesOverridesIsSaidInOneOfTwoWords) {
    const QString target = u"gui/501/com.apple.notificationcenterui"_s;
    mac.mac.state().update("launchd", [](Json& state) { state["appleOverrides"] = "ignored"; });
    EXPECT_EQ(run({u"disable"_s, target}), kSilent);
    EXPECT_EQ(override("user/501", "com.apple.notificationcenterui"), "null");
    mac.mac.state().update("launchd", [](Json& state) { state["appleOverrides"] = "sometimes"; });
    EXPECT_THROW(run({u"disable"_s, target}), std::invalid_argument);
}

TEST_F(LaunchctlThatKeepsApplesOverrides, theAgentIsListedAsDisabledAndRunsOn) {
    EXPECT_EQ(run({u"disable"_s, target}), kSilent);
    EXPECT_EQ(override("user/501", kApplesLabel), "true");
    EXPECT_EQ(running(), QStringList{u"NotificationCenter"_s});
    EXPECT_TRUE(run({u"print-disabled"_s, u"gui/501"_s})
                    .output.startsWith("\tdisabled services = {\n"
                                       "\t\t\"com.apple.notificationcenterui.agent\" => disabled\n\t}\n"));
    EXPECT_EQ(run({u"bootout"_s, target}).status, 150) << "it is protected all the same";
}

TEST_F(LaunchctlThatKeepsApplesOverrides, onlyEnableTakesTheOverrideBack) {
    const ToolRun unloaded = run({u"unload"_s, u"-w"_s, kSystemAgent});
    EXPECT_TRUE(unloaded.error.endsWith("System Integrity Protection is engaged\n"));
    const ToolRun loaded = run({u"load"_s, u"-w"_s, kSystemAgent});
    EXPECT_EQ(loaded.status, 0);
    EXPECT_TRUE(loaded.error.startsWith("Load failed: 5: Input/output error\n"));
    EXPECT_EQ(override("user/501", kApplesLabel), "true");
    EXPECT_EQ(run({u"enable"_s, target}), kSilent);
    EXPECT_EQ(override("user/501", kApplesLabel), "false");
}

TEST_F(LaunchctlThatKeepsApplesOverrides, whereTheLabelIsTheFilesNameLoadWithWClearsTheOverride) {
    putFile(mac, kSystemAgent, plist(u"com.apple.notificationcenterui"_s, u"/System/NotificationCenter"_s, true));
    run({u"disable"_s, u"gui/501/com.apple.notificationcenterui"_s});
    ASSERT_EQ(override("user/501", "com.apple.notificationcenterui"), "true");
    run({u"load"_s, u"-w"_s, kSystemAgent});
    EXPECT_EQ(override("user/501", "com.apple.notificationcenterui"), "false");
}

TEST_F(LaunchctlThatKeepsApplesOverrides, withoutIntegrityProtectionLoadWithWClearsTheOverrideOfAnyAgent) {
    setState(mac, "permissions", {{"systemIntegrityProtection", false}});
    run({u"disable"_s, target});
    run({u"load"_s, u"-w"_s, kSystemAgent});
    EXPECT_EQ(override("user/501", kApplesLabel), "false");
}

TEST_F(Launchctl, anybodyReadsEveryDomainsOverrides) {
    run({u"disable"_s, u"system/com.x.daemon"_s}, Actor::Root);
    run({u"disable"_s, u"gui/501/com.x.agent"_s}, Actor::Root);
    for (const Actor actor : {Actor::User, Actor::Root}) {
        EXPECT_TRUE(run({u"print-disabled"_s, u"system"_s}, actor)
                        .output.startsWith("\tdisabled services = {\n\t\t\"com.x.daemon\" => disabled\n\t}\n"));
        EXPECT_TRUE(run({u"print-disabled"_s, u"gui/501"_s}, actor)
                        .output.startsWith("\tdisabled services = {\n\t\t\"com.x.agent\" => disabled\n\t}\n"));
    }
}

TEST_F(Launchctl, loginItemsAndTheirApplicationsAreListedBehindTheOverrides) {
    setState(mac, "backgroundTasks",
             {{"records",
               {{{"uid", 501}, {"type", "app"}, {"identifier", "2.com.x"}},
                {{"uid", 501}, {"type", "login item"}, {"identifier", "4.com.x.helper"}, {"parent", "2.com.x"}},
                {{"uid", 501}, {"type", "agent"}, {"identifier", "8.com.x.agent"}, {"parent", "2.com.x"}},
                {{"uid", 502}, {"type", "login item"}, {"identifier", "4.com.y.helper"}, {"parent", "2.com.y"}}}}});
    run({u"disable"_s, u"gui/501/com.x.helper"_s});
    EXPECT_EQ(run({u"print-disabled"_s, u"gui/501"_s}).output,
              "\tdisabled services = {\n\t\t\"com.x.helper\" => disabled\n\t}\n"
              "\tlogin item associations = {\n\t\t\"com.x.helper\" => {\n\t\t\t\"com.x\" => true\n\t\t}\n\t}\n");
    EXPECT_EQ(run({u"print-disabled"_s, u"system"_s}).output,
              "\tdisabled services = {\n\t}\n\tlogin item associations = {\n\t}\n");
}

TEST_F(Launchctl, whatTheUserHasDisallowedIsNotLoadedWhateverItsOverrideSays) {
    setState(mac, "backgroundTasks",
             {{"records",
               {{{"uid", 501},
                 {"type", "legacy agent"},
                 {"identifier", "8.com.x.agent"},
                 {"url", "file://" + kAgent.toStdString()},
                 {"allowed", false}}}}});
    run({u"enable"_s, u"gui/501/com.x.agent"_s});
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}),
              (ToolRun{5, {}, "Bootstrap failed: 5: Input/output error\n"}));
    EXPECT_TRUE(run({u"load"_s, u"-w"_s, kAgent}).error.startsWith("Load failed: 5: "));
    EXPECT_FALSE(isLoaded("gui/501", "com.x.agent"));
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kIdleAgent}), kSilent);
}

TEST_F(LaunchctlOnSequoia, bootstrapNamesADisabledService) {
    run({u"disable"_s, u"gui/501/com.x.agent"_s});
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}),
              (ToolRun{119, {}, "Bootstrap failed: 119: Service is disabled\n"}));
    EXPECT_FALSE(isLoaded("gui/501", "com.x.agent"));
    run({u"enable"_s, u"gui/501/com.x.agent"_s});
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}), kSilent);
    EXPECT_EQ(run({u"bootstrap"_s, u"gui/501"_s, kAgent}).status, 5) << "it is loaded";
}

// load and unload

TEST_F(Launchctl, loadAndUnloadByFile) {
    EXPECT_EQ(run({u"load"_s, kAgent}), kSilent);
    EXPECT_TRUE(running().contains(u"agent"_s));
    EXPECT_EQ(run({u"unload"_s, kAgent}), kSilent);
    EXPECT_FALSE(isLoaded("gui/501", "com.x.agent"));
    EXPECT_FALSE(running().contains(u"agent"_s));
    EXPECT_EQ(override("user/501", "com.x.agent"), "null");
}

TEST_F(Launchctl, theirFailuresAreTextsWithStatusZero) {
    const ToolRun loadFailed{
        0, {}, "Load failed: 5: Input/output error\nTry running `launchctl bootstrap` as root for richer errors.\n"};
    const ToolRun unloadFailed{
        0, {}, "Unload failed: 5: Input/output error\nTry running `launchctl bootout` as root for richer errors.\n"};
    EXPECT_EQ(run({u"unload"_s, kAgent}), unloadFailed);
    EXPECT_EQ(run({u"unload"_s, u"-w"_s, u"/missing.plist"_s}), unloadFailed);
    EXPECT_EQ(run({u"load"_s, u"/missing.plist"_s}), loadFailed);
    ASSERT_EQ(run({u"load"_s, kAgent}), kSilent);
    EXPECT_EQ(run({u"load"_s, kAgent}), loadFailed);
}

TEST_F(Launchctl, unloadWithWLeavesAnOverrideThatOnlyLoadWithWClears) {
    run({u"load"_s, kAgent});
    EXPECT_EQ(run({u"unload"_s, u"-w"_s, kAgent}), kSilent);
    EXPECT_EQ(override("user/501", "com.x.agent"), "true");
    const ToolRun refused = run({u"load"_s, kAgent});
    EXPECT_EQ(refused.status, 0);
    EXPECT_TRUE(refused.error.startsWith("Load failed: 5: Input/output error\n"));
    EXPECT_FALSE(isLoaded("gui/501", "com.x.agent"));
    EXPECT_EQ(run({u"load"_s, u"-w"_s, kAgent}), kSilent);
    EXPECT_EQ(override("user/501", "com.x.agent"), "false");
    EXPECT_TRUE(isLoaded("gui/501", "com.x.agent"));
}

TEST_F(Launchctl, unloadWithWWritesTheOverrideOfAJobThatIsNotLoaded) {
    EXPECT_TRUE(run({u"unload"_s, u"-w"_s, kAgent}).error.startsWith("Unload failed: 5: "));
    EXPECT_EQ(override("user/501", "com.x.agent"), "true");
}

TEST_F(Launchctl, theOtherKindOfJobIsWarnedOfAndRefused) {
    EXPECT_EQ(run({u"unload"_s, kSharedAgent}, Actor::Root),
              (ToolRun{0,
                       {},
                       "Warning: Expecting a LaunchDaemons path since the command was ran as root. Got LaunchAgents "
                       "instead.\n`launchctl bootout` is a recommended alternative.\n"
                       "Unload failed: 5: Input/output error\n"
                       "Try running `launchctl bootout` as root for richer errors.\n"}));
    EXPECT_EQ(run({u"load"_s, kDaemon}),
              (ToolRun{0,
                       {},
                       "Warning: Expecting a LaunchAgents path since the command was ran as user. Got LaunchDaemons "
                       "instead.\n`launchctl bootstrap` is a recommended alternative.\n"
                       "Load failed: 5: Input/output error\n"
                       "Try running `launchctl bootstrap` as root for richer errors.\n"}));
    EXPECT_EQ(run({u"load"_s, kDaemon}, Actor::Root), kSilent);
    EXPECT_EQ(run({u"load"_s, kSharedAgent}), kSilent);
    EXPECT_TRUE(isLoaded("system", "com.x.daemon"));
    EXPECT_TRUE(isLoaded("gui/501", "com.x.shared"));
}

TEST_F(Launchctl, rootsUnloadOfAnAgentLeavesTheUsersJobAlone) {
    run({u"load"_s, kSharedAgent});
    const ToolRun unloaded = run({u"unload"_s, u"-w"_s, kSharedAgent}, Actor::Root);
    EXPECT_EQ(unloaded.status, 0);
    EXPECT_TRUE(unloaded.error.startsWith("Warning: Expecting a LaunchDaemons path since the command was ran as root. "
                                          "Got LaunchAgents instead.\n"));
    EXPECT_EQ(run({u"bootout"_s, u"system"_s, kSharedAgent}, Actor::Root),
              (ToolRun{5, {}, "Boot-out failed: 5: Input/output error\n"}));
    EXPECT_TRUE(running().contains(u"shared"_s));
    EXPECT_EQ(override("user/501", "com.x.shared"), "null");
}

TEST_F(Launchctl, unloadOfASystemJobIsRefusedAndTheJobRunsOn) {
    const QByteArray reason = "Operation not permitted while System Integrity Protection is engaged\n";
    EXPECT_EQ(run({u"unload"_s, u"-w"_s, kSystemAgent}),
              (ToolRun{0, {}, kSystemAgent.toUtf8() + ": " + reason + "Unload failed: 150: " + reason}));
    EXPECT_TRUE(isLoaded("gui/501", "com.apple.notificationcenterui"));
    EXPECT_TRUE(running().contains(u"NotificationCenter"_s));
    EXPECT_EQ(override("user/501", "com.apple.notificationcenterui"), "null");
}

TEST_F(Launchctl, loadOfASystemJobThatRunsFailsInWordsOnly) {
    const ToolRun loaded = run({u"load"_s, u"-w"_s, kSystemAgent});
    EXPECT_EQ(loaded.status, 0);
    EXPECT_TRUE(loaded.error.startsWith("Load failed: 5: Input/output error\n"));
    EXPECT_EQ(running(), QStringList{u"NotificationCenter"_s});
}

// print and list

TEST_F(Launchctl, printShowsAService) {
    EXPECT_EQ(run({u"print"_s, u"gui/501/com.apple.notificationcenterui"_s}),
              (ToolRun{0,
                       "gui/501/com.apple.notificationcenterui = {\n"
                       "\tactive count = 1\n"
                       "\tpath = /System/Library/LaunchAgents/com.apple.notificationcenterui.plist\n"
                       "\tstate = running\n"
                       "\n"
                       "\tprogram = /System/NotificationCenter\n"
                       "\tdomain = gui/501\n"
                       "\tpid = 400\n"
                       "\tlast exit code = 0\n"
                       "}\n",
                       {}}));
    run({u"bootstrap"_s, u"gui/501"_s, kIdleAgent});
    const ToolRun idle = run({u"print"_s, u"gui/501/com.x.idle"_s});
    EXPECT_TRUE(idle.output.contains("\tstate = not running\n"));
    EXPECT_FALSE(idle.output.contains("pid = "));
}

TEST_F(Launchctl, printOfAMissingServiceOrDomain) {
    EXPECT_EQ(run({u"print"_s, u"gui/501/no.such"_s}),
              (ToolRun{113, {}, "Could not find service \"no.such\" in domain for user gui: 501\n"}));
    EXPECT_EQ(run({u"print"_s, u"system/no.such"_s}),
              (ToolRun{113, {}, "Could not find service \"no.such\" in domain for system\n"}));
    EXPECT_EQ(run({u"print"_s, u"gui/777"_s}), (ToolRun{112, {}, "Could not find domain for user gui: 777\n"}));
    EXPECT_EQ(run({u"print-disabled"_s, u"gui/777"_s}).status, 112);
}

TEST_F(LaunchctlOnTahoe, aMissingServiceIsABadRequest) {
    EXPECT_EQ(run({u"print"_s, u"system/no.such"_s}),
              (ToolRun{113, {}, "Bad request.\nCould not find service \"no.such\" in domain for system\n"}));
}

TEST_F(LaunchctlOnMonterey, overridesAreTrueForDisabled) {
    run({u"disable"_s, u"gui/501/a"_s});
    run({u"enable"_s, u"gui/501/b"_s});
    EXPECT_EQ(run({u"print-disabled"_s, u"gui/501"_s}).output,
              "\tdisabled services = {\n\t\t\"a\" => true\n\t\t\"b\" => false\n\t}\n");
}

TEST_F(Launchctl, printShowsADomain) {
    run({u"bootstrap"_s, u"gui/501"_s, kIdleAgent});
    run({u"disable"_s, u"gui/501/com.x.idle"_s});
    EXPECT_EQ(run({u"print"_s, u"gui/501"_s}).output,
              "gui/501 = {\n\tservices = {\n"
              "\t\t     400      - \tcom.apple.notificationcenterui\n"
              "\t\t       0      - \tcom.x.idle\n"
              "\t}\n\n\tdisabled services = {\n\t\t\"com.x.idle\" => disabled\n\t}\n"
              "\tlogin item associations = {\n\t}\n}\n");
}

TEST_F(Launchctl, listShowsTheCallersJobs) {
    run({u"bootstrap"_s, u"gui/501"_s, kIdleAgent});
    EXPECT_EQ(run({u"list"_s}),
              (ToolRun{0, "PID\tStatus\tLabel\n400\t0\tcom.apple.notificationcenterui\n-\t0\tcom.x.idle\n", {}}));
    EXPECT_EQ(run({u"list"_s}, Actor::Root), (ToolRun{0, "PID\tStatus\tLabel\n", {}}));
    EXPECT_EQ(run({u"list"_s, u"com.x.idle"_s}).output,
              "{\n\t\"Label\" = \"com.x.idle\";\n\t\"LastExitStatus\" = 0;\n\t\"Program\" = "
              "\"/opt/x/idle\";\n};\n");
    EXPECT_EQ(run({u"list"_s, u"no.such"_s}),
              (ToolRun{113, {}, "Could not find service \"no.such\" in domain for port\n"}));
}

TEST_F(Launchctl, whatIsNotSimulatedFailsLoudly) {
    const Json before = launchd();
    for (const QStringList& words : {QStringList{u"kickstart"_s, u"gui/501/com.x.agent"_s},
                                     {u"bootout"_s, u"gui/501"_s},
                                     {u"bootstrap"_s, u"system"_s},
                                     {u"load"_s, u"-F"_s, kAgent},
                                     {u"load"_s, u"/Users/alex/Library/LaunchAgents"_s},
                                     {}}) {
        EXPECT_EQ(run(words).status, 70) << words.join(u' ').toStdString();
    }
    EXPECT_EQ(launchd(), before);
}

// ---- The session's environment

TEST_F(Launchctl, setsAndUnsetsTheVariablesOfTheUsersSession) {
    EXPECT_EQ(run({u"setenv"_s, u"PATH"_s, u"/opt/bin:/bin"_s}), ToolRun());
    EXPECT_EQ(run({u"setenv"_s, u"A"_s, u"b c"_s}), ToolRun());
    EXPECT_EQ(sessionEnvironment(mac.mac.state()),
              (QMap<QString, QString>{{u"A"_s, u"b c"_s}, {u"PATH"_s, u"/opt/bin:/bin"_s}}));
    EXPECT_EQ(run({u"unsetenv"_s, u"A"_s}), ToolRun());
    EXPECT_EQ(run({u"unsetenv"_s, u"never set"_s}), ToolRun());
    EXPECT_EQ(sessionEnvironment(mac.mac.state()), (QMap<QString, QString>{{u"PATH"_s, u"/opt/bin:/bin"_s}}));
}

TEST_F(Launchctl, takesAVariableAndItsValueAndNothingElse) {
    EXPECT_EQ(run({u"setenv"_s, u"PATH"_s}), (ToolRun{64, {}, "Usage: launchctl setenv <key> <value>\n"}));
    EXPECT_EQ(run({u"unsetenv"_s}), (ToolRun{64, {}, "Usage: launchctl unsetenv <key>\n"}));
    EXPECT_NE(run({u"setenv"_s, u"A"_s, u"b"_s}, Actor::Root).status, 0);
    EXPECT_TRUE(sessionEnvironment(mac.mac.state()).isEmpty());
}

} // namespace macsim
