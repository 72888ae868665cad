#include "actions/Session.h"

#include "actions/OpenGate.h"
#include "fakes/ActionSystem.h"

namespace quorvane {

namespace {

using SessionTest = ActionSystem;

/// The preferences of a user whose lock is on; nobody may ask for that.
class ForbiddenLock final : public UserDefaults {
public:
    std::optional<QString> string(const QString& key) const override { return stored.string(key); }
    QStringList stringArray(const QString& key) const override { return stored.stringArray(key); }
    bool boolean(const QString& key) const override {
        EXPECT_NE(key, kQuorvaneAppLockEnabled);
        return stored.boolean(key);
    }
    void setString(const QString& key, const QString& value) override { stored.setString(key, value); }
    void setStringArray(const QString& key, const QStringList& value) override { stored.setStringArray(key, value); }
    void setBoolean(const QString& key, bool value) override { stored.setBoolean(key, value); }
    void remove(const QString& key) override { stored.remove(key); }
    void synchronize() override { stored.synchronize(); }

    MemoryUserDefaults stored;
};

QCoro::Task<void> waitAndNote(QFuture<void> gate, bool& isDone) {
    co_await gate;
    isDone = true;
}

} // namespace

TEST_F(SessionTest, readsNoProfileAndLogsNothingBeforeItIsAskedTo) {
    EXPECT_EQ(files.list(u"/"_s), QStringList(u"Library"_s)) << "the Mac's own";
    EXPECT_EQ(session->system.logMessages(), QStringList());
    EXPECT_EQ(takeSteps(), QStringList());
    EXPECT_EQ(takeTrace(), u"\n"_s);
}

TEST_F(SessionTest, shuttingDownWaitsForTasks) {
    QPromise<void> gate;
    gate.start();
    bool isDone = false;
    session->tasks.start(waitAndNote(gate.future(), isDone));
    QCoro::Task<void> shutDown = session->shutDown();
    EXPECT_TRUE(commands.isShutDown());
    QTimer::singleShot(0, [&gate] { gate.finish(); });
    QCoro::waitFor(shutDown);
    EXPECT_TRUE(isDone);
}

TEST_F(SessionTest, shuttingDownEndsAFlowThatHangs) {
    commands.hold();
    session->tasks.start(session->systemActions.saveSnapshot({}, SystemManager::MasterArchive::No, *listener));
    EXPECT_TRUE(session->system.isBusy());
    QCoro::waitFor(session->shutDown());
    EXPECT_EQ(session->tasks.count(), 0);
    EXPECT_FALSE(session->system.isBusy());
}

TEST_F(SessionTest, withoutALockItNeverLooksForOne) {
    ForbiddenLock preferences;
    preferences.setBoolean(kQuorvaneAppLockEnabled, true);
    const Host withPreferences{
        commands, scripts, files,    preferences, machine,  propertyLists,       bundles,    permissions,
        cloud,    clock,   keychain, biometrics,  displays, systemNotifications, filePanels, loginService};
    const auto makeLabel = [this](SystemManager&) { return std::make_unique<RecordingLabel>(steps); };
    Session unlocked(withPreferences, SessionParts{[] { return std::make_unique<OpenGate>(); }, makeLabel, [] {}});
    RecordingListener terminal(steps, alerts, unlocked.scans);
    const UnifiedProfile profile = numberedProfile(1, u"Live"_s);
    EXPECT_TRUE(ending(unlocked.profileActions.review(profile, terminal)).wasCarriedOut);
    EXPECT_TRUE(ending(unlocked.maintenanceActions.execute({true, true, true}, terminal)).wasCarriedOut);
    EXPECT_TRUE(ending(unlocked.settingsActions.removeLabel(terminal)).wasCarriedOut);
    EXPECT_TRUE(ending(unlocked.systemActions.reinstate(terminal)).wasCarriedOut);
    QCoro::waitFor(unlocked.finished());
    EXPECT_FALSE(preferences.stored.writtenKeys.mid(1).contains(kQuorvaneAppLockEnabled));
    EXPECT_TRUE(preferences.stored.values.value(kQuorvaneAppLockEnabled).toBool());
    EXPECT_TRUE(keychain.items.isEmpty());
}

} // namespace quorvane
