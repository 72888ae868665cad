#include "ui/pieces/RowContent.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/LongWords.h"
#include "ui/symbols/Symbols.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kEndSymbol = 14;
constexpr int kTextGap = 2;
constexpr int kNarrowestText = 120;
constexpr int kWrapped = Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap;

int endWidth(const RowContent& content) {
    const int ofSymbol = content.end == RowEnd::Nothing ? 0 : kEndSymbol + Theme::kGap12;
    const int ofControls = content.controlWidth == 0 ? 0 : content.controlWidth + Theme::kGap12;
    return ofSymbol + ofControls;
}

int textWidth(const RowContent& content, int width) {
    return std::max(kNarrowestText, width - rowTextLeft(content) - endWidth(content) - Theme::kGap12);
}

int wrappedHeight(const QFont& font, const QString& text, int width) {
    return QFontMetrics(font).boundingRect(QRect(0, 0, width, QWIDGETSIZE_MAX), kWrapped, withBreaksInLongWords(text))
        .height();
}

int titleHeight(const Theme& theme, const RowContent& content, int width) {
    const QFont font = theme.font(TextStyle::RowTitle);
    return content.isOneLined ? QFontMetrics(font).height() : wrappedHeight(font, content.title, width);
}

int descriptionHeight(const Theme& theme, const RowContent& content, int width) {
    return content.description.isEmpty()
               ? 0
               : kTextGap + wrappedHeight(theme.font(TextStyle::Secondary), content.description, width);
}

QString endSymbol(RowEnd end) {
    return end == RowEnd::Chevron ? u"chevron.right"_s : u"checkmark.circle.fill"_s;
}

void paintNameAndMark(QPainter& painter, const Theme& theme, const QRect& line, const RowContent& content) {
    const QFontMetrics metrics(painter.font());
    const QFont markFont = theme.font(TextStyle::Secondary);
    const int ofMark =
        content.mark.isEmpty() ? 0 : QFontMetrics(markFont).horizontalAdvance(content.mark) + Theme::kGap8;
    const QString name = metrics.elidedText(content.title, Qt::ElideMiddle, line.width() - ofMark);
    constexpr int kOnLine = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine;
    painter.drawText(line, kOnLine, name);
    painter.setFont(markFont);
    painter.setPen(theme.secondaryText);
    painter.drawText(line.adjusted(metrics.horizontalAdvance(name) + Theme::kGap8, 0, 0, 0), kOnLine, content.mark);
}

void paintTexts(QPainter& painter, const Theme& theme, const QRect& area, const RowContent& content, bool isEnabled) {
    const int width = area.width();
    const int ofTitle = titleHeight(theme, content, width);
    const int whole = ofTitle + descriptionHeight(theme, content, width);
    int y = area.top() + (area.height() - whole) / 2;
    const QFont titleFont = theme.font(TextStyle::RowTitle);
    painter.setFont(titleFont);
    painter.setPen(isEnabled ? theme.text : theme.disabledText);
    if (content.isOneLined) {
        paintNameAndMark(painter, theme, QRect(area.left(), y, width, ofTitle), content);
    } else {
        painter.drawText(QRect(area.left(), y, width, ofTitle), kWrapped,
                         withBreaksInLongWords(content.title));
    }
    y += ofTitle + kTextGap;
    painter.setFont(theme.font(TextStyle::Secondary));
    painter.setPen(isEnabled ? theme.secondaryText : theme.disabledText);
    painter.drawText(QRect(area.left(), y, width, area.bottom() - y + 1), kWrapped,
                     withBreaksInLongWords(content.description));
}

void paintGround(QPainter& painter, const Theme& theme, const QRect& rect, const RowContent& content,
                 const RowState& state) {
    if (content.isMatch) {
        painter.fillRect(rect, theme.matchTint);
    }
    if (state.isPressed) {
        painter.fillRect(rect, theme.pressed);
    } else if (state.isHovered && state.isEnabled) {
        painter.fillRect(rect, theme.hover);
    }
}

} // namespace

int rowTextLeft(const RowContent& content) {
    return content.symbol.isEmpty() ? Theme::kGap12 : Theme::kGap12 + Theme::kBadge + Theme::kGap12;
}

int rowHeight(const Theme& theme, const RowContent& content, int width) {
    const int ofText = textWidth(content, width);
    const int texts = titleHeight(theme, content, ofText) + descriptionHeight(theme, content, ofText);
    const int least = content.description.isEmpty() ? Theme::kSingleRow : Theme::kRow;
    return std::max(least, texts + 2 * Theme::kGap8);
}

int rowMinimumWidth(const Theme&, const RowContent& content) {
    return rowTextLeft(content) + kNarrowestText + endWidth(content) + Theme::kGap12;
}

void paintRow(QPainter& painter, const Theme& theme, const QRect& rect, const RowContent& content,
              const RowState& state) {
    painter.save();
    paintGround(painter, theme, rect, content, state);
    if (!content.symbol.isEmpty()) {
        const QRectF badge(rect.left() + Theme::kGap12, rect.center().y() - Theme::kBadge / 2.0 + 0.5, Theme::kBadge,
                           Theme::kBadge);
        painter.setOpacity(state.isEnabled ? 1 : 0.4);
        paintBadge(painter, theme, badge, content.symbol, content.tint);
        painter.setOpacity(1);
    }
    const QRect texts(rect.left() + rowTextLeft(content), rect.top(), textWidth(content, rect.width()), rect.height());
    paintTexts(painter, theme, texts, content, state.isEnabled);
    if (content.end != RowEnd::Nothing) {
        const int right =
            rect.right() + 1 - Theme::kGap12 - (content.controlWidth == 0 ? 0 : content.controlWidth + Theme::kGap12);
        const QRectF end(right - kEndSymbol, rect.center().y() - kEndSymbol / 2.0 + 0.5, kEndSymbol, kEndSymbol);
        const QColor ink = content.end == RowEnd::CheckMark ? theme.success : theme.secondaryText;
        paintSymbol(painter, endSymbol(content.end), end, state.isEnabled ? ink : theme.disabledText);
    }
    if (state.hasFocusRing) {
        drawFocusRing(painter, theme, QRectF(rect).adjusted(3, 3, -3, -3), Theme::kFieldRadius);
    }
    painter.restore();
}

void paintBadge(QPainter& painter, const Theme& theme, const QRectF& rect, const QString& symbol, BadgeColor tint) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(theme.badge(tint));
    painter.drawRoundedRect(rect, Theme::kFieldRadius, Theme::kFieldRadius);
    const double margin = rect.width() * (Theme::kBadge - Theme::kBadgeSymbol) / (2.0 * Theme::kBadge);
    paintSymbol(painter, symbol, rect.adjusted(margin, margin, -margin, -margin), theme.onAccent);
    painter.restore();
}

} // namespace quorvane
