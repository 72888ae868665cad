#include "core/AdminBatch.h"

#include "core/AdminScript.h"
#include "core/FlowEnvironment.h"
#include "core/OneLine.h"
#include "platform/Clock.h"
#include "platform/Host.h"
#include "platform/ScriptEngine.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>
#include <chrono>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// Shown while the system may still hold the authorization of an earlier run.
const QString kNeutralPrompt = u"Quorvane is applying system changes."_s;

/// For so long the system asks nobody again for a script of the same text.
constexpr std::chrono::minutes kAuthorizationTime{5};

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
    const QString shownPrompt = isAuthorized(script) ? kNeutralPrompt : onOneLine(prompt);
    if (const std::optional<QString> refusal = refusalOf(script, shownPrompt)) {
        co_return CommandResult{1, {}, *refusal, false};
    }
    const ScriptOutcome outcome = co_await m_scripts.run(adminScriptSource(script, shownPrompt));
    if (outcome.result) {
        m_successes.insert(script, m_environment.host().clock.now());
        co_return CommandResult{0, *outcome.result, {}};
    }
    m_successes.clear();
    // The number of a shell line that failed is its exit status; what kept it from being run has a negative one.
    const bool hasRun = outcome.errorNumber.value_or(0) > 0;
    co_return CommandResult{1, {}, failureText(outcome), hasRun};
}

/// Forgets what is over. The clock may have been set back meanwhile: what succeeds in the future is over, too.
bool AdminBatch::isAuthorized(const QString& line) {
    const QDateTime now = m_environment.host().clock.now();
    m_successes.removeIf([&now](const std::pair<const QString&, QDateTime&>& success) {
        const std::chrono::milliseconds age{success.second.msecsTo(now)};
        return age < std::chrono::milliseconds::zero() || age >= kAuthorizationTime;
    });
    return m_successes.contains(line);
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
