#include "platform/portable/ProcessScriptEngine.h"

#include "json/ScriptProtocol.h"

#include <QPointer>
#include <QProcess>
#include <QPromise>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using ScriptProtocol::Message;

QFuture<ScriptOutcome> refusedScript() {
    return QtFuture::makeReadyFuture(ScriptOutcome{std::nullopt, u"The program is quitting."_s});
}

ScriptOutcome failureOf(const Message& error) {
    return {std::nullopt, error.text.isEmpty() ? std::nullopt : std::optional(error.text), error.number};
}

} // namespace

/// One running script and the conversation with its process.
class ProcessScriptEngine::Script final : public QObject {
public:
    explicit Script(ProcessScriptEngine& engine)
        : m_engine(&engine) {
        connect(&m_process, &QProcess::readyReadStandardOutput, this, &Script::readMessages);
        connect(&m_process, &QProcess::finished, this, &Script::ended);
        connect(&m_process, &QProcess::errorOccurred, this, [this](QProcess::ProcessError error) {
            if (error == QProcess::FailedToStart) {
                ended();
            }
        });
    }

    QFuture<ScriptOutcome> start(const QString& source) {
        m_process.setProgram(m_engine->m_program);
        m_process.setProcessEnvironment(m_engine->m_environment);
        m_process.setStandardErrorFile(QProcess::nullDevice());
        m_promise.start();
        QFuture<ScriptOutcome> future = m_promise.future();
        m_process.start();
        m_process.write(ScriptProtocol::source(source));
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
        while (m_isUnderstood && m_process.canReadLine()) {
            const Message message = ScriptProtocol::parsed(m_process.readLine());
            switch (message.kind) {
            case Message::Kind::AuthorizationWanted:
                ask(message.text);
                break;
            case Message::Kind::Result:
                m_outcome = {message.text};
                break;
            case Message::Kind::Error:
                m_outcome = failureOf(message);
                break;
            case Message::Kind::Source:
            case Message::Kind::Answer:
            case Message::Kind::Unintelligible:
                giveUp();
                break;
            }
        }
    }

    void ask(const QString& prompt) {
        if (!m_engine) {
            return;
        }
        if (!m_engine->m_ask) {
            giveUp();
            return;
        }
        m_question = m_engine->m_ask(prompt, [script = QPointer(this)](const QString& word) {
            if (script && script->m_process.state() == QProcess::Running) {
                script->m_process.write(ScriptProtocol::answer(word));
            }
        });
    }

    /// What it says from here on counts for nothing.
    void giveUp() {
        m_isUnderstood = false;
        m_outcome = {};
        kill();
    }

    void ended() {
        m_question.reset();
        m_promise.addResult(m_outcome);
        m_promise.finish();
        if (m_engine) {
            m_engine->forget(this);
        }
        deleteLater();
    }

    ProcessScriptEngine* m_engine;
    QProcess m_process;
    QPromise<ScriptOutcome> m_promise;
    std::unique_ptr<Question> m_question; ///< the latest; a script asks one at a time
    bool m_isUnderstood = true;
    ScriptOutcome m_outcome; ///< neither result nor message until the process has spoken: a death is an error
};

ProcessScriptEngine::ProcessScriptEngine(QString program, const QProcessEnvironment& environment, Ask ask)
    : m_program(std::move(program))
    , m_environment(environment)
    , m_ask(std::move(ask)) {}

ProcessScriptEngine::~ProcessScriptEngine() {
    const std::unordered_set<Script*> running = std::exchange(m_running, {});
    for (Script* script : running) {
        script->abandon();
    }
}

QFuture<ScriptOutcome> ProcessScriptEngine::run(QString source) {
    if (m_isShutDown) {
        return refusedScript();
    }
    auto* script = new Script(*this);
    m_running.insert(script);
    return script->start(source);
}

void ProcessScriptEngine::shutDown() {
    m_isShutDown = true;
    for (Script* script : m_running) {
        script->kill();
    }
}

void ProcessScriptEngine::forget(Script* script) {
    m_running.erase(script);
}

QByteArray scriptReply(const ScriptOutcome& outcome) {
    return outcome.result ? ScriptProtocol::result(*outcome.result)
                          : ScriptProtocol::error(outcome.errorMessage.value_or(QString()), outcome.errorNumber);
}

} // namespace quorvane
