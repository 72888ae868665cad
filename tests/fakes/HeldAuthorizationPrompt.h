#pragma once

#include "platform/simulated/AuthorizationPrompt.h"

#include <QFutureWatcher>
#include <QPromise>

#include <memory>
#include <vector>

namespace quorvane {

/// Somebody who takes their time: every dialog of a simulated Mac stands open until a test answers it, or until its script
/// has ended.
class HeldAuthorizationPrompt final : public AuthorizationPrompt {
public:
    QFuture<macsim::Authorization> ask(const QString& prompt) override;

    /// The texts of the dialogs that stand open.
    QStringList open() const;
    /// The texts of those that went because nobody waits for their answer.
    const QStringList& withdrawn() const { return m_withdrawn; }
    /// Answers all open dialogs.
    void answer(macsim::Authorization answer);

private:
    struct Dialog {
        QString prompt;
        QPromise<macsim::Authorization> promise;
        QFutureWatcher<macsim::Authorization> watcher;
    };
    void withdraw(const Dialog* dialog);

    std::vector<std::unique_ptr<Dialog>> m_dialogs;
    QStringList m_withdrawn;
};

} // namespace quorvane
