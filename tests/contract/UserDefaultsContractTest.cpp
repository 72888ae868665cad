// What the program's preferences promise, on the store of a simulated Mac.

#include "fakes/SimulatedMacFolder.h"
#include "platform/simulated/SimulatedUserDefaults.h"
#include "simulator/PreferenceStore.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using macsim::PropertyList;

const macsim::PreferenceDomain kOwnDomain{u"com.quorvane.app"_s};

class UserDefaultsContract : public ::testing::Test {
protected:
    macsim::PreferenceStore store() const { return {mac.mac, mac.mac.volume(macsim::Actor::User)}; }
    /// Writes a value as another program might.
    void write(const QString& key, const PropertyList& value) {
        EXPECT_EQ(store().write(kOwnDomain, key, value), macsim::PreferenceStore::Outcome::Done);
    }

    macsim::SimulatedMacFolder mac;
    SimulatedUserDefaults defaults{mac.mac};
};

} // namespace

TEST_F(UserDefaultsContract, aStringIsReadAsItWasWritten) {
    for (const QString& text : {u"Live"_s, u""_s, u" two  words\n"_s, u"Día 音楽 🎛 \"'\\"_s}) {
        defaults.setString(u"name"_s, text);
        EXPECT_EQ(defaults.string(u"name"_s), text);
        EXPECT_EQ(SimulatedUserDefaults(mac.mac).string(u"name"_s), text);
    }
}

TEST_F(UserDefaultsContract, anArrayIsReadAsItWasWritten) {
    const QStringList paths{u"/Applications/Zoë.app"_s, u""_s, u"/Applications/A.app"_s, u"/Applications/A.app"_s};
    defaults.setStringArray(u"paths"_s, paths);
    EXPECT_EQ(defaults.stringArray(u"paths"_s), paths);
    defaults.setStringArray(u"paths"_s, {});
    EXPECT_EQ(defaults.stringArray(u"paths"_s), QStringList());
    EXPECT_EQ(store().read(kOwnDomain, u"paths"_s), PropertyList(PropertyList::Array()));
}

TEST_F(UserDefaultsContract, aBooleanIsReadAsItWasWritten) {
    for (const bool value : {true, false, true}) {
        defaults.setBoolean(u"switch"_s, value);
        EXPECT_EQ(defaults.boolean(u"switch"_s), value);
        EXPECT_EQ(SimulatedUserDefaults(mac.mac).boolean(u"switch"_s), value);
        EXPECT_EQ(store().read(kOwnDomain, u"switch"_s), PropertyList(value)) << "not the integer, not a text";
    }
}

TEST_F(UserDefaultsContract, aWriteKeepsTheOtherKeys) {
    write(u"theirs"_s, 7);
    defaults.setString(u"one"_s, u"1"_s);
    defaults.setStringArray(u"two"_s, {u"2"_s});
    defaults.setBoolean(u"three"_s, true);
    defaults.setString(u"one"_s, u"3"_s);
    EXPECT_EQ(defaults.string(u"one"_s), u"3"_s);
    EXPECT_TRUE(defaults.boolean(u"three"_s));
    EXPECT_EQ(defaults.stringArray(u"two"_s), QStringList(u"2"_s));
    EXPECT_EQ(store().read(kOwnDomain, u"theirs"_s), PropertyList(7));
}

TEST_F(UserDefaultsContract, whatIsRemovedIsMissing) {
    defaults.setString(u"one"_s, u"1"_s);
    defaults.setString(u"two"_s, u"2"_s);
    defaults.remove(u"one"_s);
    defaults.remove(u"never there"_s);
    defaults.synchronize();
    EXPECT_EQ(defaults.string(u"one"_s), std::nullopt);
    EXPECT_EQ(defaults.string(u"two"_s), u"2"_s);
    EXPECT_EQ(store().read(kOwnDomain, u"one"_s), std::nullopt);
}

TEST_F(UserDefaultsContract, aMissingKeyIsNone) {
    EXPECT_EQ(defaults.string(u"missing"_s), std::nullopt);
    EXPECT_EQ(defaults.stringArray(u"missing"_s), QStringList());
    EXPECT_FALSE(defaults.boolean(u"missing"_s));
    defaults.setString(u"Missing"_s, u"another key"_s);
    EXPECT_EQ(defaults.string(u"missing"_s), std::nullopt);
    defaults.setBoolean(u"MISSING"_s, true);
    EXPECT_FALSE(defaults.boolean(u"missing"_s));
}

TEST_F(UserDefaultsContract, aValueOfAnotherTypeIsNone) {
    write(u"number"_s, 1);
    write(u"switch"_s, true);
    write(u"text"_s, u"x"_s);
    write(u"mixed"_s, PropertyList::Array{u"a"_s, 1});
    write(u"nested"_s, PropertyList::Array{PropertyList::Array{u"a"_s}});
    for (const QString& key : {u"number"_s, u"switch"_s, u"mixed"_s, u"nested"_s}) {
        EXPECT_EQ(defaults.string(key), std::nullopt) << key.toStdString();
    }
    for (const QString& key : {u"number"_s, u"switch"_s, u"text"_s, u"mixed"_s, u"nested"_s}) {
        EXPECT_EQ(defaults.stringArray(key), QStringList()) << key.toStdString();
    }
    write(u"yes"_s, u"YES"_s);
    for (const QString& key : {u"number"_s, u"text"_s, u"yes"_s, u"mixed"_s}) {
        EXPECT_FALSE(defaults.boolean(key)) << key.toStdString();
    }
}

TEST_F(UserDefaultsContract, aWriteReplacesAValueOfAnotherType) {
    write(u"key"_s, PropertyList::Array{u"a"_s, 1});
    defaults.setString(u"key"_s, u"text"_s);
    EXPECT_EQ(defaults.string(u"key"_s), u"text"_s);
    defaults.setStringArray(u"key"_s, {u"b"_s});
    EXPECT_EQ(defaults.string(u"key"_s), std::nullopt);
    EXPECT_EQ(defaults.stringArray(u"key"_s), QStringList(u"b"_s));
    defaults.setBoolean(u"key"_s, true);
    EXPECT_TRUE(defaults.boolean(u"key"_s));
    EXPECT_EQ(defaults.stringArray(u"key"_s), QStringList());
}

TEST_F(UserDefaultsContract, aWriteThatFailsIsNotReported) {
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

TEST_F(UserDefaultsContract, aTextThatNoPropertyListHoldsIsLeftOut) {
    defaults.setString(u"name"_s, u"before"_s);
    EXPECT_NO_THROW(defaults.setString(u"name"_s, u"a\0b"_s));
    EXPECT_EQ(defaults.string(u"name"_s), u"before"_s);
}

} // namespace quorvane
