#pragma once

#include "ui/performance/SavedProfileRow.h"

#include <QListView>

namespace quorvane {

class SavedProfilesModel;

/// The rows of saved profiles, as high as all of them: the page scrolls. A click, Return or Space picks a row; the Delete key
/// and its button delete its profile, the other button edits it.
class SavedProfilesView : public QListView {
    Q_OBJECT

public:
    explicit SavedProfilesView(SavedProfilesModel& model, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;

Q_SIGNALS:
    void picked(const QModelIndex& index);
    void deletionAsked(const QModelIndex& index);
    void editingAsked(const QModelIndex& index);
    /// The current row lies there now, in the view's coordinates.
    void currentMoved(const QRect& row);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void wheelEvent(QWheelEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    bool event(QEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void changeEvent(QEvent* event) override;
    void rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) override;
    void currentChanged(const QModelIndex& current, const QModelIndex& previous) override;
    void scrollTo(const QModelIndex&, ScrollHint) override {} // the page does

private:
    enum class Part { Row, Edit, Delete };
    class Tool;

    void takeHeight();
    void placeTools();
    void placeTool(Tool& tool, const QRect& place, const QString& title);
    void press(Part part, const QModelIndex& index);
    Part partAt(const QModelIndex& index, const QPoint& position) const;
    bool isPickable(const QModelIndex& index) const;

    SavedProfilesModel& m_model;
    SavedProfileRow m_row;
    // Of the current row, for keys and screen readers.
    Tool* m_edit;
    Tool* m_delete;
    QPersistentModelIndex m_pressed;
    Part m_pressedPart = Part::Row;
    int m_rowHeight = 0;
};

} // namespace quorvane
