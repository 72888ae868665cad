#include "platform/simulated/SimulatedScriptEngine.h"

#include "platform/simulated/AuthorizationPrompt.h"
#include "simulator/ScriptProtocol.h"

#include <QFutureWatcher>
#include <QProcess>
#include <QPromise>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QFuture<ScriptOutcome> refused() {
    return QtFuture::makeReadyFuture(ScriptOutcome{std::nullopt, u"The program is quitting."_s});
}

} // namespace

/// One running script and its conversation with the engine's process.
class SimulatedScriptEngine::Script final : public QObject {
public:
    explicit Script(SimulatedScriptEngine& engine)
        : m_engine(&engine) {
        connect(&m_process, &QProcess::readyReadStandardOutput, this, &Script::readMessages);
        connect(&m_process, &QProcess::finished, this, &Script::ended);
        connect(&m_question, &QFutureWatcherBase::finished, this, &Script::answer);
        connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) {
                ended();
            }
        });
    }

    QFuture<ScriptOutcome> start(const QString& source) {
        m_process.setProgram(m_engine->m_engineProgram);
        m_process.setProcessEnvironment(m_engine->m_environment);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_promise.start();
        QFuture<ScriptOutcome> future = m_promise.future();
        m_process.start();
        m_process.write(macsim::ScriptProtocol::source(source));
        return future;
    }

    void kill() { m_process.kill(); }

    void abandon() {
        m_engine = nullptr;
        m_process.kill();
        m_process.waitForFinished();
    }

private:
    void readMessages() {
        while (m_process.canReadLine()) {
            const macsim::ScriptProtocol::Message message = macsim::ScriptProtocol::parsed(m_process.readLine());
            switch (message.kind) {
            case macsim::ScriptProtocol::Message::Kind::AuthorizationWanted:
                ask(message.text);
                break;
            case macsim::ScriptProtocol::Message::Kind::Result:
                m_outcome = {message.text};
                break;
            case macsim::ScriptProtocol::Message::Kind::Error:
                m_outcome = {std::nullopt, message.text, message.number};
                break;
            case macsim::ScriptProtocol::Message::Kind::Source:
            case macsim::ScriptProtocol::Message::Kind::Answer:
            case macsim::ScriptProtocol::Message::Kind::Unintelligible:
                m_outcome = {};
                kill();
                break;
            }
        }
    }

    void ask(const QString& prompt) {
        if (!m_engine) {
            return;
        }
        m_question.setFuture(m_engine->m_authorization.ask(prompt));
    }

    void answer() {
        if (m_process.state() == QProcess::Running) {
            m_process.write(macsim::ScriptProtocol::answer(m_question.isCanceled() ? macsim::Authorization::Cancel
                                                                                   : m_question.result()));
        }
    }

    void ended() {
        if (!m_question.isFinished()) {
            m_question.cancel();
        }
        m_promise.addResult(m_outcome);
        m_promise.finish();
        if (m_engine) {
            m_engine->forget(this);
        }
        deleteLater();
    }

    SimulatedScriptEngine* m_engine;
    QProcess m_process;
    QPromise<ScriptOutcome> m_promise;
    QFutureWatcher<macsim::Authorization> m_question; ///< the latest; a script asks one at a time
    ScriptOutcome m_outcome; ///< neither result nor message until the engine has spoken: a death is an error
};

SimulatedScriptEngine::SimulatedScriptEngine(QString engineProgram, const QProcessEnvironment& environment,
                                             AuthorizationPrompt& authorization)
    : m_engineProgram(std::move(engineProgram))
    , m_environment(environment)
    , m_authorization(authorization) {}

SimulatedScriptEngine::~SimulatedScriptEngine() {
    const std::unordered_set<Script*> running = std::exchange(m_running, {});
    for (Script* script : running) {
        script->abandon();
    }
}

QFuture<ScriptOutcome> SimulatedScriptEngine::run(QString source) {
    if (m_isShutDown) {
        return refused();
    }
    auto* script = new Script(*this);
    m_running.insert(script);
    return script->start(source);
}

void SimulatedScriptEngine::shutDown() {
    m_isShutDown = true;
    for (Script* script : m_running) {
        script->kill();
    }
}

void SimulatedScriptEngine::forget(Script* script) {
    m_running.erase(script);
}

} // namespace quorvane
