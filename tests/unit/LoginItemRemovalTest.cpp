#include "startup/login/LoginItemRemoval.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

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

std::optional<LoginItemSelector> byNameAlone(const QString& text) {
    return LoginItemSelector{text, {}};
}

std::optional<LoginItemSelector> byPathAlone(const QString& text) {
    return LoginItemSelector{{}, text};
}

TEST(LoginItemRemoval, anItemGoesByItsNameUnlessOneThatStaysHasTheSame) {
    struct Row {
        QString name;
        QString path;
        std::optional<LoginItemSelector> byName;
    };
    const LoginItemRemoval removal({{u"Helper"_s, u"/Applications/Stays.app"_s, false},
                                    {u"Caf\u00e9"_s, u"/Applications/\u00dcber.app"_s, false}});
    const QList<Row> rows{
        {u"Other"_s, u"/x"_s, byNameAlone(u"Other"_s)},
        {u"Other"_s, u""_s, byNameAlone(u"Other"_s)},
        {u"Other"_s, u"/Applications/Stays.app"_s, byNameAlone(u"Other"_s)},
        {u"Helper"_s, u"/x"_s, LoginItemSelector{u"Helper"_s, u"/x"_s}},
        {u"HELPER"_s, u"/x"_s, LoginItemSelector{u"HELPER"_s, u"/x"_s}},         // System Events ignores case
        {u"Cafe\u0301"_s, u"/x"_s, LoginItemSelector{u"Cafe\u0301"_s, u"/x"_s}}, // and how an accent is written
        {u"CAFE\u0301"_s, u"/x"_s, LoginItemSelector{u"CAFE\u0301"_s, u"/x"_s}},
        {u"Cafe"_s, u"/x"_s, byNameAlone(u"Cafe"_s)}, // but not the accent
        {u"Helper "_s, u"/x"_s, byNameAlone(u"Helper "_s)},
        {u"Helper"_s, u"/Applications/\u00dcber.app"_s,
         LoginItemSelector{u"Helper"_s, u"/Applications/\u00dcber.app"_s}},
        {u"Helper"_s, u"/Applications/Stays.app"_s, std::nullopt},
        {u"Helper"_s, u"/applications/STAYS.app"_s, std::nullopt},
        {u"Cafe\u0301"_s, u"/Applications/U\u0308ber.app"_s, std::nullopt},
        {u"Helper"_s, u""_s, std::nullopt},
        {u""_s, u"/x"_s, byPathAlone(u"/x"_s)},
        {u""_s, u"/Applications/Stays.app"_s, std::nullopt},
        {u""_s, u""_s, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE((row.name + u" at "_s + row.path).toStdString());
        EXPECT_EQ(removal.byName(row.name, row.path), row.byName);
    }
}

TEST(LoginItemRemoval, anItemGoesByItsPathUnlessOneThatStaysSharesItOrItsName) {
    const LoginItemRemoval removal({{u"Helper"_s, u"/Applications/Stays.app"_s, false}});
    EXPECT_EQ(removal.byPath(u"Other"_s, u"/x"_s), byPathAlone(u"/x"_s));
    EXPECT_EQ(removal.byPath(u"helper"_s, u"/x"_s), (LoginItemSelector{u"helper"_s, u"/x"_s}));
    EXPECT_EQ(removal.byPath(u"Other"_s, u"/applications/stays.app"_s),
              (LoginItemSelector{u"Other"_s, u"/applications/stays.app"_s}));
    EXPECT_EQ(removal.byPath(u"helper"_s, u"/applications/stays.app"_s), std::nullopt);
    EXPECT_EQ(removal.byPath(u"Other"_s, {}), std::nullopt);
}

TEST(LoginItemRemoval, whatGoesByBothHasTwinsThatTheSameEventMayTake) {
    const LoginItem byName{u"HELPER"_s, u"/a"_s, true};
    const LoginItem byPath{u"Other"_s, u"/X"_s, false};
    const LoginItemRemoval removal({byName, {u"Nobody"_s, u"/n"_s, false}, byPath});
    EXPECT_EQ(removal.twinsOf({u"Helper"_s, u"/x"_s}), (QList<LoginItem>{byName, byPath}));
    EXPECT_EQ(removal.twinsOf({u"Helper"_s, {}}), QList<LoginItem>());
    EXPECT_EQ(removal.twinsOf({{}, u"/x"_s}), QList<LoginItem>());
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
    EXPECT_EQ(named.removal.byName(u"Helper"_s, {}), std::nullopt);
    EXPECT_EQ(named.removal.byName(u"Helper"_s, u"/x"_s), byPathAlone(u"/x"_s)) << "a path takes its own item alone";
}

TEST(LoginItemRemoval, anItemThatStaysWithoutAPathHoldsBackNoPath) {
    const LoginItemRemoval removal({{u"Helper"_s, u""_s, false}});
    EXPECT_EQ(removal.byName(u"Helper"_s, u"/x"_s), (LoginItemSelector{u"Helper"_s, u"/x"_s}));
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
    EXPECT_EQ(named.removal.byName(u"A"_s, u"/a"_s), byNameAlone(u"A"_s));
}

TEST(LoginItemRemoval, anItemWhoseNameDiffersInCaseOnlyIsSpared) {
    const NamedLoginItems named =
        namedOf({{u"docker"_s, u"/a"_s, false}, {u"Docker"_s, u"/b"_s, false}}, {u"docker"_s}, {});
    EXPECT_EQ(pathsOf(named.matched), QStringList(u"/a"_s));
    EXPECT_EQ(named.removal.byName(u"docker"_s, u"/a"_s), (LoginItemSelector{u"docker"_s, u"/a"_s}));
}

TEST(LoginItemRemoval, aProtectedItemOfTheSameNameIsSpared) {
    const NamedLoginItems named = namedOf(
        {{u"Helper"_s, u"/Applications/Traktor.app"_s, false}, {u"Helper"_s, u"/b"_s, false}}, {u"Helper"_s}, {});
    EXPECT_EQ(named.matched.size(), 2);
    EXPECT_EQ(named.removal.byName(u"Helper"_s, u"/b"_s), (LoginItemSelector{u"Helper"_s, u"/b"_s}));
    EXPECT_EQ(named.removal.byName(u"Helper"_s, u"/Applications/Traktor.app"_s), std::nullopt);
}

TEST(LoginItemRemoval, anExcludedAgentOfTheSameNameIsSpared) {
    const QList<LoginItem> items{{u"Foo Agent"_s, u"/a"_s, false}, {u"Foo Agent"_s, u"/b"_s, false}};
    const NamedLoginItems named = namedOf(items, {u"Foo Agent"_s}, {u"login:/a"_s});
    EXPECT_EQ(named.removal.byName(u"Foo Agent"_s, u"/b"_s), (LoginItemSelector{u"Foo Agent"_s, u"/b"_s}));
    EXPECT_EQ(named.removal.byName(u"Foo Agent"_s, u"/a"_s), std::nullopt);
}

} // namespace
} // namespace quorvane
