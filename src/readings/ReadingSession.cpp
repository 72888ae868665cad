#include "readings/ReadingSession.h"

#include <QCoroTask>

#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

CommandResult withoutAnswer() {
    return {1, {}, {}, false};
}

/// A tool by its line; the scripts of System Events are too long for one.
QString nameOfReading(const QStringList& arguments) {
    return arguments.first().endsWith(u"osascript"_s) ? kLoginItemsReading : arguments.join(u' ');
}

} // namespace

const QString kLoginItemsReading = u"login items"_s;

ReadingSession::ReadingSession(FlowEnvironment& environment, Abandonment abandonment)
    : m_environment(environment)
    , m_abandonment(std::move(abandonment)) {}

void ReadingSession::log(const QString& message) {
    if (!isAbandoned()) {
        m_environment.log(message);
    }
}

QCoro::Task<CommandResult> ReadingSession::runCommand(QStringList arguments, OutputCapture capture) {
    if (isAbandoned()) {
        co_return withoutAnswer();
    }
    if (const auto known = m_results.constFind(arguments); known != m_results.cend()) {
        co_return *known;
    }
    const CommandResult result = co_await m_environment.runCommand(arguments, capture);
    if (isAbandoned()) {
        co_return withoutAnswer();
    }
    m_results.insert(arguments, result);
    const QString name = nameOfReading(arguments);
    if (!result.isAnswered && !m_missing.contains(name)) {
        m_missing.append(name);
    }
    co_return result;
}

QCoro::Task<CommandResult> ReadingSession::executeAdminScript(QString, QString) {
    co_return withoutAnswer();
}

} // namespace quorvane
