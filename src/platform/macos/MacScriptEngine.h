#pragma once

#include "platform/ScriptEngine.h"
#include "platform/macos/ScriptThread.h"

namespace quorvane {

/// NSAppleScript in this process, on a thread of its own: on the main thread the window would stand still for as long as the
/// system asks for a password. A dialog that stands at `shutDown` goes with the process.
class MacScriptEngine final : public ScriptEngine {
public:
    MacScriptEngine();

    QFuture<ScriptOutcome> run(QString source) override;
    void shutDown() override;

private:
    ScriptThread m_thread;
};

} // namespace quorvane
