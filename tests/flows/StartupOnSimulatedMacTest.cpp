// Startup control on a simulated Mac through real child processes: what launchd, System Events, the background task
// list and the disk show afterwards, in good days and in bad ones.

#include "fakes/BackgroundList.h"
#include "fakes/SimulatedStartup.h"
#include "profiles/ApplyPreviews.h"
#include "simulator/Restart.h"
#include "simulator/Updaters.h"

#include <QRegularExpression>
#include <QUuid>

#include <algorithm>
#include <functional>

namespace quorvane {

namespace {

using macsim::Actor;
using Items = QList<ApplyVerificationResult::Item>;

const QString kChatPlist = u"/Users/alex/Library/LaunchAgents/com.chat.plist"_s;
const QString kVpnPlist = u"/Library/LaunchDaemons/com.vpn.plist"_s;
const QString kUsersBackup = u"/Users/alex/.quorvane_backup"_s;

class StartupOnSimulatedMac : public SimulatedStartup {
protected:
    /// Chat opens at login and has an agent, a VPN has a daemon, and Sync has a helper of its own.
    void setUpOffice() {
        addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
        addLaunchItem(kChatPlist, u"com.chat"_s);
        addLaunchItem(kVpnPlist, u"com.vpn"_s);
        helper = addApplicationWithHelper(u"Sync"_s, u"com.sync"_s);
    }
    static QList<StartupItem> office() {
        return {loginAppOff(u"Chat"_s), launchAgentOff(u"com.chat.plist"_s), launchAgentOff(u"com.vpn.plist"_s),
                backgroundItemOff(u"com.sync.helper"_s)};
    }
    bool exists(const QString& path) const { return volume(Actor::Root).kind(path) != macsim::Volume::Kind::Missing; }
    QByteArray content(const QString& path) const { return volume(Actor::Root).read(path); }
    QString labelled(const QString& label) const { return u"gui/501/"_s + label; }
    void allow(const std::string& permission) const {
        changeState("permissions", [&permission](macsim::Json& permissions) { permissions[permission] = true; });
    }
    /// The list as the program has got it.
    void readList() { learnBackgroundItems(*system); }

    void removeBackup() {
        if (exists(kUsersBackup)) {
            run({u"/bin/rm"_s, u"-rf"_s, kUsersBackup});
        }
    }
    /// As `start`, with something happening during each prompt, to all of which the user agrees.
    void startWithPrompt(const std::function<void()>& happening) {
        system.reset();
        host.reset();
        m_prompt = std::make_unique<EventfulPrompt>(happening);
        host = std::make_unique<SimulatedHost>(macFolder(), *m_prompt, SimulatedHostOptions{program(), {}, {}});
        system = std::make_unique<SystemManager>(host->host(), notifications);
    }

    QString helper;

private:
    class EventfulPrompt final : public AuthorizationPrompt {
    public:
        explicit EventfulPrompt(std::function<void()> happening)
            : m_happening(std::move(happening)) {}

        QFuture<macsim::Authorization> ask(const QString&) override {
            m_happening();
            return QtFuture::makeReadyFuture(macsim::Authorization::Allow);
        }

    private:
        std::function<void()> m_happening;
    };

    std::unique_ptr<AuthorizationPrompt> m_prompt;
};

const Items kOfficeOff{{u"Login item: Chat"_s, u"removed"_s},
                       {u"Launch item: com.chat.plist"_s, u"inactive"_s},
                       {u"Launch item: com.vpn.plist"_s, u"inactive"_s},
                       {u"Background item: Sync Helper"_s, u"disabled at login"_s}};
/// The same where nobody has asked for the background task list.
const Items kOfficeOffByLaunchd{kOfficeOff.at(0),
                                kOfficeOff.at(1),
                                kOfficeOff.at(2),
                                {u"Background item: com.sync.helper"_s, u"disabled at login"_s}};

} // namespace

TEST_F(StartupOnSimulatedMac, everyKindOfItemIsSwitchedOffUnderOnePrompt) {
    setUpOffice();
    const macsim::MacPicture before = picture();
    const StartupApplyResult result = switchOff(office());
    EXPECT_TRUE(result.applySucceeded);
    EXPECT_EQ(result.verification, (ApplyVerificationResult{kOfficeOff, {}}));
    EXPECT_EQ(authorization.prompts(), QStringList(kStartupChanges));
    EXPECT_EQ(log(), u"\nApplying startup configuration...\n"
                     "  [ACTION] Disabling 1 login item(s)...\n"
                     "  [APPLIED] Removed login item: Chat\n"
                     "  [ACTION] Disabling 2 launch item(s)...\n"
                     "  [APPLIED] Disabled launch item: com.chat.plist (/Users/alex/Library/LaunchAgents)\n"
                     "  [ACTION] Requesting Admin rights to disable 1 system launch item(s)...\n"
                     "  [ACTION] Queued disable for launch item: com.vpn.plist @ /Library/LaunchDaemons\n"
                     "  [ACTION] Disabling 1 background item(s)...\n"
                     "\nStartup configuration applied.\n"
                     "  [INFO] ServiceManagement BTM APIs unavailable; using launchctl and quarantine fallback.\n"
                     "  [APPLIED] Disabled background login label: com.sync.helper\n"
                     "  [INFO] Left in its application: Sync Helper\n"
                     "  [APPLIED] Disabled launch item: com.vpn.plist @ /Library/LaunchDaemons\n"
                     "All 4 setting(s) verified on the system.\n"_s);
    EXPECT_EQ(picture().changesSince(before), QString::fromUtf8(projectFile(u"tests/flows/office-changes.txt"_s)));
}

TEST_F(StartupOnSimulatedMac, anAddedApplicationStaysUnderACleanRebootHoweverOftenItIsApplied) {
    const QString path = u"/Applications/Bitwig Studio.app"_s;
    addFile(path + u"/Contents/Info.plist"_s, plistText({{u"CFBundleIdentifier"_s, u"com.bitwig.BitwigStudio"_s}}));
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    UnifiedProfile profile;
    profile.id = QUuid::createUuid();
    profile.name = u"Gig"_s;
    profile.settings.cleanReboot = true;
    profile.startup.items = {StartupItem::fromLaunchItem({u"Bitwig Studio"_s, path, false})};
    ASSERT_TRUE(apply(profile));
    EXPECT_EQ(loginNames(), QStringList(u"Bitwig Studio"_s));

    // As the editor saves it, and as an earlier version of it did.
    UnifiedProfile merged = profile;
    merged.startup = profile.startup.mergedWithDiscovered(discover(), true).configuration;
    UnifiedProfile withTrace = profile;
    StartupItem ownTrace = startupItemOf(LoginItem{u"Bitwig Studio"_s, path, false});
    ownTrace.runsAtStartup = false;
    withTrace.startup.items.append(ownTrace);
    for (const UnifiedProfile& again : {merged, withTrace}) {
        const qsizetype logged = system->logMessages().size();
        const macsim::MacPicture before = picture();
        EXPECT_TRUE(apply(again));
        const QStringList lines = system->logMessages().mid(logged);
        EXPECT_EQ(lines.filter(u"Removed login item"_s) + lines.filter(u"Added login item"_s), QStringList());
        for (const QString& checked : {u"Login item"_s, u"Startup app"_s, u"Clean Reboot"_s}) {
            EXPECT_EQ(lines.filter(u"[MISSING] "_s + checked), QStringList());
        }
        EXPECT_FALSE(picture().changesSince(before).contains(u"Bitwig"_s));
        const StartupChangePreview preview = QCoro::waitFor(system->previewProfile(again)).startup;
        EXPECT_EQ(preview.willDisable, QList<StartupItem>());
        EXPECT_EQ(preview.willAdd, QList<StartupLaunchItem>());
        EXPECT_EQ(preview.willRemove, QList<StartupLaunchItem>());
    }
}

TEST_F(StartupOnSimulatedMac, switchedOffTwiceNothingChangesTheSecondTime) {
    setUpOffice();
    ASSERT_TRUE(switchOff(office()).applySucceeded);
    const macsim::MacPicture once = picture();
    start();
    const StartupApplyResult again = switchOff(office());
    EXPECT_TRUE(again.applySucceeded);
    EXPECT_EQ(again.verification, (ApplyVerificationResult{kOfficeOffByLaunchd, {}}));
    EXPECT_EQ(picture().changesSince(once), QString());
    EXPECT_EQ(log(), u"\nApplying startup configuration...\n"
                     "  [ACTION] Disabling 1 login item(s)...\n"
                     "  [ACTION] Disabling 2 launch item(s)...\n"
                     "  [INFO] Launch item already disabled: com.chat.plist\n"
                     "  [INFO] Launch item already disabled: com.vpn.plist\n"
                     "  [ACTION] Disabling 1 background item(s)...\n"
                     "\nStartup configuration applied.\n"
                     "All 4 setting(s) verified on the system.\n"_s);
    EXPECT_EQ(authorization.prompts(), QStringList(kStartupChanges)) << "of the first time";
}

TEST_F(StartupOnSimulatedMac, whatAnApplicationHasSwitchedOnAgainIsSaidAndGoesWithTheNextApply) {
    setUpOffice();
    UnifiedProfile profile = exampleProfile(u"rehearsal"_s);
    profile.startup.items = office();
    profile.settings = {};
    ASSERT_TRUE(apply(profile));
    ASSERT_TRUE(macsim::applicationRegisters(host->mac(), u"com.sync.helper"_s));
    start();
    QCoro::waitFor(system->scanCurrentSystem({profile}, profile.name, {}));
    EXPECT_TRUE(logs(u"  [INFO] On again since it was switched off: com.sync.helper"_s));
    QStringList rows;
    for (const ReviewSection& section : reviewSections(QCoro::waitFor(system->previewProfile(profile)))) {
        for (const ReviewSection::Row& row : section.rows) {
            rows.append(row.text + u" — "_s + row.detail);
        }
    }
    EXPECT_TRUE(rows.contains(u"com.sync.helper — Background Item, on again since it was switched off"_s))
        << rows.join(u'\n').toStdString();
    ASSERT_TRUE(apply(profile));
    EXPECT_EQ(disabledLabels(), (QStringList{u"com.chat"_s, u"com.sync.helper"_s}));
}

TEST_F(StartupOnSimulatedMac, aScanTellsWhatIsOnAgainThoughItsProfileHasNoStartupWork) {
    setUpOffice();
    ASSERT_TRUE(switchOff(office()).applySucceeded);
    ASSERT_TRUE(macsim::applicationRegisters(host->mac(), u"com.sync.helper"_s));
    start();
    QCoro::waitFor(system->scanCurrentSystem({}, std::nullopt, {}));
    EXPECT_TRUE(logs(u"  [INFO] On again since it was switched off: com.sync.helper"_s));
}

TEST_F(StartupOnSimulatedMac, aReviewSeesWhatHasComeOnSinceTheScan) {
    setUpOffice();
    UnifiedProfile profile = exampleProfile(u"rehearsal"_s);
    profile.startup.items = office();
    profile.settings = {};
    ASSERT_TRUE(apply(profile));
    QCoro::waitFor(system->scanCurrentSystem({profile}, profile.name, {}));
    ASSERT_TRUE(macsim::applicationRegisters(host->mac(), u"com.sync.helper"_s));
    const StartupChangePreview preview = QCoro::waitFor(system->previewStartupChanges(profile.startup, std::nullopt));
    EXPECT_EQ(preview.willDisable.size(), 1);
}

TEST_F(StartupOnSimulatedMac, aPlistThatAnUpdaterPutsBackStaysOffAndCountsAsInactive) {
    setUpOffice();
    ASSERT_TRUE(switchOff(office()).applySucceeded);
    for (const QString& plist : {kChatPlist, kVpnPlist}) {
        const QString label = plist == kVpnPlist ? u"com.vpn"_s : u"com.chat"_s;
        macsim::updaterInstalls(host->mac(), plist,
                                "<plist version=\"1.0\"><dict><key>Label</key><string>" + label.toUtf8() +
                                    "</string><key>RunAtLoad</key><true/></dict></plist>");
    }
    macsim::restart(host->mac());
    EXPECT_FALSE(isLoaded(u"com.chat"_s));
    EXPECT_FALSE(isLoaded(u"com.vpn"_s, kSystemDomain));
    start();
    const StartupApplyResult again = switchOff(office());
    EXPECT_EQ(again.verification, (ApplyVerificationResult{kOfficeOffByLaunchd, {}}));
    EXPECT_EQ(authorization.prompts().size(), 1) << "the second apply asks for nothing";
    for (const StartupItem& item : discover()) {
        EXPECT_FALSE(item.runsAtStartup) << item.id.toStdString();
    }
}

TEST_F(StartupOnSimulatedMac, theSystemsOwnSwitchIsTurnedWhereItIsToBeHad) {
    setUpOffice();
    changeState("backgroundTasks",
                [](macsim::Json& tasks) { tasks["entryPoints"] = {"SMLoginItemSetUserAllowed_4BTM"}; });
    ASSERT_TRUE(switchOff({backgroundItemOff(u"com.sync.helper"_s)}).applySucceeded);
    EXPECT_TRUE(logs(u"  [ACTION] Asked macOS to disallow: com.sync.helper"_s));
    const macsim::Json records = host->mac().state().read("backgroundTasks").at("records");
    EXPECT_EQ(records.back().at("allowed"), false);
    EXPECT_FALSE(records[records.size() - 2].contains("allowed")) << "the application itself";
}

TEST_F(StartupOnSimulatedMac, discoveryShowsEverySource) {
    setUpOffice();
    readList();
    QStringList found;
    for (const StartupItem& item : discover()) {
        found.append(item.id + u" — "_s + item.name + u" — "_s + label(item.kind));
    }
    EXPECT_EQ(found, QStringList({u"login:/Applications/Chat.app — Chat — App"_s,
                                  u"launch:com.chat.plist — Chat — Launch Agent"_s,
                                  u"btm:com.sync.helper — Sync Helper — Background Item"_s,
                                  u"launch:com.vpn.plist — Vpn — Daemon"_s}));
}

TEST_F(StartupOnSimulatedMac, anAddedApplicationComesAndGoesWithItsConfiguration) {
    StartupConfiguration configuration;
    configuration.items = {StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, true})};
    EXPECT_TRUE(applyStartup(configuration).applySucceeded);
    EXPECT_EQ(host->mac().state().read("loginItems"),
              macsim::Json({{{"name", "Live"}, {"path", "/Applications/Live.app"}, {"hidden", true}}}));
    start();
    EXPECT_TRUE(applyStartup({}).applySucceeded);
    EXPECT_TRUE(logs(u"  [APPLIED] Removed startup app from login items: Live"_s));
    EXPECT_EQ(loginNames(), QStringList());
    EXPECT_EQ(authorization.prompts(), QStringList());
}

// ---- Prompts that get no password

TEST_F(StartupOnSimulatedMac, aCancelledBatchLeavesWhatNeedsRoot) {
    setUpOffice();
    authorization.setAnswer(macsim::Authorization::Cancel);
    const StartupApplyResult result = switchOff(office());
    EXPECT_FALSE(result.applySucceeded);
    EXPECT_EQ(result.verification.failed, Items({{u"Launch item: com.vpn.plist"_s, u"still active"_s}}));
    EXPECT_TRUE(logs(u"  [ERROR] Administrator authorization was cancelled or failed: User canceled."_s));
    EXPECT_EQ(loginNames(), QStringList());
    EXPECT_FALSE(exists(kChatPlist));
    EXPECT_TRUE(exists(kVpnPlist));
    EXPECT_TRUE(isLoaded(u"com.vpn"_s, kSystemDomain));
    EXPECT_TRUE(exists(helper));
    EXPECT_EQ(disabledLabels(), QStringList(u"com.chat"_s));
}

TEST_F(StartupOnSimulatedMac, aCancelledPromptOutsideABatchLeavesTheDaemon) {
    setUpOffice();
    authorization.setAnswer(macsim::Authorization::Cancel);
    const QStringList labels{u"com.vpn.plist"_s};
    EXPECT_FALSE(QCoro::waitFor(system->disableLaunchItems(labels, {})));
    EXPECT_TRUE(logs(u"  [ERROR] Failed to disable system launch items: User canceled."_s));
    EXPECT_TRUE(exists(kVpnPlist));
    authorization.setAnswer(macsim::Authorization::Allow);
    EXPECT_TRUE(QCoro::waitFor(system->disableLaunchItems(labels, {})));
    EXPECT_FALSE(exists(kVpnPlist));
    EXPECT_FALSE(isLoaded(u"com.vpn"_s, kSystemDomain));
}

// ---- System Events

TEST_F(StartupOnSimulatedMac, aMissingAutomationPermissionFailsAndIsSaid) {
    setUpOffice();
    changeState("permissions", [](macsim::Json& permissions) { permissions["automation"]["System Events"] = false; });
    StartupConfiguration configuration;
    configuration.items = {loginAppOff(u"Chat"_s),
                           StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false})};
    const StartupApplyResult result = applyStartup(configuration);
    EXPECT_FALSE(result.applySucceeded);
    EXPECT_EQ(result.verification.failed, Items({{u"Login item: Chat"_s, u"could not read login items"_s},
                                                 {u"Startup app: Live"_s, u"could not read login items"_s}}));
    EXPECT_TRUE(logs(u"  [ERROR] Could not read login items: Not authorized to send Apple events to System Events."_s));
    EXPECT_TRUE(
        logs(u"  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security."_s));
    EXPECT_TRUE(logs(u"  [ERROR] Failed to add login item: Live"_s));
    EXPECT_TRUE(logs(u"\nStartup configuration applied with errors."_s));
    EXPECT_EQ(loginNames(), QStringList(u"Chat"_s));
}

TEST_F(StartupOnSimulatedMac, garbageFromSystemEventsProvesNothing) {
    setUpOffice();
    start(R"([{"tool": "osascript", "status": 0, "output": "what?\n\nno|items\n"}])");
    const StartupApplyResult result = switchOff({loginAppOff(u"Chat"_s)});
    EXPECT_FALSE(result.applySucceeded);
    EXPECT_EQ(result.verification.failed.size(), 1);
    EXPECT_EQ(loginNames(), QStringList(u"Chat"_s));
}

TEST_F(StartupOnSimulatedMac, aDeleteThatSystemEventsSwallowsIsCaughtByTheVerification) {
    setUpOffice();
    changeState("loginItemFaults", [](macsim::Json& faults) { faults = {{"deleteIsSilent", true}}; });
    const StartupApplyResult result = switchOff({loginAppOff(u"Chat"_s)});
    EXPECT_EQ(result.verification.failed, Items({{u"Login item: Chat"_s, u"still active"_s}}));
    EXPECT_EQ(loginNames(), QStringList(u"Chat"_s));
}

TEST_F(StartupOnSimulatedMac, aHangingSystemEventsEndsWithTheProgram) {
    setUpOffice();
    start(R"([{"tool": "osascript", "hang": true}])");
    const Ticks ticks;
    std::optional<StartupApplyResult> result;
    auto flow = system->applyStartupChanges({office(), false, {}});
    flow.then([&result](const StartupApplyResult& outcome) { result = outcome; });
    processEventsUntil([&ticks] { return ticks.count() > 50; });
    EXPECT_FALSE(result.has_value());
    host->shutDown();
    processEventsUntil([&result] { return result.has_value(); });
    EXPECT_FALSE(result->applySucceeded);
    EXPECT_EQ(loginNames(), QStringList(u"Chat"_s));
    EXPECT_TRUE(exists(kVpnPlist));
}

// ---- The background task list

TEST_F(StartupOnSimulatedMac, aListThatCannotBeReadLeavesWhatIsNamedToLaunchd) {
    setUpOffice();
    const QByteArray rules[] = {R"([{"tool": "sfltool", "status": 1, "error": "sfltool: failed\n"}])",
                                R"([{"tool": "sfltool", "status": 0}])",
                                R"([{"tool": "sfltool", "status": 0, "output": "no list\nat: all\n"}])",
                                R"([{"tool": "sfltool", "status": 0, "outputBase64": "IzE6Ck5hbWU6IFP//goK"}])"};
    for (const QByteArray& rule : rules) {
        SCOPED_TRACE(rule.toStdString());
        run({u"/bin/launchctl"_s, u"enable"_s, u"gui/501/com.sync.helper"_s});
        start(rule);
        const StartupApplyResult result = switchOff({backgroundItemOff(u"com.sync.helper"_s)});
        EXPECT_EQ(disabledLabels(), QStringList(u"com.sync.helper"_s));
        EXPECT_TRUE(exists(helper));
        EXPECT_EQ(authorization.prompts().last(), kStartupChanges);
        EXPECT_EQ(result.verification.verified, Items()) << "it may be a daemon's label";
        EXPECT_EQ(result.verification.failed,
                  Items({{u"Background login items"_s, u"status unavailable without administrator access"_s}}));
    }
}

TEST_F(StartupOnSimulatedMac, aListThatNeverComesIsEndedByItsAlarm) {
    setUpOffice();
    changeState("sfltool", [](macsim::Json& tool) { tool["hangs"] = true; });
    EXPECT_TRUE(switchOff(office()).applySucceeded);
    EXPECT_TRUE(system->backgroundTaskItems()->isEmpty());
    EXPECT_FALSE(exists(kVpnPlist)) << "the rest of the line has run";
    EXPECT_EQ(disabledLabels(), (QStringList{u"com.chat"_s, u"com.sync.helper"_s}));
}

TEST_F(StartupOnSimulatedMac, aCleanRebootWithoutAListSaysThatItsStateIsUnknown) {
    start(R"([{"tool": "sfltool", "status": 0}])");
    UnifiedProfile profile = exampleProfile(u"rehearsal"_s);
    profile.settings.cleanReboot = true;
    EXPECT_TRUE(apply(profile));
    EXPECT_TRUE(system->lastApplyVerification()->failed.contains(
        {u"Background login items"_s, u"status unavailable without administrator access"_s}));
}

TEST_F(StartupOnSimulatedMac, aListWithCarriageReturnsOrACutOffEndIsReadAsFarAsItGoes) {
    setUpOffice();
    const QByteArray record = R"(#1:\r  Name: Sync\r  Type: app (0x2)\r  Identifier: 2.com.sync\r)"
                              R"(  URL: file:///Applications/Sync.app/\r\r #2:\r  Name: Sync Helper\r)"
                              R"(  Type: login item (0x4)\r  Disposition: [enabled, allowed, notified] (0xb)\r)"
                              R"(  Identifier: 4.com.sync.helper\r  Parent Identifier: 2.com.sync\r\r #3:\r  Name)";
    start(R"([{"tool": "sfltool", "status": 0, "output": ")" + record + R"("}])");
    EXPECT_TRUE(switchOff({backgroundItemOff(u"com.sync.helper"_s)}).applySucceeded);
    EXPECT_EQ(disabledLabels(), QStringList(u"com.sync.helper"_s));
    EXPECT_TRUE(logs(u"  [INFO] Left in its application: Sync Helper"_s));
}

TEST_F(StartupOnSimulatedMac, whatIsPlantedAtTheListsPathIsNeitherReadNorFollowed) {
    setUpOffice();
    const QByteArray fake = "#1:\n Name: Fake\n Type: agent (0x8)\n Disposition: [enabled, allowed] (0x3)\n"
                            " Identifier: 8.com.fake\n";
    addFile(u"/Users/alex/fake"_s, fake);
    for (const QString& planted : {u"file"_s, u"file of root"_s, u"link"_s, u"folder"_s}) {
        SCOPED_TRACE(planted.toStdString());
        start(R"([{"tool": "sfltool", "status": 1}])");
        const QString path = system->backgroundDumpPath();
        const macsim::Volume disk = volume(planted == u"file of root"_s ? Actor::Root : Actor::User);
        if (planted == u"link"_s) {
            disk.createLink(path, u"/Users/alex/fake"_s);
        } else if (planted == u"folder"_s) {
            disk.createFolder(path);
            disk.write(path + u"/fake"_s, fake);
        } else {
            disk.write(path, fake);
        }
        switchOff({backgroundItemOff(u"com.other"_s)});
        EXPECT_EQ(system->backgroundTaskItems()->items(), QList<BackgroundTaskItem>());
        EXPECT_FALSE(exists(path));
        EXPECT_EQ(content(u"/Users/alex/fake"_s), fake);
        run({u"/bin/launchctl"_s, u"enable"_s, u"gui/501/com.other"_s});
    }
}

TEST_F(StartupOnSimulatedMac, withoutRoomForTheListNoneIsTakenAndTheApplyFails) {
    setUpOffice();
    const QString path = system->backgroundDumpPath();
    volume(Actor::Root).createFolder(path);
    volume(Actor::Root).write(path + u"/mine"_s, "root's");
    const StartupApplyResult result = switchOff(office());
    EXPECT_FALSE(result.applySucceeded);
    EXPECT_FALSE(commandsOfRoot().contains(u"/usr/bin/sfltool dumpbtm"_s));
    EXPECT_EQ(content(path + u"/mine"_s), "root's");
    EXPECT_FALSE(exists(kVpnPlist)) << "what needs no list goes on";
}

// ---- Tools and disks that fail

TEST_F(StartupOnSimulatedMac, aHelperStaysInItsApplicationAndItsOverrideKeepsItOff) {
    setUpOffice();
    switchOff(office());
    EXPECT_EQ(content(helper + u"/Contents/MacOS/helper"_s), "helper");
    EXPECT_TRUE(logs(u"  [INFO] Left in its application: Sync Helper"_s));
    macsim::restart(host->mac());
    EXPECT_FALSE(isLoaded(u"com.sync.helper"_s));
}

TEST_F(StartupOnSimulatedMac, aLabelThatLaunchdRefusesIsNotVerified) {
    setUpOffice();
    start(R"([{"tool": "launchctl", "status": 5, "error": "Input/output error\n"}])");
    const StartupApplyResult result = switchOff({backgroundItemOff(u"com.sync.helper"_s)});
    EXPECT_FALSE(log().contains(u"Disabled background login label"_s));
    EXPECT_EQ(result.verification.failed, Items({{u"Background item: Sync Helper"_s, u"could not ask launchd"_s}}));
    EXPECT_EQ(disabledLabels(), QStringList());
}

TEST_F(StartupOnSimulatedMac, aDaemonThatCannotBeMovedIsOffAllTheSame) {
    setUpOffice();
    start(R"([{"tool": "mv", "status": 1, "error": "mv: no\n"}])");
    const StartupApplyResult result = switchOff({launchAgentOff(u"com.vpn.plist"_s)});
    EXPECT_FALSE(result.applySucceeded);
    EXPECT_EQ(result.verification.verified, Items({{u"Launch item: com.vpn.plist"_s, u"inactive"_s}}));
    EXPECT_TRUE(exists(kVpnPlist));
    macsim::restart(host->mac());
    EXPECT_FALSE(isLoaded(u"com.vpn"_s, kSystemDomain));
}

TEST_F(StartupOnSimulatedMac, launchdThatRefusesDoesNotKeepAPlistInItsPlace) {
    setUpOffice();
    start(R"([{"tool": "launchctl", "status": 5, "error": "Input/output error\n"}])");
    EXPECT_TRUE(switchOff({launchAgentOff(u"com.chat.plist"_s), launchAgentOff(u"com.vpn.plist"_s)}).applySucceeded);
    EXPECT_TRUE(exists(kUsersBackup + u"/UserHome_Library_LaunchAgents/com.chat.plist"_s));
    EXPECT_TRUE(exists(kUsersBackup + u"/_Library_LaunchDaemons/com.vpn.plist"_s));
    EXPECT_TRUE(isLoaded(u"com.chat"_s));
}

// ---- Launch folders and their plists

TEST_F(StartupOnSimulatedMac, launchFoldersThatAreMissingOrNoFoldersHoldNothing) {
    const macsim::Volume root = volume(Actor::Root);
    for (const QString& launchFolder : {u"/Library/LaunchAgents"_s, u"/Library/LaunchDaemons"_s}) {
        if (root.kind(launchFolder) != macsim::Volume::Kind::Missing) {
            root.remove(launchFolder);
        }
    }
    addFile(u"/Library/LaunchDaemons"_s, "no folder");
    EXPECT_EQ(discover(), QList<StartupItem>());
    const StartupApplyResult result = switchOff({launchAgentOff(u"com.vpn.plist"_s)});
    EXPECT_TRUE(result.applySucceeded);
    EXPECT_EQ(result.verification.verified, Items({{u"Launch item: com.vpn.plist"_s, u"inactive"_s}}));
    EXPECT_EQ(authorization.prompts(), QStringList());
}

TEST_F(StartupOnSimulatedMac, plistsThatCannotBeReadAreKnownByTheirFileNamesAndMove) {
    const QString agents = u"/Users/alex/Library/LaunchAgents/"_s;
    const QMap<QString, QByteArray> plists{
        {u"com.a.damaged.plist"_s, "<plist version=\"1.0\"><dict><key>La"},
        {u"com.b.empty.plist"_s, QByteArray()},
        {u"com.c.noDictionary.plist"_s, "<plist version=\"1.0\"><array><string>x</string></array></plist>"},
        {u"com.d.binary.plist"_s, QByteArray("bplist00\xd1\x01\x02\0\xff", 13)},
        {u"com.e.huge.plist"_s, QByteArray(20 << 20, ' ')},
        {u"com.f.deep.plist"_s, QByteArray("<array>").repeated(100000)}};
    QList<StartupItem> off;
    for (auto plist = plists.begin(); plist != plists.end(); ++plist) {
        addFile(agents + plist.key(), *plist);
        off.append(launchAgentOff(plist.key()));
    }
    QStringList names;
    for (const StartupItem& item : discover()) {
        names.append(item.id.mid(u"launch:"_s.size()));
    }
    names.sort();
    EXPECT_EQ(names, plists.keys());
    EXPECT_TRUE(switchOff(off).applySucceeded);
    EXPECT_EQ(volume().list(kUsersBackup + u"/UserHome_Library_LaunchAgents"_s), plists.keys());
}

// ---- Names

TEST_F(StartupOnSimulatedMac, hostileNamesRemoveTheirOwnItemsOnly) {
    const QStringList names{u"7\" mix"_s, u"back\\slash"_s,     u"\\\" & (do shell script \"touch /tmp/p\") & \""_s,
                            u"it’s Ü"_s,  u"$(touch /tmp/p)"_s, u"`touch /tmp/p`"_s,
                            u"-e"_s,      u"{name:x}"_s,        u"tab\there"_s};
    addLoginItem(u"Stays"_s, u"/Applications/Stays.app"_s);
    QList<StartupItem> off;
    for (const QString& name : names) {
        addLoginItem(name, u"/Applications/"_s + name);
        off.append(loginAppOff(name));
    }
    EXPECT_TRUE(switchOff(off).applySucceeded);
    EXPECT_EQ(loginNames(), QStringList(u"Stays"_s));
    EXPECT_FALSE(exists(u"/tmp/p"_s));
}

TEST_F(StartupOnSimulatedMac, aNameWithALineEndCannotBeMatchedAndTakesNoOther) {
    addLoginItem(u"A | B"_s, u"/Applications/AB.app"_s);
    addLoginItem(u"C\nD"_s, u"/Applications/CD.app"_s);
    addLoginItem(u"D"_s, u"/Applications/D.app"_s);
    UnifiedProfile profile = exampleProfile(u"rehearsal"_s);
    profile.settings.cleanReboot = true;
    profile.startup.items = {loginAppOff(u"D"_s)};
    apply(profile);
    EXPECT_EQ(loginNames(), QStringList(u"C\nD"_s)) << "a name with a bar is read whole";
    EXPECT_FALSE(system->lastApplyVerification()->failed.isEmpty());
}

TEST_F(StartupOnSimulatedMac, ofTwoNamesThatDifferOnlyInCaseTheOneThatStaysIsSpared) {
    addLoginItem(u"chat"_s, u"/Applications/Other.app"_s);
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    EXPECT_TRUE(switchOff({loginAppOff(u"Chat"_s)}).applySucceeded);
    EXPECT_EQ(loginNames(), QStringList(u"chat"_s));
}

TEST_F(StartupOnSimulatedMac, anItemThatIsProtectedByItsPathIsSparedByItsName) {
    addLoginItem(u"Updater"_s, u"/Applications/rekordbox 7.app/Contents/Updater.app"_s);
    addLoginItem(u"updater"_s, u"/Applications/Chat.app/Contents/updater.app"_s);
    EXPECT_TRUE(switchOff({loginAppOff(u"Updater"_s), loginAppOff(u"updater"_s)}).applySucceeded);
    EXPECT_TRUE(logs(u"  [SKIPPED] Protected login item: Updater"_s));
    EXPECT_EQ(loginNames(), QStringList(u"Updater"_s));
}

TEST_F(StartupOnSimulatedMac, labelsThatAreMoreThanLabelsReachNothing) {
    setUpOffice();
    readList();
    QCoro::waitFor(system->rawLoginItems()); // the user has let the program ask System Events
    const macsim::MacPicture before = picture();
    const QStringList labels{u"x; touch /tmp/p"_s,
                             u"$(touch /tmp/p)"_s,
                             u"`touch /tmp/p`"_s,
                             u"' ; touch /tmp/p ; '"_s,
                             u"\" ; touch /tmp/p ; \""_s,
                             u"-k"_s,
                             u""_s,
                             u"."_s,
                             u".."_s,
                             u"../../../tmp/p"_s,
                             u"/Library/LaunchDaemons/com.vpn.plist"_s,
                             u"a b"_s,
                             u"x\ntouch /tmp/p"_s};
    QList<StartupItem> off;
    for (const QString& label : labels) {
        off.append(launchAgentOff(label));
        off.append(launchAgentOff(label + u".plist"_s));
        off.append(backgroundItemOff(label));
    }
    // As they would come in a file from somebody else.
    UnifiedProfile profile = exampleProfile(u"rehearsal"_s);
    profile.startup.items = off;
    const StartupConfiguration configuration = decodeProfile(encodeProfile(profile)).startup;
    EXPECT_TRUE(applyStartup(configuration).applySucceeded);
    EXPECT_EQ(authorization.prompts(), QStringList(kListPrompt));
    EXPECT_FALSE(exists(u"/tmp/p"_s));
    for (const QString& label : {u""_s, u"."_s, u".."_s, u"-k"_s, u"../../../tmp/p"_s, u"x\ntouch /tmp/p"_s}) {
        EXPECT_TRUE(logs(u"  [SKIPPED] Unusable background label: "_s + label)) << label.toStdString();
    }
    // The other labels are names that nobody bears: launchd notes them, and nothing else happens.
    QStringList noted = labels;
    noted.removeIf([](const QString& label) {
        return label.isEmpty() || label.startsWith(u'.') || label.startsWith(u'-') || label.contains(u'/') ||
               label.contains(u'\n');
    });
    noted.sort();
    EXPECT_EQ(disabledLabels(), noted);
    changeState("launchd", [](macsim::Json& launchd) { launchd["disabled"]["user/501"] = macsim::Json(); });
    run({u"/bin/rm"_s, u"-rf"_s, u"/Users/alex/.quorvane"_s});
    EXPECT_EQ(picture().changesSince(before), u"+ "_s + kUsersBackup + u": folder\n"_s);
}

// ---- Links that lead elsewhere

TEST_F(StartupOnSimulatedMac, aHelperThatLiesOutsideItsApplicationIsNeverMoved) {
    setUpOffice();
    allow("appManagement");
    const QString library = u"/Applications/Sync.app/Contents/Library"_s;
    const QString elsewhere = u"/Users/alex/Documents/LoginItems"_s;
    const macsim::Volume root = volume(Actor::Root);
    volume().createFolders(u"/Users/alex/Documents"_s);
    root.move(library + u"/LoginItems"_s, elsewhere);
    root.createLink(library + u"/LoginItems"_s, elsewhere);
    const macsim::MacPicture before = picture();
    for (const bool isKnown : {false, true}) {
        if (isKnown) {
            readList();
        }
        switchOff({backgroundItemOff(u"com.sync.helper"_s)});
        EXPECT_EQ(disabledLabels(), QStringList(u"com.sync.helper"_s));
        EXPECT_EQ(content(elsewhere + u"/Sync Helper.app/Contents/MacOS/helper"_s), "helper");
        static const QRegularExpression ofSync(u"^[-+~] [^:]*Sync"_s); // but for the record of its label
        EXPECT_EQ(picture().changesSince(before).split(u'\n').filter(ofSync), QStringList());
        start();
    }
}

TEST_F(StartupOnSimulatedMac, anAgentThatIsALinkToElsewhereIsNeverMoved) {
    setUpOffice();
    allow("appManagement");
    const QString agents = u"/Applications/Sync.app/Contents/Library/LaunchAgents"_s;
    addFile(u"/Users/alex/private.plist"_s, "private");
    const macsim::Volume root = volume(Actor::Root);
    root.createFolders(agents);
    root.createLink(agents + u"/com.sync.helper.plist"_s, u"/Users/alex/private.plist"_s);
    switchOff({backgroundItemOff(u"com.sync.helper"_s)});
    EXPECT_EQ(content(u"/Users/alex/private.plist"_s), "private");
    EXPECT_TRUE(exists(agents + u"/com.sync.helper.plist"_s));
}

TEST_F(StartupOnSimulatedMac, aBackupFolderThatIsALinkTakesNothing) {
    setUpOffice();
    const QString bait = u"/Users/alex/bait"_s;
    volume().createFolder(bait);
    volume().createLink(kUsersBackup, bait);
    const StartupApplyResult result = switchOff(office());
    EXPECT_FALSE(result.applySucceeded);
    EXPECT_TRUE(logs(u"  [ERROR] Backup folder is not usable: "_s + kUsersBackup));
    EXPECT_TRUE(exists(kChatPlist));
    EXPECT_TRUE(exists(kVpnPlist));
    EXPECT_TRUE(isLoaded(u"com.vpn"_s, kSystemDomain));
    EXPECT_TRUE(exists(helper));
    EXPECT_EQ(volume().list(bait).filter(u"plist"_s) + volume().list(bait).filter(u"app"_s), QStringList());
}

TEST_F(StartupOnSimulatedMac, aFolderInTheBackupThatIsALinkTakesNothing) {
    setUpOffice();
    const QString bait = u"/Users/alex/bait"_s;
    volume().createFolder(bait);
    volume().createFolder(kUsersBackup);
    for (const QString& name : {u"UserHome_Library_LaunchAgents"_s, u"_Library_LaunchDaemons"_s}) {
        volume().createLink(kUsersBackup + u'/' + name, bait);
    }
    EXPECT_FALSE(switchOff(office()).applySucceeded);
    for (const QString& name : {u"UserHome_Library_LaunchAgents"_s, u"_Library_LaunchDaemons"_s}) {
        EXPECT_TRUE(logs(u"  [ERROR] Backup folder is not usable: "_s + kUsersBackup + u'/' + name))
            << name.toStdString();
    }
    EXPECT_TRUE(exists(kChatPlist));
    EXPECT_TRUE(exists(kVpnPlist));
    EXPECT_TRUE(exists(helper));
    EXPECT_EQ(volume().list(bait), QStringList());
}

// ---- What comes while a prompt stands open

TEST_F(StartupOnSimulatedMac, aDaemonThatComesWhileThePromptStandsWaitsForTheNextApply) {
    setUpOffice();
    const QString label = u"com.sync.daemon"_s;
    const QString inside = u"Contents/Library/LaunchDaemons/com.sync.daemon.plist"_s;
    bool isThere = false;
    startWithPrompt([&] {
        if (!std::exchange(isThere, true)) {
            addFile(u"/Applications/Sync.app/"_s + inside, startingPlist(label, u"/usr/bin/true"_s));
            addBackgroundTask({{"uid", 501},
                               {"name", "Sync Daemon"},
                               {"type", "daemon"},
                               {"identifier", "16.com.sync.daemon"},
                               {"parent", "2.com.sync"},
                               {"url", inside.toStdString()}});
        }
    });
    const auto isOff = [this, &label] {
        const auto overrides = macsim::LaunchdState(host->mac()).overrides(kSystemDomain);
        return std::find(overrides.begin(), overrides.end(), std::pair(label, true)) != overrides.end();
    };
    const Items waiting{{u"Background item: Sync Daemon"_s, u"will be switched off at the next apply"_s}};
    EXPECT_EQ(switchOff({backgroundItemOff(label)}).verification.failed, waiting);
    EXPECT_TRUE(logs(u"  [INFO] Will be switched off at the next apply: Sync Daemon"_s));
    EXPECT_FALSE(isOff());
    start(); // nothing is known of the list any more
    const Items off{{u"Background item: Sync Daemon"_s, u"disabled at login"_s}};
    EXPECT_EQ(switchOff({backgroundItemOff(label)}).verification.verified, off);
    EXPECT_TRUE(isOff());
    EXPECT_EQ(disabledLabels(), QStringList()) << "no override of the user's by a guess";
}

// ---- Several accounts

TEST_F(StartupOnSimulatedMac, theHelperOfAnotherAccountStaysInAnApplicationThatBothUse) {
    helper = addApplicationWithHelper(u"Sync"_s, u"com.sync"_s);
    const QString mine = addApplicationWithHelper(u"Chat"_s, u"com.chat"_s);
    changeState("backgroundTasks", [](macsim::Json& tasks) {
        for (macsim::Json& record : tasks["records"]) {
            if (record.at("identifier").get<std::string>().find("com.sync") != std::string::npos) {
                record["uid"] = 502;
            }
        }
    });
    UnifiedProfile profile = exampleProfile(u"rehearsal"_s);
    profile.settings.cleanReboot = true;
    profile.startup.items = {backgroundItemOff(u"com.sync.helper"_s)};
    for (const bool isAgain : {false, true}) {
        EXPECT_TRUE(apply(profile)) << isAgain;
        EXPECT_TRUE(exists(helper));
        EXPECT_TRUE(exists(mine));
        EXPECT_TRUE(disabledLabels().contains(u"com.chat.helper"_s));
    }
    EXPECT_FALSE(log().contains(u"Sync Helper"_s)) << "the label is the user's, the record isn't";
}

// ---- Much of everything

TEST_F(StartupOnSimulatedMac, theEventLoopRunsOnWhileALongListIsRead) {
    const QByteArray rule = R"([{"tool": "sfltool", "status": 0, "output": ")";
    QByteArray dump;
    for (int i = 0; i < 20000; ++i) {
        const QByteArray number = QByteArray::number(i);
        dump += " #" + number + R"(:\n  Name: Item )" + number + R"(\n  Type: login item (0x4)\n)" +
                R"(  Disposition: [enabled, allowed, notified] (0xb)\n  Identifier: 4.com.item)" + number + R"(\n)";
    }
    start(rule + dump + R"("}])");
    const Ticks ticks;
    readList();
    EXPECT_EQ(system->backgroundTaskItems()->items().size(), 20000);
    EXPECT_GT(ticks.count(), 0);
}

TEST_F(StartupOnSimulatedMac, theEventLoopRunsOnWhileManyPlistsAreDiscovered) {
    const QString agents = macFolder() + u"/Users/alex/Library/LaunchAgents"_s;
    ASSERT_TRUE(QDir().mkpath(agents));
    for (int i = 0; i < 5000; ++i) {
        QFile plist(agents + u"/com.item%1.plist"_s.arg(i));
        ASSERT_TRUE(plist.open(QIODevice::WriteOnly));
        plist.write(plistText({{u"Label"_s, u"com.item%1"_s.arg(i)}, {u"Program"_s, u"/usr/bin/true"_s}}));
    }
    const Ticks ticks;
    EXPECT_EQ(discover().size(), 5000);
    EXPECT_GT(ticks.count(), 0);
}

} // namespace quorvane
