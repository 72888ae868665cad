#include "system/SystemManager.h"

#include "core/AdminBatch.h"
#include "core/NotificationCenter.h"
#include "core/Utf8.h"
#include "flows/FlowJournal.h"
#include "matching/SystemVerification.h"
#include "startup/apply/StartupItems.h"
#include "startup/background/BackgroundItems.h"
#include "startup/launchd/LaunchItems.h"
#include "startup/login/LoginItems.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// What "/usr/bin/env" ends with when it can't start the tool, because it isn't there or can't be executed.
bool tellsOfNoTool(int code) {
    return code == 126 || code == 127;
}

CommandResult resultOf(const CommandOutcome& outcome, bool isQuitting) {
    constexpr int kSignalBase = 128; // as a shell counts it, so that no reader takes a killed tool for a success
    switch (outcome.ending) {
    case CommandOutcome::Ending::NotLaunched:
        return {1, {}, outcome.launchError, false};
    case CommandOutcome::Ending::EndedBySignal:
        return {kSignalBase + outcome.code, strictUtf8(outcome.standardOutput), strictUtf8(outcome.standardError),
                false};
    case CommandOutcome::Ending::Exited:
        break;
    }
    const bool isAnswered = !isQuitting && !tellsOfNoTool(outcome.code);
    return {outcome.code, strictUtf8(outcome.standardOutput), strictUtf8(outcome.standardError), isAnswered};
}

/// By the entry's own tag: a name that holds the word makes no warning of what is said of it.
bool isWarning(const QString& entry) {
    const auto tag = std::find_if_not(entry.begin(), entry.end(), [](QChar c) { return c.isSpace(); });
    return QStringView(tag, entry.end()).startsWith(u"[WARNING]");
}

QString withoutOuterNewlines(const QString& text) {
    const auto isNewline = [](QChar c) { return c == u'\n' || c == u'\r'; };
    const auto first = std::find_if_not(text.begin(), text.end(), isNewline);
    const auto last = std::find_if_not(text.rbegin(), std::make_reverse_iterator(first), isNewline).base();
    return QString(first, last - first);
}

} // namespace

SystemManager::SystemManager(const Host& host, NotificationCenter& notifications, QObject* parent)
    : QObject(parent)
    , m_host(host)
    , m_notifications(notifications)
    , m_masterBaselines(host.files, host.cloud, host.clock, host.machine)
    , m_journal(std::make_unique<FlowJournal>(*this))
    , m_adminBatch(std::make_unique<AdminBatch>(*this, host.scripts))
    , m_loginItems(std::make_unique<LoginItems>(
          *this, [this] { return m_backgroundItems->protectedPaths(); },
          [this] { return m_backgroundItems->registeredPaths(); },
          [this](const QList<LoginItem>& listed) {
              m_backgroundItems->forgetRegistered(listed);
              m_journal->noteLoginItems(listed);
          }))
    , m_launchItems(std::make_unique<LaunchItems>(*this, *m_adminBatch))
    , m_backgroundItems(std::make_unique<BackgroundItems>(*this, *m_adminBatch, m_launchItems->launchd()))
    , m_startupItems(std::make_unique<StartupItems>(*this, *m_loginItems, m_launchItems->launchd(), *m_backgroundItems))
    , m_verification(std::make_unique<SystemVerification>(
          *this,
          SystemVerification::Startup{*m_loginItems, *m_startupItems, m_launchItems->launchd(), *m_backgroundItems})) {}

SystemManager::~SystemManager() = default;

void SystemManager::log(const QString& message) {
    if (isWarning(message)) {
        return;
    }
    m_logMessages.append(message);
    Q_EMIT messageLogged(message);
}

void SystemManager::clearLog() {
    m_logMessages.clear();
    Q_EMIT logCleared();
}

void SystemManager::beginBusy(const QString& message) {
    const bool isOutermost = m_busyDepth == 0;
    ++m_busyDepth;
    if (isOutermost) {
        m_busyMessage = message;
        Q_EMIT busyMessageChanged(m_busyMessage);
        Q_EMIT isBusyChanged(true);
    }
}

void SystemManager::endBusy() {
    const bool wasBusy = isBusy();
    m_busyDepth = std::max(m_busyDepth - 1, 0);
    if (wasBusy && !isBusy()) {
        m_busyMessage.clear();
        Q_EMIT isBusyChanged(false);
        Q_EMIT busyMessageChanged(m_busyMessage);
    }
}

void SystemManager::setDebugMode(bool debugMode) {
    if (debugMode == m_debugMode) {
        return;
    }
    m_debugMode = debugMode;
    Q_EMIT debugModeChanged(debugMode);
}

bool SystemManager::isQuitting() const {
    return m_host.commands.isShutDown();
}

QCoro::Task<bool> SystemManager::unlessQuitting(QCoro::Task<bool> flow) const {
    const bool succeeded = co_await flow;
    co_return succeeded && !isQuitting();
}

QCoro::Task<CommandResult> SystemManager::runCommand(QStringList arguments, OutputCapture capture) {
    const auto debug = [this](const QString& line) {
        if (m_debugMode) {
            log(line);
        }
    };
    debug(u"\n[DEBUG] EXEC: "_s + arguments.join(u' '));
    const CommandOutcome outcome = co_await m_host.commands.run(std::move(arguments), capture);
    CommandResult result = resultOf(outcome, isQuitting());
    if (outcome.ending == CommandOutcome::Ending::NotLaunched) {
        debug(u"  [EXC] Exception: "_s + result.standardError);
        co_return result;
    }
    if (!result.standardOutput.isEmpty()) {
        debug(u"  [STDOUT] "_s + withoutOuterNewlines(result.standardOutput));
    }
    if (!result.standardError.isEmpty()) {
        debug(u"  [STDERR] "_s + withoutOuterNewlines(result.standardError));
    }
    co_return result;
}

} // namespace quorvane
