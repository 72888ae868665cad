#pragma once

#include "platform/FilePanels.h"

#include <QFileDialog>
#include <QFileInfo>

namespace quorvane {

/// Chooses a file of this computer: one that is there, or a name to save under. It runs no event loop of its own, so that the
/// program can take it away at any time.
class DiskFileDialog final : public QFileDialog {
    Q_OBJECT

public:
    DiskFileDialog(const QString& title, FileKind kind);

    /// It is to save, and no longer to open.
    void saveAs(const QString& suggestedName);

    void accept() override;

Q_SIGNALS:
    /// Once, before it ends.
    void chosen(const QString& path);

private:
    QString namedPath() const;
    void choose(const QFileInfo& file);
    void askToReplace(const QFileInfo& file);
};

} // namespace quorvane
