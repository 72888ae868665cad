#include "profiles/ProfileNames.h"

#include <gtest/gtest.h>

#include <utility>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

TEST(ProfileNames, separatorsBecomeHyphensAndBlanksAtTheEndsGo) {
    const std::pair<QString, QString> cases[] = {
        {u"Live"_s, u"Live"_s},
        {u"a/b"_s, u"a-b"_s},
        {u"a//b"_s, u"a--b"_s},
        {u"a:b\\c/d"_s, u"a-b-c-d"_s},
        {u" \t\n Live / Set \u00a0\n"_s, u"Live - Set"_s},
        {u"/ Live /"_s, u"- Live -"_s},
        {u"../x"_s, u"..-x"_s},
        {u"  \n "_s, u""_s},
        {u""_s, u""_s},
        {u"/"_s, u"-"_s},
        {u"Été *?\"<>|."_s, u"Été *?\"<>|."_s},
    };
    for (const auto& [name, sanitized] : cases) {
        SCOPED_TRACE(name.toStdString());
        EXPECT_EQ(sanitizedProfileName(name), sanitized);
        EXPECT_EQ(sanitizedProfileName(sanitized), sanitized);
    }
}

TEST(ProfileNames, onlyASanitizedNameIsAFileName) {
    for (const QString& name : {u"Live"_s, u"a-b"_s, u"..-x"_s, u"."_s, u".."_s, u".hidden"_s, u"a b"_s}) {
        EXPECT_TRUE(isProfileFileName(name)) << name.toStdString();
    }
    for (const QString& name : {u""_s, u" "_s, u" Live"_s, u"Live\n"_s, u"a/b"_s, u"../x"_s, u"/x"_s, u"a:b"_s,
                                u"a\\b"_s, u"a"_s + QChar(u'\0') + u"b"_s}) {
        EXPECT_FALSE(isProfileFileName(name)) << name.toStdString();
    }
}

TEST(ProfileNames, aFreeNameIsKept) {
    EXPECT_EQ(uniqueProfileName(u"Live"_s, {}), u"Live"_s);
    EXPECT_EQ(uniqueProfileName(u""_s, {}), u""_s);
    EXPECT_EQ(uniqueProfileName(u"Live"_s, {u"gig"_s}), u"Live"_s);
}

TEST(ProfileNames, aUsedNameGetsTheFirstFreeNumber) {
    EXPECT_EQ(uniqueProfileName(u"LIVE"_s, {u"live"_s}), u"LIVE 2"_s);
    EXPECT_EQ(uniqueProfileName(u"Live"_s, {u"live"_s, u"live 2"_s, u"live 4"_s}), u"Live 3"_s);
    EXPECT_EQ(uniqueProfileName(u"Live 2"_s, {u"live 2"_s}), u"Live 2 2"_s);
    EXPECT_EQ(uniqueProfileName(u"100%1 %2"_s, {u"100%1 %2"_s}), u"100%1 %2 2"_s);
}

TEST(ProfileNames, namesConflictInAnyCaseAndComposition) {
    EXPECT_EQ(profileNameKey(u"LIVE"_s), profileNameKey(u"live"_s));
    EXPECT_EQ(profileNameKey(u"E\u0301"_s), profileNameKey(u"\u00e9"_s));
    EXPECT_NE(profileNameKey(u"e"_s), profileNameKey(u"é"_s));
    EXPECT_EQ(profileNameKey(u"ΣΟΛΟΣ"_s), profileNameKey(u"σολος"_s)) << "a final sigma";
    EXPECT_EQ(profileNameKey(u" Live/Set\n"_s), profileNameKey(u"live-set"_s)) << "as they are saved";
    EXPECT_EQ(uniqueProfileName(u"Cafe\u0301"_s, {profileNameKey(u"Café"_s)}), u"Cafe\u0301 2"_s);
}

} // namespace
} // namespace quorvane
