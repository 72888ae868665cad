// Login items, on a simulated Mac whose System Events asks its user first and knows kept lists by their names.

#include "fakes/SimulatedStartup.h"

#include "profiles/ApplyPreviews.h"
#include "simulator/Places.h"
#include "snapshots/SnapshotManager.h"

#include <QFile>

namespace quorvane {

namespace {

using Items = QList<ApplyVerificationResult::Item>;

const QString kGrant =
    u"  [INFO] Grant Automation permission for System Events in System Settings → Privacy & Security."_s;
const QString kNotPermitted =
    u"  [ERROR] Could not read login items: Not authorized to send Apple events to System Events."_s;
const QString kNotAnswered =
    u"  [ERROR] Could not read login items: System Events got an error: AppleEvent timed out."_s;

class LoginItemsOnSimulatedMac : public SimulatedStartup {
protected:
    void answerQuestion(const char* policy) const {
        changeState("permissions", [policy](macsim::Json& permissions) {
            permissions.erase("automation");
            permissions["automationQuestion"] = policy;
        });
    }
    QList<macsim::Json> journal() const {
        QList<macsim::Json> records;
        QFile file(macFolder() + macsim::kStateFolder.toString() + u"/journal.jsonl"_s);
        if (file.open(QIODevice::ReadOnly)) {
            while (!file.atEnd()) {
                const QByteArray line = file.readLine();
                records.append(macsim::Json::parse(line.cbegin(), line.cend()));
            }
        }
        return records;
    }
    /// What each script since the last call was about: "read", "delete 2", "make 1".
    QStringList scripts() {
        QStringList found;
        const QList<macsim::Json> records = journal();
        for (const macsim::Json& record : records.mid(m_seen)) {
            const macsim::Json arguments = record.value("arguments", macsim::Json::array());
            if (arguments.empty() || arguments.at(0) != "/usr/bin/osascript") {
                continue;
            }
            const QString source = QString::fromStdString(arguments.at(2).get<std::string>());
            const qsizetype deleted = source.count(u"delete (every login item"_s);
            const qsizetype made = source.count(u"make new login item"_s);
            found.append(deleted > 0 ? u"delete %1"_s.arg(deleted) : made > 0 ? u"make %1"_s.arg(made) : u"read"_s);
        }
        m_seen = records.size();
        return found;
    }
    /// How the questions were answered, and how many seconds the event would have waited.
    QStringList questions() const {
        QStringList found;
        for (const macsim::Json& record : journal()) {
            if (record.contains("automation")) {
                found.append(QString::fromStdString(record.at("answer").get<std::string>()) +
                             u" %1"_s.arg(record.at("seconds").get<int>()));
            }
        }
        return found;
    }
    QStringList listed() {
        QStringList lines;
        for (const LoginItem& item : QCoro::waitFor(system->readLoginItemsFromSystemEvents()).items) {
            lines.append(item.name + u" at "_s + item.path);
        }
        return lines;
    }
    QList<ReviewSection> review(const StartupConfiguration& configuration) {
        return reviewSections(QCoro::waitFor(system->previewStartupChanges(configuration)));
    }
    static StartupConfiguration chatOffAndLiveOn() {
        StartupConfiguration configuration;
        configuration.items = {loginAppOff(u"Chat"_s),
                               StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false})};
        return configuration;
    }
    bool capture() {
        return QCoro::waitFor(system->captureSystemSnapshot({}, SystemManager::MasterArchive::No)).isSaved;
    }
    static PerformanceSettings cleanRebootAlone() {
        PerformanceSettings settings;
        settings.cleanReboot = true;
        return settings;
    }
    void addRegisteredApplication(const QString& name) const {
        addBackgroundTask({{"uid", 501},
                           {"name", name.toStdString()},
                           {"type", "app"},
                           {"identifier", "2.com." + name.toLower().toStdString()},
                           {"enabled", true},
                           {"url", "file:///Applications/" + name.toStdString() + ".app/"}});
    }
    void addTwins() const {
        addLoginItem(u"chat"_s, u"/Applications/Other.app"_s);
        addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    }

private:
    qsizetype m_seen = 0;
};

} // namespace

// ---- The question

TEST_F(LoginItemsOnSimulatedMac, theFirstEventAsksAndTheAnswerIsKept) {
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    EXPECT_EQ(questions(), QStringList()) << "not before somebody wants to know";
    EXPECT_EQ(listed(), QStringList(u"Chat at /Applications/Chat.app"_s));
    start();
    EXPECT_EQ(listed().size(), 1);
    EXPECT_EQ(questions(), QStringList(u"allow 120"_s)) << "two minutes, and once";
}

TEST_F(LoginItemsOnSimulatedMac, aRefusalIsToldByEachFlowThatMeetsIt) {
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    answerQuestion("deny");
    const QStringList told{kNotPermitted, kGrant};

    discover();
    EXPECT_EQ(system->logMessages(), told);
    start();
    const QList<ReviewSection> sections = review(chatOffAndLiveOn());
    EXPECT_EQ(system->logMessages(), told);
    ASSERT_FALSE(sections.isEmpty());
    EXPECT_EQ(sections.first(), (ReviewSection{u"Could not be read"_s,
                                               u"exclamationmark.triangle.fill"_s,
                                               {{u"Login items: not permitted"_s, {}}}}));
    start();
    EXPECT_FALSE(QCoro::waitFor(system->applyCleanReboot({})));
    EXPECT_EQ(system->logMessages().filter(told.first()).size(), 1);
    EXPECT_EQ(system->logMessages().filter(kGrant).size(), 1);
    start();
    QCoro::waitFor(system->captureSystemSnapshot({}, SystemManager::MasterArchive::No));
    EXPECT_EQ(system->logMessages().filter(told.first()).size(), 1);
    EXPECT_EQ(system->logMessages().filter(kGrant).size(), 1);

    EXPECT_EQ(questions(), QStringList(u"deny 120"_s)) << "the system keeps the answer";
    EXPECT_EQ(loginNames(), QStringList(u"Chat"_s));
}

TEST_F(LoginItemsOnSimulatedMac, whereItIsRefusedNoChangeIsTried) {
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    answerQuestion("deny");
    const StartupApplyResult result = applyStartup(chatOffAndLiveOn());
    EXPECT_FALSE(result.applySucceeded);
    EXPECT_EQ(result.verification.failed, Items({{u"Login item: Chat"_s, u"could not read login items"_s},
                                                 {u"Startup app: Live"_s, u"could not read login items"_s}}));
    EXPECT_TRUE(logs(u"  [ERROR] Failed to add login item: Live"_s));
    EXPECT_FALSE(scripts().contains(u"make 1"_s));

    changeState("permissions", [](macsim::Json& permissions) { permissions["automation"]["System Events"] = true; });
    EXPECT_TRUE(applyStartup(chatOffAndLiveOn()).applySucceeded) << "permitted in the system's settings meanwhile";
    EXPECT_EQ(loginNames(), QStringList(u"Live"_s));
}

TEST_F(LoginItemsOnSimulatedMac, aQuestionThatNobodyAnswersIsTold) {
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    answerQuestion("unanswered");
    const QList<ReviewSection> sections = review(chatOffAndLiveOn());
    EXPECT_EQ(system->logMessages(), (QStringList{kNotAnswered, kGrant}));
    ASSERT_FALSE(sections.isEmpty());
    EXPECT_EQ(sections.first().rows, QList<ReviewSection::Row>(1, {u"Login items: not answered"_s, {}}));
    EXPECT_EQ(questions(), QStringList(u"unanswered 120"_s)) << "one event has waited for it, and no other";

    answerQuestion("allow");
    EXPECT_TRUE(applyStartup(chatOffAndLiveOn()).applySucceeded);
    EXPECT_EQ(loginNames(), QStringList(u"Live"_s));
}

// ---- When System Events is asked

TEST_F(LoginItemsOnSimulatedMac, aScanAsksOnlyForAProfileWithStartupWork) {
    UnifiedProfile tweaks = exampleProfile(u"rehearsal"_s);
    tweaks.startup = {};
    tweaks.settings.cleanReboot = false;
    QCoro::waitFor(system->scanCurrentSystem({tweaks}, std::nullopt, {}));
    EXPECT_EQ(scripts(), QStringList());
    EXPECT_EQ(questions(), QStringList());

    UnifiedProfile gig = tweaks;
    gig.startup = chatOffAndLiveOn();
    QCoro::waitFor(system->scanCurrentSystem({tweaks, gig}, std::nullopt, {}));
    EXPECT_EQ(scripts(), QStringList(u"read"_s));
}

// ---- One script for each step

TEST_F(LoginItemsOnSimulatedMac, eachStepIsOneScript) {
    StartupConfiguration configuration;
    for (const QString& name : {u"Chat"_s, u"Mail"_s, u"Music"_s}) {
        addLoginItem(name, u"/Applications/"_s + name + u".app"_s);
        configuration.items.append(loginAppOff(name));
    }
    for (const QString& name : {u"Live"_s, u"Mixer"_s}) {
        configuration.items.append(StartupItem::fromLaunchItem({name, u"/Applications/"_s + name + u".app"_s, false}));
    }
    EXPECT_TRUE(applyStartup(configuration).applySucceeded);
    EXPECT_EQ(scripts(), (QStringList{u"read"_s, u"delete 3"_s, u"read"_s, u"make 2"_s, u"read"_s}));
    EXPECT_EQ(loginNames(), (QStringList{u"Live"_s, u"Mixer"_s}));

    EXPECT_TRUE(applyStartup({}).applySucceeded);
    EXPECT_EQ(scripts(), (QStringList{u"read"_s, u"delete 2"_s, u"read"_s}));
    EXPECT_EQ(loginNames(), QStringList());
}

TEST_F(LoginItemsOnSimulatedMac, manyLongNamesGoInMoreThanOneScript) {
    constexpr int kItems = 150;
    QList<StartupItem> off;
    for (int i = 0; i < kItems; ++i) {
        const QString name = u"%1 "_s.arg(i) + QString(200, u'Ü');
        addLoginItem(name, u"/Applications/%1.app"_s.arg(i));
        off.append(loginAppOff(name));
    }
    addLoginItem(u"Stays"_s, u"/Applications/Stays.app"_s);
    EXPECT_TRUE(switchOff(off).applySucceeded);
    EXPECT_EQ(loginNames(), QStringList(u"Stays"_s));
    EXPECT_GT(scripts().filter(u"delete"_s).size(), 1);
}

// ---- Two of one name

TEST_F(LoginItemsOnSimulatedMac, twinsAreReadAsTheyAre) {
    addTwins();
    EXPECT_EQ(listed(), (QStringList{u"chat at /Applications/Other.app"_s, u"Chat at /Applications/Chat.app"_s}));
}

TEST_F(LoginItemsOnSimulatedMac, ofTwinsTheOneGoesThatIsMeant) {
    addTwins();
    EXPECT_TRUE(switchOff({loginAppOff(u"Chat"_s)}).applySucceeded);
    EXPECT_EQ(listed(), QStringList(u"chat at /Applications/Other.app"_s));
    EXPECT_FALSE(log().contains(u"Added again"_s));
}

TEST_F(LoginItemsOnSimulatedMac, aTwinThatWentAlongIsAddedAgain) {
    addTwins();
    changeState("loginItemFaults", [](macsim::Json& faults) { faults = {{"deleteGoesByName", true}}; });
    const StartupApplyResult result = switchOff({loginAppOff(u"Chat"_s)});
    EXPECT_FALSE(result.applySucceeded);
    EXPECT_EQ(result.verification.failed, Items({{u"Login item: Chat"_s, u"still active"_s}}));
    EXPECT_TRUE(logs(u"  [ERROR] Failed to remove login item: Chat"_s));
    EXPECT_TRUE(logs(u"  [INFO] Added again, it went along with another of its name or path: chat"_s));
    EXPECT_EQ(listed(), (QStringList{u"Chat at /Applications/Chat.app"_s, u"Other at /Applications/Other.app"_s}))
        << "System Events names it after its file";
}

// ---- What can't be read

TEST_F(LoginItemsOnSimulatedMac, anItemThatCannotBeReadKeepsNoOtherFromBeingListed) {
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    addLoginItem(u"Music"_s, u"/Applications/Music.app"_s);
    changeState("loginItemFaults", [](macsim::Json& faults) { faults = {{"unreadable", {{"Chat", {"path"}}}}}; });
    EXPECT_EQ(listed(), (QStringList{u"Chat at "_s, u"Music at /Applications/Music.app"_s}));
    QCoro::waitFor(system->applyCleanReboot({}));
    EXPECT_FALSE(log().contains(u"Could not read login items"_s));
    EXPECT_EQ(loginNames(), QStringList()) << "by their names";
}

TEST_F(LoginItemsOnSimulatedMac, anItemWithoutAReadableNameIsListedAndStays) {
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    addLoginItem(u"Music"_s, u"/Applications/Music.app"_s);
    changeState("loginItemFaults", [](macsim::Json& faults) {
        faults = {{"unreadable", {{"Chat", {"name", "path"}}}}};
    });
    EXPECT_EQ(listed(), (QStringList{u"Unreadable login item 1 at "_s, u"Music at /Applications/Music.app"_s}));
    QCoro::waitFor(system->applyCleanReboot({}));
    EXPECT_TRUE(logs(u"  [ERROR] Failed to remove login item: Unreadable login item 1"_s));
    EXPECT_TRUE(loginNames().contains(u"Chat"_s));
}

TEST_F(LoginItemsOnSimulatedMac, whileOneHasNoReadableNameNobodySaysThatAnotherHasGone) {
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    EXPECT_TRUE(capture());
    changeState("loginItemFaults", [](macsim::Json& faults) { faults = {{"unreadable", {{"Chat", {"name"}}}}}; });
    EXPECT_EQ(switchOff({loginAppOff(u"Chat"_s)}).verification.failed,
              Items({{u"Login item: Chat"_s, u"could not read login items"_s}}));
    EXPECT_FALSE(capture()) << "it would take the place of one that knows them all";
    EXPECT_TRUE(logs(u"  [ERROR] Failed to save snapshot: Could not read login items."_s));
}

TEST_F(LoginItemsOnSimulatedMac, whereSystemEventsHasEndedOrHangsNothingIsListed) {
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    for (const int error : {-600, -609, -1712}) {
        changeState("loginItemFaults", [error](macsim::Json& faults) {
            faults = {{"unreadable", {{"Chat", {"name", "hidden", "path"}}}}, {"readingError", error}};
        });
        EXPECT_FALSE(QCoro::waitFor(system->readLoginItemsFromSystemEvents()).wasRead) << error;
        system->invalidateStartupCaches();
    }
    changeState("loginItemFaults", [](macsim::Json& faults) {
        faults = {{"unreadable", {{"Chat", {"path"}}}}, {"readingError", -1712}};
    });
    EXPECT_EQ(listed(), QStringList(u"Chat at "_s)) << "a volume that doesn't answer holds up its own item alone";
}

// ---- A question that holds up a whole flow

TEST_F(LoginItemsOnSimulatedMac, aQuestionIsWaitedForOnceInAnApplyAndRefusalsAreToldOnce) {
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    answerQuestion("unanswered");
    EXPECT_FALSE(applyStartup(chatOffAndLiveOn()).applySucceeded);
    EXPECT_EQ(questions(), QStringList(u"unanswered 120"_s));
    EXPECT_EQ(system->logMessages().count(kNotAnswered), 1);
    EXPECT_EQ(system->logMessages().count(kGrant), 1);
}

TEST_F(LoginItemsOnSimulatedMac, whatIsPermittedAfterARefusalIsSeenByTheReview) {
    addLoginItem(u"Chat"_s, u"/Applications/Chat.app"_s);
    answerQuestion("deny");
    discover();
    changeState("permissions", [](macsim::Json& permissions) { permissions["automation"]["System Events"] = true; });
    const QList<ReviewSection> sections = review(chatOffAndLiveOn());
    ASSERT_FALSE(sections.isEmpty());
    EXPECT_EQ(sections.first().title, u"Will disable at login"_s);
}

// ---- Applications that open by their own registration

TEST_F(LoginItemsOnSimulatedMac, anApplicationThatRegisteredItselfIsSaidAndNotCalledRemoved) {
    addRegisteredApplication(u"Chat"_s);
    QCoro::waitFor(system->applyPerformanceTweaks(cleanRebootAlone(), CleanReboot{{}, StartupConfiguration(), {}}));
    EXPECT_TRUE(logs(u"  [INFO] Turn off in System Settings › General › Login Items: Chat"_s)) << log().toStdString();

    StartupItem chat = loginAppOff(u"Chat"_s);
    chat.path = u"/Applications/Chat.app"_s;
    start();
    const StartupApplyResult result = switchOff({chat});
    EXPECT_EQ(result.verification.failed.size(), 1);
    EXPECT_TRUE(logs(u"  [INFO] Turn off in System Settings › General › Login Items: Chat"_s))
        << "remembered by the next start";
    EXPECT_EQ(result.verification.verified, Items());
}

TEST_F(LoginItemsOnSimulatedMac, whatSystemEventsListsIsNotRememberedAsRegistered) {
    addLoginItem(u"Live"_s, u"/Applications/Live.app"_s);
    addRegisteredApplication(u"Live"_s);
    QCoro::waitFor(
        system->applyPerformanceTweaks(cleanRebootAlone(), CleanReboot{{u"Live"_s}, StartupConfiguration(), {}}));
    changeState("loginItems", [](macsim::Json& items) { items = macsim::Json::array(); }); // in System Settings
    changeState("backgroundTasks", [](macsim::Json& tasks) { tasks["records"].back()["enabled"] = false; });
    start();
    StartupConfiguration configuration;
    configuration.items = {StartupItem::fromLaunchItem({u"Live"_s, u"/Applications/Live.app"_s, false})};
    EXPECT_TRUE(applyStartup(configuration).applySucceeded);
    EXPECT_EQ(loginNames(), QStringList(u"Live"_s)) << "it was added, and not taken for one that opens by itself";
}

} // namespace quorvane
