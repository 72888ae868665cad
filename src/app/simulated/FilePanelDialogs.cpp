#include "app/simulated/FilePanelDialogs.h"

#include "app/simulated/ApplicationDialog.h"
#include "app/simulated/DiskFileDialog.h"
#include "simulator/ApplicationFinder.h"
#include "simulator/Mac.h"

#include <QPromise>

#include <utility>

namespace quorvane {

FilePanelDialogs::~FilePanelDialogs() {
    shutDown();
}

QFuture<FilePanelDialogs::Choice> FilePanelDialogs::save(const QString& title, const QString& suggestedName,
                                                         FileKind kind) {
    const auto promise = std::make_shared<QPromise<Choice>>();
    auto* const dialog = new DiskFileDialog(title, kind);
    dialog->saveAs(suggestedName);
    connect(dialog, &DiskFileDialog::chosen, this, [promise](const QString& path) { promise->addResult(path); });
    return show(dialog, promise);
}

QFuture<FilePanelDialogs::Choice> FilePanelDialogs::open(const QString& title, FileKind kind) {
    if (kind == FileKind::Application) {
        return pickApplication(title);
    }
    const auto promise = std::make_shared<QPromise<Choice>>();
    auto* const dialog = new DiskFileDialog(title, kind);
    connect(dialog, &DiskFileDialog::chosen, this, [promise](const QString& path) { promise->addResult(path); });
    return show(dialog, promise);
}

QFuture<FilePanelDialogs::Choice> FilePanelDialogs::pickApplication(const QString& title) {
    QStringList paths;
    for (const macsim::Application& application :
         macsim::installedApplications(*m_mac, m_mac->volume(macsim::Actor::User))) {
        paths.append(application.path);
    }
    const auto promise = std::make_shared<QPromise<Choice>>();
    auto* const dialog = new ApplicationDialog(title, paths);
    connect(dialog, &ApplicationDialog::chosen, this, [promise](const QString& path) { promise->addResult(path); });
    return show(dialog, promise);
}

/// A dialog that ends without a choice was cancelled.
QFuture<FilePanelDialogs::Choice> FilePanelDialogs::show(QDialog* dialog,
                                                         const std::shared_ptr<QPromise<Choice>>& promise) {
    promise->start();
    connect(dialog, &QDialog::finished, this, [promise, dialog] {
        if (promise->future().resultCount() == 0) {
            promise->addResult(std::nullopt);
        }
        promise->finish();
        dialog->deleteLater();
    });
    if (m_isShutDown) {
        dialog->reject();
        return promise->future();
    }
    m_dialogs.removeAll(nullptr);
    m_dialogs.append(dialog);
    dialog->setWindowModality(Qt::ApplicationModal);
    dialog->show();
    dialog->raise();
    dialog->activateWindow();
    return promise->future();
}

void FilePanelDialogs::cancelOpen() {
    for (const QPointer<QDialog>& dialog : std::exchange(m_dialogs, {})) {
        if (dialog != nullptr) {
            dialog->reject();
        }
    }
}

void FilePanelDialogs::shutDown() {
    m_isShutDown = true;
    cancelOpen();
}

} // namespace quorvane
