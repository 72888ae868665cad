#include "platform/macos/MacScriptEngine.h"

#include "platform/macos/AppleScript.h"

#include <utility>

namespace quorvane {

MacScriptEngine::MacScriptEngine()
    : m_thread(runAppleScript) {}

QFuture<ScriptOutcome> MacScriptEngine::run(QString source) {
    return m_thread.run(std::move(source));
}

void MacScriptEngine::shutDown() {
    m_thread.shutDown();
}

} // namespace quorvane
