// Actions one after the other in one session, on a simulated Mac.

#include "actions/OpenGate.h"
#include "actions/Session.h"
#include "fakes/SimulatedSystem.h"

namespace quorvane {

namespace {

/// Writes down what it is asked for, and paints nothing.
class NotingLabel final : public ProfileLabel {
public:
    explicit NotingLabel(QStringList& names)
        : m_names(names) {}

    QCoro::Task<void> setOverlayEnabled(bool, QString) override { co_return; }
    QCoro::Task<void> updateAtStart(QString) override { co_return; }
    QCoro::Task<void> updateForAppliedProfile(QString name) override {
        m_names.append(name);
        co_return;
    }
    QCoro::Task<void> refreshForProfile(QString name) override {
        m_names.append(name);
        co_return;
    }
    QCoro::Task<void> finished() override { co_return; }
    bool isOverlayInPlace() const override { return false; }
    bool hasAnimatedPicture() const override { return false; }

private:
    QStringList& m_names;
};

/// Agrees to everything.
class AgreeingListener final : public ActionListener {
public:
    bool asks() const override { return true; }
    QCoro::Task<bool> ask(Alert) override { co_return true; }
    QCoro::Task<void> tell(ClosingAlert) override { co_return; }
    QCoro::Task<bool> review(Review) override { co_return true; }
    QCoro::Task<void> showResult(ResultPanel) override { co_return; }
    void withdrawReview() override {}
    void showSheet(std::shared_ptr<SheetModel>) override {}
    QCoro::Task<void> readAnew(Anew) override { co_return; }
};

class SessionOnSimulatedMac : public SimulatedSystem {
public:
    ~SessionOnSimulatedMac() override { QCoro::waitFor(session.shutDown()); }

protected:
    static ActionOutcome ending(QCoro::Task<ActionOutcome> action) { return QCoro::waitFor(std::move(action)); }

    QStringList labels;
    AgreeingListener listener;
    Session session{host->host(), SessionParts{[] { return std::make_unique<OpenGate>(); },
                                               [this](SystemManager&) { return std::make_unique<NotingLabel>(labels); },
                                               [this] { host->shutDown(); }}};
};

} // namespace

TEST_F(SessionOnSimulatedMac, anUndoneProfileIsKeptButNotVerified) {
    const UnifiedProfile profile = exampleProfile(u"live-set"_s);
    session.profileStore.saveProfile(profile);
    const ActionOutcome applied = ending(session.profileActions.review(profile, listener));
    ASSERT_TRUE(applied.succeeded);
    ASSERT_TRUE(applied.verification->failed.isEmpty());
    ASSERT_TRUE(ending(session.tweakActions.undo(listener)).succeeded);
    EXPECT_EQ(session.system.lastApplyVerification(), std::nullopt);

    shell(u"defaults write com.apple.NetworkBrowser DisableAirDrop -bool YES"_s); // so that it isn't Default either
    QCoro::waitFor(session.finished());
    labels.clear();
    QStringList posted;
    QObject::connect(&session.notifications, &NotificationCenter::posted,
                     [&posted](const QString& name) { posted.append(name); });
    const ActionOutcome scanned = ending(session.systemActions.verify(listener));
    QCoro::waitFor(session.finished());
    EXPECT_FALSE(scanned.succeeded);
    EXPECT_EQ(scanned.match,
              (SystemConfigurationMatch{profile.name, MatchedConfigurationKind::savedProfile, {}, true}));
    EXPECT_EQ(scanned.alert->title, u"No Match Found"_s);
    EXPECT_EQ(posted, QStringList());
    EXPECT_EQ(labels, QStringList());
    EXPECT_TRUE(session.activeProfile.current().isKept);
}

} // namespace quorvane
