#pragma once

#include "ui/pieces/RowContent.h"

#include <QStyledItemDelegate>

namespace quorvane {

class SavedProfilesModel;

/// Draws a saved profile: its name and what it holds, on green while it is in force, and its buttons.
class SavedProfileRow : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit SavedProfileRow(const SavedProfilesModel& model, QObject* parent = nullptr);

    /// How high every row is: names stand on one line.
    int height(const Theme& theme, int width) const;
    /// Where a button of a row stands; empty for a row without one.
    QRect deleteButton(const QRect& row, const QModelIndex& index) const { return button(row, index, 0); }
    QRect editButton(const QRect& row, const QModelIndex& index) const { return button(row, index, 1); }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;

private:
    RowContent content(const QModelIndex& index) const;
    QRect button(const QRect& row, const QModelIndex& index, int fromRight) const;

    const SavedProfilesModel& m_model;
};

inline const QString kEditSymbol = QStringLiteral("pencil");
inline const QString kDeleteSymbol = QStringLiteral("trash");
/// As a row's button is drawn where it isn't a widget.
void paintRowTool(QPainter& painter, const QRect& rect, const QString& symbol, const QColor& ink);

} // namespace quorvane
