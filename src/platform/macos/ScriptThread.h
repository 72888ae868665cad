#pragma once

#include "platform/ScriptEngine.h"
#include "platform/macos/OpenAnswers.h"

#include <functional>
#include <memory>

namespace quorvane {

/// Runs scripts on a thread of its own, one at a time and in their order, and gives the outcomes back to the thread that made
/// it. A script can't be ended from outside: at `shutDown` one that runs is left behind with its thread, which touches nothing
/// but its own memory from then on, and those that wait aren't run.
class ScriptThread {
public:
    using Run = std::function<ScriptOutcome(const QString& source)>;

    /// @param run  called on the script thread, also after this is gone
    explicit ScriptThread(Run run);
    ScriptThread(const ScriptThread&) = delete;
    ScriptThread& operator=(const ScriptThread&) = delete;
    ~ScriptThread() { shutDown(); }

    /// See ScriptEngine.
    QFuture<ScriptOutcome> run(QString source);
    void shutDown();

private:
    class Queue;
    class Thread;

    OpenAnswers<ScriptOutcome> m_answers;
    std::shared_ptr<Queue> m_queue;
};

} // namespace quorvane
