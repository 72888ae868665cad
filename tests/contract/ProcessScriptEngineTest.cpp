// Scripts in a process of their own, which the host's shell plays.

#include "platform/portable/ProcessScriptEngine.h"

#include "fakes/EventLoop.h"
#include "json/ScriptProtocol.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class ScriptsInProcesses : public ::testing::Test {
protected:
    /// @param lines  of the shell, which find what they were sent in $source
    QFuture<ScriptOutcome> run(const QByteArray& lines, const QString& source = u"beep"_s) {
        const QString program = folder.path() + u"/program"_s;
        QFile file(program);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("#!/bin/sh\nread -r source\n" + lines + '\n');
        file.close();
        EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        engine = std::make_unique<ProcessScriptEngine>(program, QProcessEnvironment::systemEnvironment());
        return engine->run(source);
    }
    ScriptOutcome outcomeOf(const QByteArray& lines, const QString& source = u"beep"_s) {
        return ended(run(lines, source));
    }
    static ScriptOutcome ended(const QFuture<ScriptOutcome>& outcome) {
        processEventsUntil([&outcome] { return outcome.isFinished(); });
        EXPECT_FALSE(outcome.isCanceled());
        return outcome.result();
    }
    static QByteArray says(const QByteArray& lines) { return "cat <<'END'\n" + lines + "END\n"; }

    QTemporaryDir folder;
    std::unique_ptr<ProcessScriptEngine> engine;
};

void expectSame(const ScriptOutcome& outcome, const ScriptOutcome& expected) {
    EXPECT_EQ(outcome.result, expected.result);
    EXPECT_EQ(outcome.errorMessage, expected.errorMessage);
    EXPECT_EQ(outcome.errorNumber, expected.errorNumber);
}

} // namespace

TEST_F(ScriptsInProcesses, whatTheProgramRepliesIsTheOutcome) {
    for (const ScriptOutcome& outcome :
         {ScriptOutcome{u"a\rb \"é\""_s, std::nullopt, std::nullopt},
          ScriptOutcome{QString(), std::nullopt, std::nullopt}, ScriptOutcome{std::nullopt, u"User canceled."_s, -128},
          ScriptOutcome{std::nullopt, u"without a number"_s, std::nullopt},
          ScriptOutcome{std::nullopt, std::nullopt, -1743}}) {
        expectSame(outcomeOf(says(scriptReply(outcome))), outcome);
    }
}

TEST_F(ScriptsInProcesses, theProgramIsSentTheSource) {
    const QString source = u"display dialog \"é\\n\" & \"'x'\"\nbeep"_s;
    outcomeOf("printf '%s\\n' \"$source\" >" + QFile::encodeName(folder.path()) + "/sent", source);
    QFile sent(folder.path() + u"/sent"_s);
    ASSERT_TRUE(sent.open(QIODevice::ReadOnly));
    EXPECT_EQ(sent.readAll(), ScriptProtocol::source(source));
}

TEST_F(ScriptsInProcesses, aLongSourceArrivesWholeWhileTheEventLoopTicks) {
    const Ticks ticks;
    const QByteArray reply = "printf '{\"result\":\"%s\"}\\n' ${#source}";
    const auto expected = ScriptProtocol::source(QString(250'000, u'x')).size() - 1;
    EXPECT_EQ(outcomeOf(reply, QString(250'000, u'x')).result, QString::number(expected));
    EXPECT_GT(ticks.count(), 0);
}

TEST_F(ScriptsInProcesses, aProgramThatDiesOrSaysNothingHasFailed) {
    for (const QByteArray& lines : {QByteArray("kill -9 $$"), QByteArray("exit 0"), QByteArray("exit 3"),
                                    QByteArray("printf '{\"result\":\"cut off\"}'")}) {
        expectSame(outcomeOf(lines), {});
    }
}

TEST_F(ScriptsInProcesses, aProgramThatCannotBeUnderstoodIsEnded) {
    const QByteArray goesOn = says(ScriptProtocol::result(u"after all"_s)) + "exec sleep 1000";
    for (const QByteArray& line :
         {QByteArray("garbage\n"), QByteArray("\n"), ScriptProtocol::source(u"x"_s), ScriptProtocol::answer(u"x"_s),
          ScriptProtocol::authorizationWanted(u"nobody is here to be asked"_s)}) {
        expectSame(outcomeOf(says(line) + goesOn), {});
    }
}

TEST_F(ScriptsInProcesses, aProgramThatIsMissingIsAFailure) {
    ProcessScriptEngine missing(u"/no/such/program"_s, QProcessEnvironment::systemEnvironment());
    expectSame(ended(missing.run(u"beep"_s)), {});
}

TEST_F(ScriptsInProcesses, oneThatHangsIsEndedAtTheEndAndNoneIsBegunAfterwards) {
    const Ticks ticks;
    const QFuture<ScriptOutcome> outcome = run("exec sleep 1000");
    processEventsUntil([&ticks] { return ticks.count() > 20; });
    EXPECT_FALSE(outcome.isFinished());
    engine->shutDown();
    expectSame(ended(outcome), {});
    const QFuture<ScriptOutcome> late = engine->run(u"beep"_s);
    ASSERT_TRUE(late.isFinished());
    EXPECT_EQ(late.result().errorMessage, u"The program is quitting."_s);
}

TEST_F(ScriptsInProcesses, anEngineThatGoesAwayEndsItsScripts) {
    const QFuture<ScriptOutcome> outcome = run("exec sleep 1000");
    engine.reset();
    ASSERT_TRUE(outcome.isFinished());
    expectSame(outcome.result(), {});
}

} // namespace quorvane
