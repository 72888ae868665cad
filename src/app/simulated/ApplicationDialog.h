#pragma once

#include "ui/pieces/SystemDialog.h"

#include <QStringList>

class QListWidget;
class QPushButton;

namespace quorvane {

/// Chooses one of the applications of a simulated Mac.
class ApplicationDialog final : public SystemDialog {
    Q_OBJECT

public:
    /// @param paths  of the bundles
    ApplicationDialog(const QString& title, const QStringList& paths);

    void accept() override;

Q_SIGNALS:
    /// Once, before it ends.
    void chosen(const QString& path);

private:
    void fill(const QStringList& paths);
    QWidget* makeButtons();

    QListWidget* m_list;
    QPushButton* m_open = nullptr;
};

} // namespace quorvane
