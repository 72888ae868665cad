#pragma once

#include "ui/startup/StartupItemRow.h"

#include <QListView>

namespace quorvane {

class StartupItemsModel;

/// The rows of the startup editor, which scroll by themselves. A click or Space switches a row or adds a suggestion; the Delete
/// key and its button remove what can be removed; the menu key has a menu of what else a row can do.
class StartupItemsView : public QListView {
    Q_OBJECT

public:
    explicit StartupItemsView(StartupItemsModel& model, QWidget* parent = nullptr);

Q_SIGNALS:
    void pressed(const QModelIndex& index);
    void removalAsked(const QModelIndex& index);
    void hidingAsked(const QModelIndex& index);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    QModelIndex moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;

private:
    void actOn(const QModelIndex& index, StartupItemRow::Part part);
    void askForRemoval(const QModelIndex& index);
    void popUpMenu(const QModelIndex& index, const QPoint& place);
    void rememberPlace();
    void keepPlace();
    QModelIndex firstUsable(int row, int step) const;
    QModelIndex pageAway(int distance) const;

    StartupItemsModel& m_model;
    StartupItemRow m_row;
    QPersistentModelIndex m_pressedIndex;
    StartupItemRow::Part m_pressedPart = StartupItemRow::Part::Nothing;
    QPersistentModelIndex m_anchor; ///< what stays where it is seen while rows come and go
    int m_anchorTop = 0;
};

} // namespace quorvane
