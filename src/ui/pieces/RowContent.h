#pragma once

#include "ui/Theme.h"

#include <QRect>
#include <QSizePolicy>
#include <QString>

class QPainter;

namespace quorvane {

/// What stands at the right end of a row.
enum class RowEnd { Nothing, Chevron, CheckMark };

/// What a row says: a symbol on a badge, a title over a description.
struct RowContent {
    QString symbol{}; ///< none leaves no room for a badge
    BadgeColor tint = BadgeColor::Grey;
    QString title{};
    QString description{}; ///< may be empty
    RowEnd end = RowEnd::Nothing;
    QString mark{};          ///< in small letters behind the title; may be empty
    bool isOneLined = false; ///< the title, a name from a file, is shortened in the middle and never wraps
    bool isMatch = false;    ///< on the tint of what matches this Mac
    int controlWidth = 0;    ///< kept free at the right end for controls of the row's own

    bool operator==(const RowContent&) const = default;
};

/// What state a row is shown in.
struct RowState {
    bool isEnabled = true;
    bool isHovered = false;
    bool isPressed = false;
    bool hasFocusRing = false;
};

/// How high a row is, in device-independent pixels: as much as its texts need at that width.
int rowHeight(const Theme& theme, const RowContent& content, int width);
/// Of a widget that is a row. It is as high as it is asked to be for a width: a height that it had at another one would bind a
/// layout, were it fixed.
QSizePolicy rowSizePolicy();
/// The narrowest that a row may be.
int rowMinimumWidth(const Theme& theme, const RowContent& content);
void paintRow(QPainter& painter, const Theme& theme, const QRect& rect, const RowContent& content,
              const RowState& state);
/// Where the texts of rows begin, and so the lines between them.
int rowTextLeft(const RowContent& content);
/// No row is lower.
int leastRowHeight(const RowContent& content);

/// A symbol in white on a rounded square.
void paintBadge(QPainter& painter, const Theme& theme, const QRectF& rect, const QString& symbol, BadgeColor tint);

} // namespace quorvane
