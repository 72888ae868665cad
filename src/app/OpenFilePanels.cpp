#include "app/OpenFilePanels.h"

#include <utility>

namespace quorvane {

namespace {

void finish(QPromise<OpenFilePanels::Choice>& promise) {
    if (promise.future().isFinished()) {
        return;
    }
    if (promise.future().resultCount() == 0) {
        promise.addResult(std::nullopt);
    }
    promise.finish();
}

} // namespace

OpenFilePanels::~OpenFilePanels() {
    shutDown();
}

/// A dialog may also go with the window that it belongs to.
void OpenFilePanels::follow(QDialog* dialog, const std::shared_ptr<QPromise<Choice>>& promise) {
    connect(dialog, &QDialog::finished, this, [promise, dialog] {
        finish(*promise);
        dialog->deleteLater();
    });
    connect(dialog, &QObject::destroyed, this, [promise] { finish(*promise); });
    if (m_isShutDown) {
        dialog->reject();
        return;
    }
    m_dialogs.removeAll(nullptr);
    m_dialogs.append(dialog);
}

void OpenFilePanels::cancelAll() {
    for (const QPointer<QDialog>& dialog : std::exchange(m_dialogs, {})) {
        if (dialog != nullptr) {
            dialog->reject();
        }
    }
}

void OpenFilePanels::shutDown() {
    m_isShutDown = true;
    cancelAll();
}

} // namespace quorvane
