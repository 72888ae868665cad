#include "app/simulated/FingerDialogs.h"

#include "app/simulated/FingerDialog.h"

#include <QPromise>

#include <memory>
#include <utility>

namespace quorvane {

FingerDialogs::~FingerDialogs() {
    shutDown();
}

QFuture<BiometricAnswer> FingerDialogs::ask(const QString& reason) {
    const auto promise = std::make_shared<QPromise<BiometricAnswer>>();
    promise->start();
    auto* const dialog = new FingerDialog(reason);
    connect(dialog, &FingerDialog::answered, this, [promise](BiometricAnswer answer) {
        promise->addResult(answer);
        promise->finish();
    });
    m_dialogs.append(dialog);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return promise->future();
}

void FingerDialogs::shutDown() {
    for (const QPointer<QDialog>& dialog : std::exchange(m_dialogs, {})) {
        if (dialog != nullptr) {
            dialog->reject();
        }
    }
}

} // namespace quorvane
