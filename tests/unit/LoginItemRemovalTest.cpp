#include "startup/login/LoginItemRemoval.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Means = LoginItemRemoval::Means;

QStringList pathsOf(const QList<LoginItem>& items) {
    QStringList paths;
    for (const LoginItem& item : items) {
        paths.append(item.path);
    }
    return paths;
}

/// Of a list that System Events gave.
NamedLoginItems namedOf(const QList<LoginItem>& items, const QStringList& names,
                        const QSet<QString>& excludedIds = {}) {
    return namedLoginItems({items, true}, names, excludedIds);
}

TEST(LoginItemRemoval, anItemGoesByItsNameUnlessOneThatStaysHasTheSame) {
    struct Row {
        QString name;
        QString path;
        Means means;
    };
    const LoginItemRemoval removal({{u"Helper"_s, u"/Applications/Stays.app"_s, false},
                                    {u"Caf\u00e9"_s, u"/Applications/\u00dcber.app"_s, false}});
    const QList<Row> rows{
        {u"Other"_s, u"/x"_s, Means::ByName},
        {u"Other"_s, u""_s, Means::ByName},
        {u"Other"_s, u"/Applications/Stays.app"_s, Means::ByName},
        {u"Helper"_s, u"/x"_s, Means::ByPath},
        {u"HELPER"_s, u"/x"_s, Means::ByPath},     // System Events ignores case
        {u"Cafe\u0301"_s, u"/x"_s, Means::ByPath}, // and how an accent is written
        {u"CAFE\u0301"_s, u"/x"_s, Means::ByPath},
        {u"Cafe"_s, u"/x"_s, Means::ByName}, // but not the accent
        {u"Helper "_s, u"/x"_s, Means::ByName},
        {u"Helper"_s, u"/Applications/Stays.app"_s, Means::None},
        {u"Helper"_s, u"/applications/STAYS.app"_s, Means::None},
        {u"Helper"_s, u"/Applications/U\u0308ber.app"_s, Means::None},
        {u"Helper"_s, u""_s, Means::None},
        {u""_s, u"/x"_s, Means::ByPath},
        {u""_s, u""_s, Means::None},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE((row.name + u" at "_s + row.path).toStdString());
        EXPECT_EQ(removal.meansFor(row.name, row.path), row.means);
    }
}

TEST(LoginItemRemoval, whenNothingStaysEveryNameAndPathCanBeUsed) {
    const LoginItemRemoval removal({});
    EXPECT_TRUE(removal.canGoByName(u"Helper"_s));
    EXPECT_TRUE(removal.canGoByPath(u"/x"_s));
    EXPECT_FALSE(removal.canGoByName({}));
    EXPECT_FALSE(removal.canGoByPath({}));
}

TEST(LoginItemRemoval, withoutAListNoNameIsUsedBecauseNobodyKnowsWhomItWouldTake) {
    const NamedLoginItems named = namedLoginItems(LoginItemList(), QStringList(u"Helper"_s), {});
    EXPECT_EQ(named.leftover, QStringList(u"Helper"_s));
    EXPECT_EQ(named.removal.meansFor(u"Helper"_s, {}), Means::None);
    EXPECT_TRUE(named.removal.canGoByPath(u"/x"_s)) << "a path takes its own item alone";
}

TEST(LoginItemRemoval, anItemThatStaysWithoutAPathHoldsBackNoPath) {
    const LoginItemRemoval removal({{u"Helper"_s, u""_s, false}});
    EXPECT_EQ(removal.meansFor(u"Helper"_s, u"/x"_s), Means::ByPath);
}

TEST(LoginItemRemoval, anExcludedAgentIsKnownByItsIdOrItsName) {
    const LoginItem agent{u"Foo Agent"_s, u"/Applications/Foo.app"_s, false};
    EXPECT_TRUE(isExcludedAgent(agent, {u"login:/Applications/Foo.app"_s}));
    EXPECT_TRUE(isExcludedAgent(agent, {u"Foo Agent"_s}));
    EXPECT_FALSE(isExcludedAgent(agent, {u"login:Foo Agent"_s, u"foo agent"_s, u"/Applications/Foo.app"_s}));
    EXPECT_FALSE(isExcludedAgent(agent, {}));
    EXPECT_TRUE(isExcludedAgent({u"Foo Agent"_s, u""_s, false}, {u"login:Foo Agent"_s}));
}

TEST(LoginItemRemoval, whatIsNoAgentIsNeverExcluded) {
    EXPECT_FALSE(
        isExcludedAgent({u"Foo"_s, u"/Applications/Foo.app"_s, false}, {u"Foo"_s, u"login:/Applications/Foo.app"_s}));
}

TEST(LoginItemRemoval, namesMatchExactlyAndTheRestIsLeftOver) {
    const NamedLoginItems named = namedOf({{u"B"_s, u"/b"_s, false},
                                           {u"a"_s, u"/a"_s, false},
                                           {u"A"_s, u"/A"_s, false},
                                           {u"B"_s, u"/b2"_s, true},
                                           {u"C"_s, u"/c"_s, false}},
                                          {u"A"_s, u"Gone"_s, u"B"_s}, {});
    EXPECT_EQ(pathsOf(named.matched), (QStringList{u"/b"_s, u"/A"_s, u"/b2"_s}));
    EXPECT_EQ(named.leftover, QStringList(u"Gone"_s));
}

TEST(LoginItemRemoval, aNameThatIsGivenTwiceIsLeftOverOnce) {
    EXPECT_EQ(namedOf({}, {u"Gone"_s, u"Gone"_s, u"Lost"_s}, {}).leftover, (QStringList{u"Gone"_s, u"Lost"_s}));
}

TEST(LoginItemRemoval, itemsOfOneNameThatAllGoAreRemovedByIt) {
    const NamedLoginItems named = namedOf({{u"A"_s, u"/a"_s, false}, {u"A"_s, u"/a2"_s, false}}, {u"A"_s}, {});
    EXPECT_EQ(named.removal.meansFor(u"A"_s, u"/a"_s), Means::ByName);
}

TEST(LoginItemRemoval, anItemWhoseNameDiffersInCaseOnlyIsSpared) {
    const NamedLoginItems named =
        namedOf({{u"docker"_s, u"/a"_s, false}, {u"Docker"_s, u"/b"_s, false}}, {u"docker"_s}, {});
    EXPECT_EQ(pathsOf(named.matched), QStringList(u"/a"_s));
    EXPECT_EQ(named.removal.meansFor(u"docker"_s, u"/a"_s), Means::ByPath);
}

TEST(LoginItemRemoval, aProtectedItemOfTheSameNameIsSpared) {
    const NamedLoginItems named = namedOf(
        {{u"Helper"_s, u"/Applications/Traktor.app"_s, false}, {u"Helper"_s, u"/b"_s, false}}, {u"Helper"_s}, {});
    EXPECT_EQ(named.matched.size(), 2);
    EXPECT_EQ(named.removal.meansFor(u"Helper"_s, u"/b"_s), Means::ByPath);
    EXPECT_EQ(named.removal.meansFor(u"Helper"_s, u"/Applications/Traktor.app"_s), Means::None);
}

TEST(LoginItemRemoval, anExcludedAgentOfTheSameNameIsSpared) {
    const QList<LoginItem> items{{u"Foo Agent"_s, u"/a"_s, false}, {u"Foo Agent"_s, u"/b"_s, false}};
    const NamedLoginItems named = namedOf(items, {u"Foo Agent"_s}, {u"login:/a"_s});
    EXPECT_EQ(named.removal.meansFor(u"Foo Agent"_s, u"/b"_s), Means::ByPath);
    EXPECT_EQ(named.removal.meansFor(u"Foo Agent"_s, u"/a"_s), Means::None);
}

} // namespace
} // namespace quorvane
