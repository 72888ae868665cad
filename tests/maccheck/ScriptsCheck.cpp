// AppleScript in this process.

#include "contract/Awaited.h"
#include "maccheck/CheckProgram.h"
#include "maccheck/People.h"
#include "platform/macos/MacScriptEngine.h"

#include <QDateTime>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kUserCancelled = -128;

ScriptOutcome outcomeOfScript(const QString& source) {
    MacScriptEngine engine;
    return awaited(engine.run(source));
}

class ScriptsWithPerson : public CheckWithPerson {};

} // namespace

TEST(Scripts, aResultHasItsLines) {
    const ScriptOutcome outcome = outcomeOfScript(u"return \"a\" & linefeed & \"b\""_s);
    EXPECT_EQ(outcome.result, u"a\nb"_s);
    EXPECT_EQ(outcome.errorNumber, std::nullopt);
}

TEST(Scripts, aResultWithoutATextIsEmpty) {
    EXPECT_EQ(outcomeOfScript(u"return missing value"_s).result, QString());
}

TEST(Scripts, whatDoesNotCompileIsAnErrorWithItsNumber) {
    const ScriptOutcome outcome = outcomeOfScript(u"tell tell ("_s);
    EXPECT_EQ(outcome.result, std::nullopt);
    EXPECT_TRUE(outcome.errorNumber);
    tell(u"%1: %2"_s.arg(outcome.errorNumber.value_or(0)).arg(outcome.errorMessage.value_or(QString())));
}

TEST(Scripts, aCancelIsKnownByItsNumber) {
    const ScriptOutcome outcome = outcomeOfScript(u"error \"x\" number -128"_s);
    EXPECT_EQ(outcome.result, std::nullopt);
    EXPECT_EQ(outcome.errorNumber, kUserCancelled);
}

TEST(Scripts, aShellLineRunsAndItsFailureIsToldByItsStatus) {
    EXPECT_EQ(outcomeOfScript(u"do shell script \"printf hello\""_s).result, u"hello"_s);
    EXPECT_EQ(outcomeOfScript(u"do shell script \"exit 3\""_s).errorNumber, 3);
}

TEST(Scripts, theEventLoopGoesRoundMeanwhile) {
    MacScriptEngine engine;
    const Ticks ticks;
    const ScriptOutcome outcome = awaited(engine.run(u"delay 0.5"_s));
    EXPECT_TRUE(outcome.result) << outcome.errorMessage.value_or(QString()).toStdString();
    EXPECT_GT(ticks.count(), 50);
    tell(u"%1 ticks of a millisecond in half a second"_s.arg(ticks.count()));
}

TEST(Scripts, theEndFinishesWhatRunsAndRefusesTheRestAtOnce) {
    MacScriptEngine engine;
    const QFuture<ScriptOutcome> running = engine.run(u"delay 2"_s);
    engine.shutDown();
    ASSERT_TRUE(running.isFinished());
    EXPECT_EQ(running.result().result, std::nullopt);
    const QFuture<ScriptOutcome> refused = engine.run(u"return 1"_s);
    ASSERT_TRUE(refused.isFinished());
    EXPECT_EQ(refused.result().result, std::nullopt);
}

TEST_F(ScriptsWithPerson, aPasswordMakesALineRoots) {
    ask(u"Type the password in the dialog, which must name this program."_s);
    EXPECT_EQ(
        outcomeOfScript(u"do shell script \"id -u\" with prompt \"Quorvane’s check.\" with administrator privileges"_s)
            .result,
        u"0"_s);
}

TEST_F(ScriptsWithPerson, aCancelledDialogRunsNothing) {
    ask(u"Press Cancel in the dialog."_s);
    EXPECT_EQ(outcomeOfScript(
                  u"do shell script \"true #%1\" with prompt \"Press Cancel.\" with administrator privileges"_s.arg(
                      QDateTime::currentMSecsSinceEpoch()))
                  .errorNumber,
              kUserCancelled);
}

} // namespace quorvane
