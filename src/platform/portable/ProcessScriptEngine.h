#pragma once

#include "platform/ScriptEngine.h"

#include <QProcessEnvironment>

#include <functional>
#include <memory>
#include <unordered_set>

namespace quorvane {

/// Has another program run AppleScript, which speaks as ScriptProtocol says: each script in a process of its own, so that one
/// that hangs can be ended.
class ProcessScriptEngine : public ScriptEngine {
public:
    /// A question of a script's that stands open. It is withdrawn when this goes.
    class Question {
    public:
        Question() = default;
        Question(const Question&) = delete;
        Question& operator=(const Question&) = delete;
        virtual ~Question() = default;
    };
    /// Asks for administrator rights on a script's behalf.
    /// @param answered  takes the word for the script, once
    using Ask = std::function<std::unique_ptr<Question>(const QString& prompt,
                                                        std::function<void(const QString& word)> answered)>;

    /// @param program      runs one script
    /// @param environment  of the scripts
    /// @param ask          without it, a script whose program asks has failed
    ProcessScriptEngine(QString program, const QProcessEnvironment& environment, Ask ask = {});
    ~ProcessScriptEngine() override;

    QFuture<ScriptOutcome> run(QString source) override;
    void shutDown() override;

private:
    class Script;
    void forget(Script* script);

    QString m_program;
    QProcessEnvironment m_environment;
    Ask m_ask;
    std::unordered_set<Script*> m_running; ///< each owns itself until it has ended
    bool m_isShutDown = false;
};

/// What the other program ends with.
QByteArray scriptReply(const ScriptOutcome& outcome);

} // namespace quorvane
