#pragma once

#include <QFuture>
#include <QString>

#include <optional>

namespace quorvane {

/// The outcome of an AppleScript: either a result or an error.
struct ScriptOutcome {
    std::optional<QString> result{};       ///< the result's text, empty when the script has none; absent on an error
    std::optional<QString> errorMessage{}; ///< the system's message; absent when there is no error or no message
    std::optional<int> errorNumber{};      ///< of the error: -128 for a cancel; absent when the system gives none
};

/// Compiles and runs AppleScript in process, off the main thread.
class ScriptEngine {
public:
    ScriptEngine() = default;
    ScriptEngine(const ScriptEngine&) = delete;
    ScriptEngine& operator=(const ScriptEngine&) = delete;
    virtual ~ScriptEngine() = default;

    /// A script that doesn't compile, fails, or is cancelled in its authorization dialog ends in an error; of its message only
    /// the number can be relied on, as the words are in the user's language. The future
    /// finishes on the thread that called; it is never cancelled and holds no exception.
    virtual QFuture<ScriptOutcome> run(QString source) = 0;

    /// Ends a running script where the system allows it and refuses further ones; see CommandLauncher::shutDown.
    virtual void shutDown() = 0;
};

} // namespace quorvane
