// What a program of checks prints, writes and exits with: one whose checks are planted.

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class CheckProgram : public ::testing::Test {
protected:
    int run(const QStringList& arguments) {
        QProcess program;
        program.start(QStringLiteral(PLANTED_CHECKS_PROGRAM), arguments);
        EXPECT_TRUE(program.waitForFinished());
        output = QString::fromUtf8(program.readAllStandardOutput());
        errors = QString::fromUtf8(program.readAllStandardError());
        EXPECT_EQ(program.exitStatus(), QProcess::NormalExit);
        return program.exitCode();
    }
    static QString textOf(const QString& path) {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : u"none"_s;
    }

    QTemporaryDir folder;
    QString output;
    QString errors;
};

} // namespace

TEST_F(CheckProgram, eachCheckIsALine) {
    EXPECT_EQ(run({}), 1);
    const QStringList lines = output.split(u'\n');
    ASSERT_EQ(lines.size(), 8) << output.toStdString();
    EXPECT_EQ(lines[0], u"PASS Planted.passes"_s);
    EXPECT_EQ(lines[1], u"PASS Planted.passesAndTells: 3 ms each"_s);
    EXPECT_TRUE(lines[2].startsWith(u"FAIL Planted.fails: Value of: false"_s)) << lines[2].toStdString();
    EXPECT_TRUE(lines[2].endsWith(u"one reason; Failed and another; all the same"_s)) << lines[2].toStdString();
    EXPECT_EQ(lines[3], u"SKIP Planted.isSkipped: nobody is there"_s);
    EXPECT_TRUE(lines[4].startsWith(u"FAIL Planted.throws: "_s) && lines[4].contains(u"thrown"_s));
    EXPECT_EQ(lines[5], u"SKIP PlantedWithPerson.isAskedFor: needs a person: --ask"_s);
    EXPECT_EQ(lines[6], u"2 passed, 2 failed, 2 skipped"_s);
    EXPECT_EQ(lines[7], QString());
}

TEST_F(CheckProgram, withoutAFailureItEndsWell) {
    EXPECT_EQ(run({u"--filter"_s, u"Planted.pass*:Planted.isSkipped"_s}), 0);
    EXPECT_TRUE(output.endsWith(u"\n2 passed, 0 failed, 1 skipped\n"_s)) << output.toStdString();
}

TEST_F(CheckProgram, aPersonIsAskedOnlyWhenTheyHaveSaidSo) {
    EXPECT_EQ(run({u"--ask"_s, u"--filter"_s, u"PlantedWithPerson.*"_s}), 0);
    EXPECT_EQ(output, u"ASK  Nod.\nPASS PlantedWithPerson.isAskedFor\n1 passed, 0 failed, 0 skipped\n"_s);
    EXPECT_EQ(run({u"--no-rights"_s, u"--filter"_s, u"PlantedWithPerson.*"_s}), 0);
    EXPECT_FALSE(output.contains(u"ASK"_s));
}

TEST_F(CheckProgram, theReportHasTheSameLines) {
    const QString report = folder.filePath(u"report.txt"_s);
    EXPECT_EQ(run({u"--report"_s, report}), 1);
    EXPECT_EQ(textOf(report), output);
    EXPECT_EQ(run({u"--report"_s, report, u"--filter"_s, u"Planted.passes"_s}), 0);
    EXPECT_EQ(textOf(report), u"PASS Planted.passes\n1 passed, 0 failed, 0 skipped\n"_s) << "nothing of the former run";
}

TEST_F(CheckProgram, wrongArgumentsRunNothing) {
    EXPECT_EQ(run({u"--all"_s}), 2);
    EXPECT_EQ(output, QString());
    EXPECT_TRUE(errors.startsWith(u"Unknown argument: --all\n"_s)) << errors.toStdString();
    EXPECT_EQ(run({u"--report"_s, folder.filePath(u"missing/report.txt"_s)}), 2);
    EXPECT_EQ(output, QString());
    EXPECT_EQ(run({u"--filter"_s, u"Nothing.*"_s}), 2);
    EXPECT_TRUE(errors.contains(u"Nothing.*"_s)) << errors.toStdString();
}

TEST_F(CheckProgram, theHelpIsPrintedAndNothingRuns) {
    EXPECT_EQ(run({u"--help"_s}), 0);
    EXPECT_TRUE(output.contains(u"--report FILE"_s));
    EXPECT_FALSE(output.contains(u"Planted"_s));
}

} // namespace quorvane
