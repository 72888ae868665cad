#include "core/AdminBatch.h"

#include "core/AdminScript.h"
#include "core/FlowEnvironment.h"
#include "core/OneLine.h"
#include "platform/ScriptEngine.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Shown while the system may still hold the authorization of an earlier run.
const QString kNeutralPrompt = u"Quorvane is applying system changes."_s;

/// The longest shell line that is handed over, in bytes of UTF-8. The line becomes one argument of a shell, and the system
/// gives arguments and environment 1 MiB together; what lies beyond would fail after the user has given their password.
constexpr qsizetype kLongestAdminLine = 200'000;

/// Why a line isn't run; none when it may be.
std::optional<QString> refusalOf(const QString& script, const QString& shownPrompt) {
    if (shownPrompt.contains(u'"')) {
        // A profile's name can come from somebody else's file: a quote in it would end the prompt's literal,
        // and what follows would be script.
        return u"The authorization prompt can't contain a double quote: "_s + shownPrompt;
    }
    const qsizetype length = script.toUtf8().size();
    if (length > kLongestAdminLine) {
        const QString problem = u"The administrator command line is too long: %1 bytes of at most %2"_s;
        return problem.arg(length).arg(kLongestAdminLine);
    }
    if (script.contains(QChar::Null)) {
        // It would end the line for the shell, in the middle of a quoted word.
        return u"The administrator command line holds a null character"_s;
    }
    return std::nullopt;
}

/// The system's words are in the user's language, and may be missing; a cancel has a number.
QString failureText(const ScriptOutcome& outcome) {
    constexpr int userCanceled = -128; // MacErrors.h: userCanceledErr
    if (outcome.errorMessage) {
        return *outcome.errorMessage;
    }
    return outcome.errorNumber == userCanceled ? u"User canceled."_s : u"Unknown error"_s;
}

} // namespace

AdminBatch::AdminBatch(FlowEnvironment& environment, ScriptEngine& scripts)
    : m_environment(environment)
    , m_scripts(scripts) {}

QCoro::Task<CommandResult> AdminBatch::execute(QString script, QString prompt) {
    const QString shownPrompt = m_hasAuthorization ? kNeutralPrompt : onOneLine(prompt);
    if (const std::optional<QString> refusal = refusalOf(script, shownPrompt)) {
        co_return CommandResult{1, {}, *refusal};
    }
    const ScriptOutcome outcome = co_await m_scripts.run(adminScriptSource(script, shownPrompt));
    m_hasAuthorization = outcome.result.has_value();
    if (outcome.result) {
        co_return CommandResult{0, *outcome.result, {}};
    }
    co_return CommandResult{1, {}, failureText(outcome)};
}

QCoro::Task<CommandResult> AdminBatch::run(QString script, QString prompt) {
    if (!isOpen()) {
        co_return co_await execute(std::move(script), std::move(prompt));
    }
    m_open.queue(script);
    co_return CommandResult{};
}

QCoro::Task<CommandResult> AdminBatch::runTolerantly(const QStringList& commands, QString prompt) {
    return run(joinedAdminCommands(makeAdminCommandsTolerant(commands)), std::move(prompt));
}

void AdminBatch::begin() {
    if (!isOpen()) {
        m_open = {};
    }
    ++m_depth;
}

QCoro::Task<AdminBatch::Flush> AdminBatch::flush(QString prompt) {
    if (m_open.isEmpty()) {
        co_return Flush::NothingQueued;
    }
    const CommandResult result = co_await execute(m_open.takeLine(), std::move(prompt));
    if (result.status != 0) {
        m_environment.log(u"  [ERROR] Administrator authorization was cancelled or failed: "_s + result.standardError);
        co_return Flush::Failed;
    }
    co_return Flush::Done;
}

void AdminBatch::close() {
    m_plistsBroughtBack = std::exchange(m_open, {}).plistsBroughtBack();
    m_depth = std::max(m_depth - 1, 0);
}

QStringList AdminBatch::takePlistsBroughtBack() {
    return std::exchange(m_plistsBroughtBack, {});
}

} // namespace quorvane
