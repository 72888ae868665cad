#include "fakes/FilePanelUser.h"

#include "app/simulated/ApplicationDialog.h"
#include "fakes/EventLoop.h"

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QTest>

namespace quorvane {

QDialog* openFilePanel() {
    QDialog* newest = nullptr;
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        auto* const dialog = qobject_cast<QDialog*>(window);
        const bool isPanel =
            qobject_cast<QFileDialog*>(dialog) != nullptr || qobject_cast<ApplicationDialog*>(dialog) != nullptr;
        if (isPanel && dialog->isVisible()) {
            newest = dialog->isActiveWindow() || newest == nullptr ? dialog : newest;
        }
    }
    return newest;
}

/// Qt's panel puts what is selected in its list into a field that has no focus.
void enterFileName(const QString& name) {
    processEventsUntil([] { return openFilePanel() != nullptr; });
    QDialog* const panel = openFilePanel();
    ASSERT_NE(panel, nullptr);
    panel->activateWindow();
    auto* const field = panel->findChild<QLineEdit*>(QStringLiteral("fileNameEdit"));
    ASSERT_NE(field, nullptr);
    field->setFocus();
    processEventsUntil([field] { return field->hasFocus(); });
    field->selectAll();
    QTest::keyClicks(field, name);
    QTest::keyClick(field, Qt::Key_Return);
}

} // namespace quorvane
