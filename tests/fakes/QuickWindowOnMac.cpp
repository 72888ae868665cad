#include "fakes/QuickWindowOnMac.h"

#include "ui/pieces/WhenFinished.h"

#include <QRegularExpression>

#include <stdexcept>
#include <utility>

namespace quorvane {

// ---- Commands

QFuture<CommandOutcome> HeldCommandLauncher::run(QStringList arguments, OutputCapture capture) {
    if (!m_breakage.isEmpty()) {
        throw std::runtime_error(m_breakage.toStdString());
    }
    if (!m_isHolding || (!m_heldTool.isEmpty() && arguments.value(0) != m_heldTool)) {
        return m_commands.run(arguments, capture);
    }
    Held& held = m_held.emplace_back(Held{arguments, capture, {}});
    held.promise.start();
    return held.promise.future();
}

void HeldCommandLauncher::shutDown() {
    m_isShutDown = true;
    m_breakage.clear();
    release();
}

void HeldCommandLauncher::release() {
    m_isHolding = false;
    for (Held& held : std::exchange(m_held, {})) {
        held.promise.addResult(m_commands.run(held.arguments, held.capture).result());
        held.promise.finish();
    }
}

QStringList HeldCommandLauncher::heldLines() const {
    QStringList lines;
    for (const Held& held : m_held) {
        lines.append(commandLine(held.arguments));
    }
    return lines;
}

// ---- Scripts

QFuture<ScriptOutcome> AskingScriptEngine::run(QString source) {
    static const QRegularExpression wish(u"with prompt \"([^\"]*)\" with administrator privileges"_s);
    const QRegularExpressionMatch found = wish.match(source);
    if (!found.hasMatch()) {
        return m_scripts.run(source);
    }
    const auto promise = std::make_shared<QPromise<ScriptOutcome>>();
    promise->start();
    whenFinished(m_prompt.ask(found.captured(1)), &m_context,
                 [this, promise, source](const QFuture<macsim::Authorization>& answer) {
                     m_tools.setAuthorization(answer.result());
                     runWhenTheDialogIsGone(source, promise);
                 });
    return promise->future();
}

/// The program is the active one by then, as it is before root has done anything.
void AskingScriptEngine::runWhenTheDialogIsGone(const QString& source,
                                                const std::shared_ptr<QPromise<ScriptOutcome>>& promise) {
    whenFinished(m_turns.sleepFor(std::chrono::milliseconds(0)), &m_context,
                 [this, promise, source](const QFuture<void>&) {
                     promise->addResult(m_scripts.run(source).result());
                     promise->finish();
                 });
}

// ---- The window

QuickWindowOnMac::~QuickWindowOnMac() = default;

Host QuickWindowOnMac::ports() {
    if (m_tools == nullptr) {
        m_tools = std::make_unique<Tools>(host->mac(), faultsFile(), *authorization);
    }
    const Host base = host->host();
    return {m_tools->launcher, m_tools->scripts,
            base.files,        base.defaults,
            base.machine,      base.propertyLists,
            base.bundles,      base.backgroundTaskPermissions,
            base.cloud,        clock,
            base.keychain,     base.biometrics,
            base.displays,     base.notifications,
            base.filePanels,   base.loginService};
}

void QuickWindowOnMac::shutDownPorts() {
    WindowOnMac::shutDownPorts();
    clock.shutDown();
    m_tools->launcher.shutDown();
}

void QuickWindowOnMac::letEventsPass() {
    SystemClock turns;
    const QFuture<void> turn = turns.sleepFor(std::chrono::milliseconds(0));
    processEventsUntil([&turn] { return turn.isFinished(); });
    QCoreApplication::processEvents();
}

} // namespace quorvane
