// Preferences in the store of a simulated Mac: the contract, what stands in the store, and writes that fail.

#include "platform/simulated/SimulatedUserDefaults.h"
#include "contract/UserDefaultsContract.h"
#include "fakes/SimulatedMacFolder.h"
#include "simulator/PreferenceStore.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using macsim::PropertyList;

const macsim::PreferenceDomain kOwnDomain{u"com.quorvane.app"_s};

class SimulatedDefaultsSubject final : public DefaultsSubject {
public:
    UserDefaults& defaults() override { return m_defaults; }
    std::unique_ptr<UserDefaults> another() const override {
        return std::make_unique<SimulatedUserDefaults>(m_mac.mac);
    }
    void write(const QString& key, const QByteArray& xml) override {
        const std::optional<PropertyList> value = macsim::parsePropertyList("<plist>" + xml + "</plist>");
        ASSERT_TRUE(value) << xml.toStdString();
        const macsim::PreferenceStore store(m_mac.mac, m_mac.mac.volume(macsim::Actor::User));
        EXPECT_EQ(store.write(kOwnDomain, key, *value), macsim::PreferenceStore::Outcome::Done);
    }

private:
    macsim::SimulatedMacFolder m_mac;
    SimulatedUserDefaults m_defaults{m_mac.mac};
};

class SimulatedUserDefaultsStore : public ::testing::Test {
protected:
    macsim::PreferenceStore store() const { return {mac.mac, mac.mac.volume(macsim::Actor::User)}; }

    macsim::SimulatedMacFolder mac;
    SimulatedUserDefaults defaults{mac.mac};
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Simulated, UserDefaultsContract,
                         ::testing::Values(&makeSubject<DefaultsSubject, SimulatedDefaultsSubject>));

TEST_F(SimulatedUserDefaultsStore, aValueStandsInItWithItsType) {
    defaults.setStringArray(u"paths"_s, {});
    EXPECT_EQ(store().read(kOwnDomain, u"paths"_s), PropertyList(PropertyList::Array()));
    for (const bool value : {true, false}) {
        defaults.setBoolean(u"switch"_s, value);
        EXPECT_EQ(store().read(kOwnDomain, u"switch"_s), PropertyList(value)) << "not the integer, not a text";
    }
    store().write(kOwnDomain, u"theirs"_s, 7);
    defaults.setString(u"one"_s, u"1"_s);
    defaults.remove(u"one"_s);
    EXPECT_EQ(store().read(kOwnDomain, u"one"_s), std::nullopt);
    EXPECT_EQ(store().read(kOwnDomain, u"theirs"_s), PropertyList(7));
}

TEST_F(SimulatedUserDefaultsStore, aWriteThatFailsIsNotReported) {
    const macsim::Volume volume = mac.mac.volume(macsim::Actor::User);
    volume.createFolders(store().filePath(kOwnDomain) + u"/in the way"_s);
    EXPECT_NO_THROW(defaults.setString(u"name"_s, u"Live"_s));
    EXPECT_NO_THROW(defaults.setStringArray(u"paths"_s, {u"/Applications/A.app"_s}));
    EXPECT_NO_THROW(defaults.setBoolean(u"switch"_s, true));
    EXPECT_FALSE(defaults.boolean(u"switch"_s));
    EXPECT_EQ(defaults.string(u"name"_s), std::nullopt);
    EXPECT_EQ(defaults.stringArray(u"paths"_s), QStringList());
    EXPECT_TRUE(volume.exists(store().filePath(kOwnDomain) + u"/in the way"_s));
}

TEST_F(SimulatedUserDefaultsStore, aTextThatNoPropertyListHoldsIsLeftOut) {
    defaults.setString(u"name"_s, u"before"_s);
    EXPECT_NO_THROW(defaults.setString(u"name"_s, u"a\0b"_s));
    EXPECT_EQ(defaults.string(u"name"_s), u"before"_s);
}

} // namespace quorvane
