#include "app/simulated/AuthorizationDialogs.h"

#include "app/simulated/AuthorizationDialog.h"

#include <QFutureWatcher>
#include <QPromise>

#include <memory>

namespace quorvane {

AuthorizationDialogs::~AuthorizationDialogs() {
    shutDown();
}

QFuture<macsim::Authorization> AuthorizationDialogs::ask(const QString& prompt) {
    if (m_isShutDown) {
        return QtFuture::makeReadyFuture(macsim::Authorization::Cancel);
    }
    const auto promise = std::make_shared<QPromise<macsim::Authorization>>();
    promise->start();
    auto* const dialog = new AuthorizationDialog(prompt, m_machine);
    connect(dialog, &AuthorizationDialog::answered, this, [promise](macsim::Authorization answer) {
        promise->addResult(answer);
        promise->finish();
    });
    auto* const watcher = new QFutureWatcher<macsim::Authorization>(dialog);
    connect(watcher, &QFutureWatcherBase::canceled, dialog, &AuthorizationDialog::reject);
    watcher->setFuture(promise->future());
    m_dialogs.append(dialog);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return promise->future();
}

void AuthorizationDialogs::shutDown() {
    m_isShutDown = true;
    for (const QPointer<AuthorizationDialog>& dialog : std::as_const(m_dialogs)) {
        if (dialog != nullptr) {
            dialog->reject();
        }
    }
    m_dialogs.clear();
}

} // namespace quorvane
