// What a simulated Mac tells all programs. The watcher hears of changes in their order: where a change must not be heard, a later
// one that is heard shows that its time is over.

#include "platform/simulated/SimulatedNotifications.h"
#include "contract/SystemNotificationsContract.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/SimulatedSystemLook.h"
#include "simulator/PreferenceStore.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kDesktop = u"com.apple.desktop"_s;
const QString kTheme = u"AppleInterfaceThemeChangedNotification"_s;

/// What others do on a simulated Mac that programs are told of.
class NotifyingMac {
public:
    /// As another process does it.
    void change(const char* subject) {
        const macsim::StateStore store(folder.hostFolder() + macsim::kStateFolder.toString());
        store.update(subject, [this](macsim::Json& state) { state = macsim::Json{{"change", ++m_changes}}; });
    }
    /// As the user does it in the settings, or anybody by `defaults`.
    void setStyle(const QString& style) const {
        const macsim::PreferenceStore store(folder.mac, folder.mac.volume(macsim::Actor::User));
        store.write({macsim::kGlobalDomain.toString()}, u"AppleInterfaceStyle"_s, style);
    }
    void changeTheme() const {
        const bool isDark = SimulatedSystemLook(folder.mac).scheme() == ColorScheme::Dark;
        setStyle(isDark ? u"Light"_s : u"Dark"_s);
    }

    macsim::SimulatedMacFolder folder;
    SimulatedNotifications notifications{folder.mac};

private:
    int m_changes = 0;
};

class SimulatedNotificationsSubject final : public NotificationsSubject {
public:
    SystemNotifications& notifications() override { return m_mac.notifications; }
    QString firstName() const override { return kDesktop; }
    QString secondName() const override { return kTheme; }
    void post(const QString& name) override {
        if (name == kDesktop) {
            m_mac.change("displays");
        } else {
            m_mac.changeTheme();
        }
    }

private:
    NotifyingMac m_mac;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, SystemNotificationsContract,
                         ::testing::Values(&makeSubject<NotificationsSubject, SimulatedNotificationsSubject>));

TEST(SimulatedNotifications, whatWasBeforeIsNotHeardAndNothingElseEither) {
    NotifyingMac mac;
    mac.change("displays");
    int desktops = 0;
    int themes = 0;
    int others = 0;
    const auto count = [&mac](const QString& name, int& heard) {
        return mac.notifications.observe(name, [&heard] { ++heard; });
    };
    const auto desktop = count(kDesktop, desktops);
    const auto theme = count(kTheme, themes);
    const auto other = count(u"com.apple.screenIsLocked"_s, others);
    mac.change("power");
    mac.change("processes");
    mac.folder.mac.state().update("displays", [](macsim::Json&) {});
    mac.setStyle(u"Light"_s); // as without one
    mac.changeTheme();
    processEventsUntil([&themes] { return themes > 0; });
    EXPECT_EQ(themes, 1);
    EXPECT_EQ(desktops, 0);
    EXPECT_EQ(others, 0);
}

} // namespace quorvane
