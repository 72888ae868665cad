#pragma once

#include "core/FlowEnvironment.h"
#include "readings/Abandonment.h"

#include <QHash>
#include <QStringList>

namespace quorvane {

/// One look at the Mac, however often its readers ask: each command runs once with its arguments, and its answer serves
/// whoever asks again. It keeps what wasn't answered. Once it has been abandoned, nothing is run or logged any more, and
/// every command counts as unanswered. For readers only: what changes the Mac isn't for it.
class ReadingSession final : public FlowEnvironment {
public:
    explicit ReadingSession(FlowEnvironment& environment, Abandonment abandonment = {});

    bool isAbandoned() const { return m_abandonment.isAbandoned(); }
    /// What wasn't answered, as people know it, in the order in which it was asked.
    const QStringList& missing() const { return m_missing; }

    void log(const QString& message) override;
    QCoro::Task<CommandResult> runCommand(QStringList arguments, OutputCapture capture) override;
    /// Nothing is read as root in a session: it fails.
    QCoro::Task<CommandResult> executeAdminScript(QString script, QString prompt) override;
    const Host& host() const override { return m_environment.host(); }

private:
    FlowEnvironment& m_environment;
    Abandonment m_abandonment;
    QHash<QStringList, CommandResult> m_results;
    QStringList m_missing;
};

/// What the log calls the reading of the login items.
extern const QString kLoginItemsReading;

} // namespace quorvane
