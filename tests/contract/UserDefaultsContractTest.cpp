// What the program's preferences promise in every store.

#include "contract/UserDefaultsContract.h"

namespace quorvane {

using namespace Qt::StringLiterals;

TEST_P(UserDefaultsContract, aStringIsReadAsItWasWritten) {
    for (const QString& text : {u"Live"_s, u""_s, u" two  words\n"_s, u"Día 音楽 🎛 \"'\\"_s}) {
        defaults.setString(u"name"_s, text);
        EXPECT_EQ(defaults.string(u"name"_s), text);
        EXPECT_EQ(subject->another()->string(u"name"_s), text);
    }
}

TEST_P(UserDefaultsContract, anArrayIsReadAsItWasWritten) {
    const QStringList paths{u"/Applications/Zoë.app"_s, u""_s, u"/Applications/A.app"_s, u"/Applications/A.app"_s};
    defaults.setStringArray(u"paths"_s, paths);
    EXPECT_EQ(defaults.stringArray(u"paths"_s), paths);
    defaults.setStringArray(u"paths"_s, {});
    EXPECT_EQ(defaults.stringArray(u"paths"_s), QStringList());
}

TEST_P(UserDefaultsContract, aBooleanIsReadAsItWasWritten) {
    for (const bool value : {true, false, true}) {
        defaults.setBoolean(u"switch"_s, value);
        EXPECT_EQ(defaults.boolean(u"switch"_s), value);
        EXPECT_EQ(subject->another()->boolean(u"switch"_s), value);
    }
}

TEST_P(UserDefaultsContract, aWriteKeepsTheOtherKeys) {
    subject->write(u"theirs"_s, "<string>7</string>");
    defaults.setString(u"one"_s, u"1"_s);
    defaults.setStringArray(u"two"_s, {u"2"_s});
    defaults.setBoolean(u"three"_s, true);
    defaults.setString(u"one"_s, u"3"_s);
    EXPECT_EQ(defaults.string(u"one"_s), u"3"_s);
    EXPECT_TRUE(defaults.boolean(u"three"_s));
    EXPECT_EQ(defaults.stringArray(u"two"_s), QStringList(u"2"_s));
    EXPECT_EQ(defaults.string(u"theirs"_s), u"7"_s);
}

TEST_P(UserDefaultsContract, whatIsRemovedIsMissing) {
    defaults.setString(u"one"_s, u"1"_s);
    defaults.setString(u"two"_s, u"2"_s);
    defaults.remove(u"one"_s);
    defaults.remove(u"never there"_s);
    defaults.synchronize();
    EXPECT_EQ(defaults.string(u"one"_s), std::nullopt);
    EXPECT_EQ(defaults.string(u"two"_s), u"2"_s);
    EXPECT_EQ(subject->another()->string(u"one"_s), std::nullopt);
}

TEST_P(UserDefaultsContract, aMissingKeyIsNone) {
    EXPECT_EQ(defaults.string(u"missing"_s), std::nullopt);
    EXPECT_EQ(defaults.stringArray(u"missing"_s), QStringList());
    EXPECT_FALSE(defaults.boolean(u"missing"_s));
    defaults.setString(u"Missing"_s, u"another key"_s);
    EXPECT_EQ(defaults.string(u"missing"_s), std::nullopt);
    defaults.setBoolean(u"MISSING"_s, true);
    EXPECT_FALSE(defaults.boolean(u"missing"_s));
}

TEST_P(UserDefaultsContract, aValueOfAnotherTypeIsNone) {
    subject->write(u"number"_s, "<integer>1</integer>");
    subject->write(u"switch"_s, "<true/>");
    subject->write(u"text"_s, "<string>x</string>");
    subject->write(u"mixed"_s, "<array><string>a</string><integer>1</integer></array>");
    subject->write(u"nested"_s, "<array><array><string>a</string></array></array>");
    for (const QString& key : {u"number"_s, u"switch"_s, u"mixed"_s, u"nested"_s}) {
        EXPECT_EQ(defaults.string(key), std::nullopt) << key.toStdString();
    }
    for (const QString& key : {u"number"_s, u"switch"_s, u"text"_s, u"mixed"_s, u"nested"_s}) {
        EXPECT_EQ(defaults.stringArray(key), QStringList()) << key.toStdString();
    }
    subject->write(u"yes"_s, "<string>YES</string>");
    for (const QString& key : {u"number"_s, u"text"_s, u"yes"_s, u"mixed"_s}) {
        EXPECT_FALSE(defaults.boolean(key)) << key.toStdString();
    }
}

TEST_P(UserDefaultsContract, aWriteReplacesAValueOfAnotherType) {
    subject->write(u"key"_s, "<array><string>a</string><integer>1</integer></array>");
    defaults.setString(u"key"_s, u"text"_s);
    EXPECT_EQ(defaults.string(u"key"_s), u"text"_s);
    defaults.setStringArray(u"key"_s, {u"b"_s});
    EXPECT_EQ(defaults.string(u"key"_s), std::nullopt);
    EXPECT_EQ(defaults.stringArray(u"key"_s), QStringList(u"b"_s));
    defaults.setBoolean(u"key"_s, true);
    EXPECT_TRUE(defaults.boolean(u"key"_s));
    EXPECT_EQ(defaults.stringArray(u"key"_s), QStringList());
}

} // namespace quorvane
