#include "core/Collation.h"

#include <gtest/gtest.h>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

QStringList sorted(QStringList names) {
    sortLocalized(names, [](const QString& name) { return name; });
    return names;
}

TEST(Collation, caseDoesNotCountInTheOrder) {
    EXPECT_EQ(sorted({u"b"_s, u"C"_s, u"A"_s, u"c2"_s, u"B2"_s}),
              (QStringList{u"A"_s, u"b"_s, u"B2"_s, u"C"_s, u"c2"_s}));
}

TEST(Collation, accentsStandBesideTheirLetters) {
    EXPECT_EQ(sorted({u"Zoom"_s, u"éclair"_s, u"Fader"_s, u"Eclipse"_s}),
              (QStringList{u"éclair"_s, u"Eclipse"_s, u"Fader"_s, u"Zoom"_s}));
}

TEST(Collation, equalNamesKeepTheirOrder) {
    struct Row {
        QString name;
        int number;
    };
    QList<Row> rows;
    for (int number = 0; number < 1000; ++number) {
        rows.append({number % 2 == 0 ? u"Live"_s : u"LIVE"_s, number});
    }
    rows.append({u"Audio"_s, 1000});
    sortLocalized(rows, &Row::name);

    EXPECT_EQ(rows.first().number, 1000);
    rows.removeFirst();
    EXPECT_TRUE(std::is_sorted(rows.begin(), rows.end(),
                               [](const Row& left, const Row& right) { return left.number < right.number; }));
}

TEST(Collation, whatComesBehindNamesInOrderFindsItsPlaceBehindItsEquals) {
    struct Row {
        QString name;
        int number;
    };
    QList<Row> rows;
    int number = 0;
    for (const QString& name : {u"Audio"_s, u"Live"_s, u"live"_s, u"Zoom"_s, u"LIVE"_s, u"audio"_s, u"Yoga"_s}) {
        rows.append({name, number++});
    }
    sortLocalized(rows, &Row::name);
    QList<int> order;
    for (const Row& row : std::as_const(rows)) {
        order.append(row.number);
    }
    EXPECT_EQ(order, (QList<int>{0, 5, 1, 2, 4, 6, 3}));
}

TEST(Collation, oneHundredThousandNamesAreSorted) {
    constexpr int kNames = 100000;
    QStringList names;
    for (int number = 0; number < kNames; ++number) {
        names.append(u"item %1"_s.arg((number * 7919) % kNames, 6, 10, QChar(u'0')));
    }
    const QStringList result = sorted(names);
    for (int number = 0; number < kNames; ++number) {
        ASSERT_EQ(result.at(number), u"item %1"_s.arg(number, 6, 10, QChar(u'0')));
    }
}

TEST(Collation, namesAreEqualInAnyCaseButNotWithoutTheirAccents) {
    EXPECT_TRUE(localizedCaseInsensitiveEqual(u"Live Set"_s, u"LIVE SET"_s));
    EXPECT_TRUE(localizedCaseInsensitiveEqual(u"É"_s, u"é"_s));
    EXPECT_TRUE(localizedCaseInsensitiveEqual(u"\u00e9"_s, u"e\u0301"_s));
    EXPECT_FALSE(localizedCaseInsensitiveEqual(u"cafe"_s, u"café"_s));
    EXPECT_FALSE(localizedCaseInsensitiveEqual(u"Live"_s, u"Live "_s));
    EXPECT_FALSE(localizedCaseInsensitiveEqual(u"Live"_s, u"Live-"_s));
    EXPECT_FALSE(localizedCaseInsensitiveEqual(u""_s, u"a"_s));
}

} // namespace
} // namespace quorvane
