// The lines of the log without a copy of their text.

#include "ui/logs/LogLines.h"

#include <QRandomGenerator>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class LogLinesTest : public ::testing::Test {
protected:
    void takeAll() {
        while (lines.takeNext()) {
        }
    }
    QStringList all() const {
        QStringList texts;
        for (int number = 0; number < lines.count(); ++number) {
            texts.append(lines.line(number).toString());
        }
        return texts;
    }
    QStringList allBackwards() const {
        QStringList texts;
        for (int number = lines.count() - 1; number >= 0; --number) {
            texts.prepend(lines.line(number).toString());
        }
        return texts;
    }

    QStringList entries;
    LogLines lines{entries};
};

} // namespace

TEST_F(LogLinesTest, anEntryHasAsManyLinesAsItHoldsLineEnds) {
    entries = {u"Ready."_s, u"\n[PROFILE] Applying: Live"_s, u""_s, u"  [STDOUT] one\ntwo\n\nthree"_s, u"\n\n"_s};
    EXPECT_EQ(lines.count(), 0) << "nothing was taken in yet";
    takeAll();
    const QStringList expected = entries.join(u'\n').split(u'\n');
    EXPECT_EQ(all(), expected);
    EXPECT_EQ(allBackwards(), expected);
    EXPECT_FALSE(lines.takeNext());
    entries.append(u"new\nest"_s);
    EXPECT_TRUE(lines.takeNext());
    EXPECT_EQ(lines.count(), expected.size() + 2);
    EXPECT_EQ(lines.line(lines.count() - 1), u"est");
}

TEST_F(LogLinesTest, aLineIsFoundInAnyOrder) {
    QRandomGenerator random(7);
    for (int entry = 0; entry < 200; ++entry) {
        QString text;
        for (int piece = random.bounded(6); piece > 0; --piece) {
            text += random.bounded(2) == 0 ? u"\n"_s : u"word %1"_s.arg(piece);
        }
        entries.append(text);
    }
    takeAll();
    const QStringList expected = entries.join(u'\n').split(u'\n');
    ASSERT_EQ(lines.count(), expected.size());
    for (int look = 0; look < 5000; ++look) {
        const int number = random.bounded(lines.count());
        ASSERT_EQ(lines.line(number), expected.at(number)) << number;
    }
}

TEST_F(LogLinesTest, onlyTheEntriesOfOneTagMayCount) {
    entries = {u"Ready."_s,
               u"  [ERROR] No network"_s,
               u"\n[PROFILE] Applying: Live"_s,
               u"  [OK] On\nand on"_s,
               u"  [ERROR] Disk\nfull\n[OK]"_s,
               u"[error] no tag"_s};
    lines.reset(u"ERROR"_s);
    takeAll();
    EXPECT_EQ(all(), (QStringList{u"  [ERROR] No network"_s, u"  [ERROR] Disk"_s, u"full"_s, u"[OK]"_s}));
    EXPECT_EQ(lines.tags(), (QStringList{u"ERROR"_s, u"OK"_s, u"PROFILE"_s}));
    lines.reset(u"PROFILE"_s);
    EXPECT_EQ(lines.count(), 0);
    takeAll();
    EXPECT_EQ(all(), (QStringList{u""_s, u"[PROFILE] Applying: Live"_s}));
    lines.reset(std::nullopt);
    takeAll();
    EXPECT_EQ(all(), entries.join(u'\n').split(u'\n'));
}

TEST(LogTag, isTheWordInBracketsAtTheBeginning) {
    EXPECT_EQ(logTag(u"  [ERROR] x"), u"ERROR");
    EXPECT_EQ(logTag(u"\n[WHOLE SYSTEM] x"), u"WHOLE SYSTEM");
    EXPECT_EQ(logTag(u"[OK]"), u"OK");
    for (const QStringView none : {u"", u" ", u"x [OK]", u"[", u"[OK", u"[ok]", u"[]", u"[O1]"}) {
        EXPECT_TRUE(logTag(none).isEmpty()) << none.toUtf8().toStdString();
    }
}

TEST_F(LogLinesTest, areThoseOfOtherEntriesFromThenOn) {
    entries = QStringList{u"[OK] one\ntwo"_s, u"three"_s};
    takeAll();
    const QStringList others{u"[ERROR] four"_s, u"five\nsix"_s};
    lines.follow(others);
    lines.reset(std::nullopt);
    EXPECT_EQ(lines.count(), 0);
    takeAll();
    EXPECT_EQ(all(), QStringList({u"[ERROR] four"_s, u"five"_s, u"six"_s}));
    EXPECT_EQ(lines.tags(), QStringList(u"ERROR"_s));
}

} // namespace quorvane
