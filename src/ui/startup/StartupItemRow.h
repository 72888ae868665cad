#pragma once

#include "ui/startup/StartupItemsModel.h"

#include <QStyledItemDelegate>

namespace quorvane {

/// Draws what the startup editor lists: items and their switches on cards, headings between them.
class StartupItemRow : public QStyledItemDelegate {
    Q_OBJECT

public:
    explicit StartupItemRow(const StartupItemsModel& model, QObject* parent = nullptr);

    /// What lies under a point of a row.
    enum class Part { Nothing, Row, Hide, Remove, Lock };
    Part partAt(const QRect& rect, const QModelIndex& index, const QPoint& position) const;
    /// A row's card, in the middle of the list.
    static QRect cardRect(const QRect& rect);

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override;
    bool helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                   const QModelIndex& index) override;
    /// Called when the style or the width has changed.
    void measureAnew() { m_heights.clear(); }

private:
    int height(const Theme& theme, int width, int row) const;
    void paintHeading(QPainter& painter, const Theme& theme, const QRect& rect, const StartupListRow& row) const;
    void paintCard(QPainter& painter, const Theme& theme, const QRect& rect, int row, bool isHovered) const;
    void paintContents(QPainter& painter, const Theme& theme, const QRect& rect, const StartupListRow& row,
                       StartupItemsModel::Kind kind, bool isEnabled) const;

    const StartupItemsModel& m_model;
    mutable QHash<int, int> m_heights; ///< by kind
};

} // namespace quorvane
