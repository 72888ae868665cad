#include "runlogs/RunLogName.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QDateTime kMorning(QDate(2026, 11, 23), QTime(10, 58, 7, 250), Qt::UTC);
const QString kProcess = u"5c1a9b3e-0000/4711"_s;

QString nameAt(const QDateTime& moment) {
    return freeRunLogName(moment, kProcess, {}).file;
}

} // namespace

TEST(RunLogName, tellsWhenARunBeganAndWhichProcessItWas) {
    const RunLogName name = freeRunLogName(kMorning, kProcess, {});
    EXPECT_EQ(name.file, u"Quorvane 2026-11-23 10.58.07 (4711).log"_s);
    EXPECT_EQ(name.began, kMorning.addMSecs(-250));
    EXPECT_EQ(runLogNamed(name.file), name);
}

TEST(RunLogName, isOfTheSameMomentWhereverTheMacIs) {
    const QDateTime elsewhere = kMorning.toOffsetFromUtc(5 * 3600);
    EXPECT_EQ(nameAt(elsewhere), nameAt(kMorning));
    EXPECT_EQ(freeRunLogName(elsewhere, kProcess, {}), freeRunLogName(kMorning, kProcess, {}));
}

TEST(RunLogName, ofTheSameSecondDiffersByItsProcess) {
    EXPECT_NE(freeRunLogName(kMorning, u"5c1a9b3e-0000/4712"_s, {}).file, nameAt(kMorning));
}

TEST(RunLogName, thatIsTakenGetsANumber) {
    QStringList taken;
    for (const QString& expected :
         {u"Quorvane 2026-11-23 10.58.07 (4711).log"_s, u"Quorvane 2026-11-23 10.58.07 (4711 2).log"_s,
          u"Quorvane 2026-11-23 10.58.07 (4711 3).log"_s}) {
        const RunLogName name = freeRunLogName(kMorning, kProcess, taken);
        EXPECT_EQ(name.file, expected);
        EXPECT_EQ(runLogNamed(name.file), name);
        taken.append(name.file);
    }
}

TEST(RunLogName, ofAnotherFormIsNobodysRun) {
    for (const QString& name :
         {QString(), u"notes.txt"_s, u".DS_Store"_s, u"Quorvane.log"_s, u"Quorvane 2026-11-23 10.58.07.log"_s,
          u"Quorvane 2026-11-23 10.58.07 ().log"_s, u"Quorvane 2026-11-23 10:58:07 (1).log"_s,
          u"Quorvane 2026-02-30 10.58.07 (1).log"_s, u"Quorvane 2026-11-23 25.58.07 (1).log"_s,
          u"Quorvane 2026-11-23 10.58.07 (1).log.gz"_s, u"A Quorvane 2026-11-23 10.58.07 (1).log"_s,
          u"Quorvane 2026-11-23 10.58.07 (1).log\n"_s, u"Quorvane 2026-11-23 10.58.07 (1) copy.log"_s}) {
        EXPECT_EQ(runLogNamed(name), std::nullopt) << name.toStdString();
    }
}

TEST(RunLogName, sortsAsTheRunsBegan) {
    QStringList names;
    for (const int seconds : {0, 86'400, 59, 365 * 86'400, 3600}) {
        names.append(nameAt(kMorning.addSecs(seconds)));
    }
    QList<QDateTime> moments;
    for (const RunLogName& run : runLogsIn(names + QStringList(u"notes.txt"_s))) {
        moments.append(run.began);
    }
    const QDateTime first = kMorning.addMSecs(-250);
    EXPECT_EQ(moments, (QList<QDateTime>{first.addSecs(qint64(365) * 86'400), first.addSecs(86'400),
                                         first.addSecs(3600), first.addSecs(59), first}));
}

TEST(RunLogName, fourStayBesideANewOne) {
    QStringList names;
    for (int day = 0; day < 7; ++day) {
        EXPECT_EQ(runsToForget(runLogsIn(names)).size(), std::max(0, day - 4));
        names.append(nameAt(kMorning.addDays(day)));
    }
    const QList<RunLogName> old = runsToForget(runLogsIn(names));
    ASSERT_EQ(old.size(), 3);
    EXPECT_EQ(old.last().file, names.first());
    EXPECT_EQ(old.first().file, names.at(2));
}

} // namespace quorvane
