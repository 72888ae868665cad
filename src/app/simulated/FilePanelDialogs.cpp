#include "app/simulated/FilePanelDialogs.h"

#include "app/simulated/ApplicationDialog.h"
#include "app/simulated/DiskFileDialog.h"
#include "simulator/ApplicationFinder.h"
#include "simulator/Mac.h"

namespace quorvane {

namespace {

template <typename Dialog>
void openOverAll(Dialog& dialog) {
    dialog.setWindowModality(Qt::ApplicationModal);
    dialog.show();
    dialog.raise();
    dialog.activateWindow();
}

} // namespace

QFuture<std::optional<QString>> FilePanelDialogs::save(const QString& title, const QString& suggestedName,
                                                       FileKind kind) {
    auto* const dialog = new DiskFileDialog(title, kind);
    dialog->saveAs(suggestedName);
    return m_open.show(dialog, &DiskFileDialog::chosen, &openOverAll<DiskFileDialog>);
}

QFuture<std::optional<QString>> FilePanelDialogs::open(const QString& title, FileKind kind) {
    if (kind == FileKind::Application) {
        return pickApplication(title);
    }
    return m_open.show(new DiskFileDialog(title, kind), &DiskFileDialog::chosen, &openOverAll<DiskFileDialog>);
}

QFuture<std::optional<QString>> FilePanelDialogs::pickApplication(const QString& title) {
    QStringList paths;
    for (const macsim::Application& application :
         macsim::installedApplications(*m_mac, m_mac->volume(macsim::Actor::User))) {
        paths.append(application.path);
    }
    return m_open.show(new ApplicationDialog(title, paths), &ApplicationDialog::chosen,
                       &openOverAll<ApplicationDialog>);
}

} // namespace quorvane
