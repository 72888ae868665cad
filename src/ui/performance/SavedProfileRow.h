#pragma once

#include "ui/pieces/RowContent.h"

#include <QStyledItemDelegate>

namespace quorvane {

class SavedProfilesModel;

/// Draws a saved profile: its name and what it holds, on green while it is in force, and its delete button.
class SavedProfileRow : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit SavedProfileRow(const SavedProfilesModel& model, QObject* parent = nullptr);

    /// How high every row is: names stand on one line.
    int height(const Theme& theme, int width) const;
    /// Where the delete button of a row stands; empty for a row without one.
    QRect deleteButton(const QRect& row, const QModelIndex& index) const;

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    RowContent content(const QModelIndex& index) const;

    const SavedProfilesModel& m_model;
};

/// As the row's button is drawn where it isn't a widget.
void paintDeleteButton(QPainter& painter, const Theme& theme, const QRect& rect, bool isHovered);

} // namespace quorvane
