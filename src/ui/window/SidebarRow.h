#pragma once

#include <QColor>
#include <QRect>
#include <QString>

class QPainter;

namespace quorvane {

class Theme;

/// A row of the sidebar: a symbol and a text, on a rounded ground.
struct SidebarRow {
    QString text;
    QString symbol;
    QColor ground = Qt::transparent;
    bool isSelected = false;
    bool hasRing = false;
};

int sidebarRowHeight(const Theme& theme);
/// How wide a row is with that text in it.
int sidebarRowWidth(const Theme& theme, const QString& text);
void paintSidebarRow(QPainter& painter, const Theme& theme, const QRect& rect, const SidebarRow& row);

} // namespace quorvane
