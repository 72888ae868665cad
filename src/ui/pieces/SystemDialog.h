#pragma once

#include <QDialog>

namespace quorvane {

/// A window of its own in which something is asked for before anything else goes on. It can be closed, and nothing more.
class SystemDialog : public QDialog {
public:
    SystemDialog() {
        setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowCloseButtonHint);
        setWindowModality(Qt::ApplicationModal);
        setWindowTitle(QStringLiteral("Quorvane"));
    }
};

} // namespace quorvane
