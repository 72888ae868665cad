// The engine's side of a conversation with a script, which is played by the host's shell.

#include "platform/simulated/SimulatedScriptEngine.h"

#include "fakes/EventLoop.h"
#include "fakes/HeldAuthorizationPrompt.h"
#include "simulator/ScriptProtocol.h"

#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace quorvane {

using namespace Qt::StringLiterals;
using macsim::Authorization;

namespace {

const QString kAsked = u"May I?"_s;

class ScriptEngineProcess : public ::testing::Test {
protected:
    /// A script that reads its source, asks, and goes on with a line of the shell.
    QFuture<ScriptOutcome> runAndAsk(const QByteArray& afterwards) {
        const QString program = folder.path() + u"/engine"_s;
        QFile file(program);
        EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write("#!/bin/sh\nread source\ncat <<'END'\n" + macsim::ScriptProtocol::authorizationWanted(kAsked) +
                   "END\n" + afterwards + "\n");
        file.close();
        EXPECT_TRUE(file.setPermissions(QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner));
        engine = std::make_unique<SimulatedScriptEngine>(program, QProcessEnvironment::systemEnvironment(), prompt);
        return engine->run(u"the source"_s);
    }
    void waitUntilAsked() {
        processEventsUntil([this] { return prompt.open() == QStringList(kAsked); });
    }
    /// Also lets what has been withdrawn go.
    static void waitFor(const QFuture<ScriptOutcome>& outcome) {
        processEventsUntil([&] { return outcome.isFinished(); });
        QCoreApplication::processEvents();
    }

    QTemporaryDir folder;
    HeldAuthorizationPrompt prompt;
    std::unique_ptr<SimulatedScriptEngine> engine;
};

} // namespace

TEST_F(ScriptEngineProcess, anAnswerReachesTheScript) {
    const QFuture<ScriptOutcome> outcome =
        runAndAsk("read answer\ncase $answer in *deny*) cat <<'END'\n" +
                  macsim::ScriptProtocol::error(u"denied"_s, -60007) + "END\n;; esac");
    waitUntilAsked();
    prompt.answer(Authorization::Deny);
    waitFor(outcome);
    EXPECT_EQ(outcome.result().errorMessage, u"denied"_s);
    EXPECT_EQ(outcome.result().errorNumber, -60007);
    EXPECT_EQ(prompt.withdrawn(), QStringList()) << "it was answered";
}

TEST_F(ScriptEngineProcess, theDialogGoesWithAScriptThatDies) {
    const QFuture<ScriptOutcome> outcome = runAndAsk("kill -9 $$");
    waitFor(outcome);
    EXPECT_EQ(outcome.result().result, std::nullopt);
    EXPECT_EQ(prompt.withdrawn(), QStringList(kAsked));
    EXPECT_EQ(prompt.open(), QStringList());
}

TEST_F(ScriptEngineProcess, theDialogGoesWhenTheEngineIsShutDown) {
    const QFuture<ScriptOutcome> outcome = runAndAsk("read answer");
    waitUntilAsked();
    engine->shutDown();
    waitFor(outcome);
    EXPECT_EQ(prompt.withdrawn(), QStringList(kAsked));
}

TEST_F(ScriptEngineProcess, theDialogGoesWithTheEngine) {
    const QFuture<ScriptOutcome> outcome = runAndAsk("read answer");
    waitUntilAsked();
    engine.reset();
    waitFor(outcome);
    EXPECT_EQ(prompt.withdrawn(), QStringList(kAsked));
}

} // namespace quorvane
