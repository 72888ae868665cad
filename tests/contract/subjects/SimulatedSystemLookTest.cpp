// The simulated Mac's look: the contract, and what it makes of what others write.

#include "platform/simulated/SimulatedSystemLook.h"
#include "contract/SystemLookContract.h"
#include "fakes/SimulatedMacFolder.h"
#include "simulator/PreferenceStore.h"
#include "simulator/tools/Registry.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Whose user types into a terminal.
class SimulatedLookSubject final : public LookSubject {
public:
    SystemLook& look() override { return m_look; }
    void setDark(bool isDark) override {
        defaults(isDark ? QStringList{u"write"_s, u"-g"_s, u"AppleInterfaceStyle"_s, u"Dark"_s}
                        : QStringList{u"delete"_s, u"-g"_s, u"AppleInterfaceStyle"_s});
    }
    void setReducesMotion(bool isOn) override { set(u"reduceMotion"_s, isOn); }
    void setIncreasesContrast(bool isOn) override { set(u"increaseContrast"_s, isOn); }

private:
    void set(const QString& key, bool isOn) {
        defaults({u"write"_s, u"com.apple.universalaccess"_s, key, u"-bool"_s, isOn ? u"true"_s : u"false"_s});
    }
    void defaults(QStringList arguments) {
        const QString tool = u"/usr/bin/defaults"_s;
        arguments.prepend(tool);
        macsim::ToolContext context = m_mac.context(arguments);
        EXPECT_EQ(m_mac.tools.value(tool)(context), 0) << context.error.toStdString();
    }

    macsim::SimulatedMacFolder m_mac{macsim::simulatorTools()};
    SimulatedSystemLook m_look{m_mac.mac};
};

/// What is kept, as others write it.
class SimulatedLook : public ::testing::Test {
protected:
    void write(const QString& domain, const QString& key, const macsim::PropertyList& value) {
        const macsim::PreferenceStore store(mac.mac, mac.mac.volume(macsim::Actor::User));
        store.write({domain}, key, value);
    }

    macsim::SimulatedMacFolder mac;
    SimulatedSystemLook look{mac.mac};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, SystemLookContract,
                         ::testing::Values(&makeSubject<LookSubject, SimulatedLookSubject>));

TEST_F(SimulatedLook, onlyTheStyleThatMacOSWritesIsDark) {
    for (const macsim::PropertyList& style :
         {macsim::PropertyList(u"Light"_s), macsim::PropertyList(u"dark"_s), macsim::PropertyList(true)}) {
        write(macsim::kGlobalDomain.toString(), u"AppleInterfaceStyle"_s, style);
        EXPECT_EQ(look.scheme(), ColorScheme::Light);
    }
}

TEST_F(SimulatedLook, aSwitchMayBeANumberAndIsOffAsAnythingElse) {
    const auto isOnAs = [this](const macsim::PropertyList& value) {
        write(u"com.apple.universalaccess"_s, u"reduceMotion"_s, value);
        return look.reducesMotion();
    };
    EXPECT_TRUE(isOnAs(1));
    EXPECT_FALSE(isOnAs(0));
    EXPECT_FALSE(isOnAs(u"soon"_s));
    EXPECT_FALSE(isOnAs(macsim::PropertyList::Array()));
}

TEST_F(SimulatedLook, otherPreferencesAreNoneOfItsBusiness) {
    int heard = 0;
    const auto observation = look.observe([&heard] { ++heard; });
    write(u"com.apple.dock"_s, u"autohide"_s, true);
    write(u"com.apple.universalaccess"_s, u"reduceTransparency"_s, true);
    write(macsim::kGlobalDomain.toString(), u"AppleInterfaceStyle"_s, u"Light"_s);
    write(u"com.apple.universalaccess"_s, u"reduceMotion"_s, true);
    processEventsUntil([&] { return heard > 0; });
    EXPECT_EQ(heard, 1);
}

} // namespace quorvane
