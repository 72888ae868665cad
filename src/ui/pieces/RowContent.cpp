#include "ui/pieces/RowContent.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/LongWords.h"
#include "ui/symbols/Symbols.h"

#include <QFontMetrics>
#include <QPainter>
#include <QTextLayout>
#include <QtMath>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kEndSymbol = 14;
constexpr int kTextGap = 2;
constexpr int kNarrowestText = 120;

int endWidth(const RowContent& content) {
    const int ofSymbol = content.end == RowEnd::Nothing ? 0 : kEndSymbol + Theme::kGap12;
    const int ofControls = content.controlWidth == 0 ? 0 : content.controlWidth + Theme::kGap12;
    return ofSymbol + ofControls;
}

int textWidth(const RowContent& content, int width) {
    return std::max(kNarrowestText, width - rowTextLeft(content) - endWidth(content) - Theme::kGap12);
}

/// A text on as many lines as it needs at a width. To measure and to paint it, it is laid out once.
class WrappedText {
public:
    WrappedText(const QFont& font, const QString& text, int width)
        : m_layout(withBreaksInLongWords(text), font) {
        if (text.isEmpty()) {
            return;
        }
        const qreal leading = QFontMetricsF(font).leading();
        qreal y = 0;
        m_layout.beginLayout();
        for (QTextLine line = m_layout.createLine(); line.isValid(); line = m_layout.createLine()) {
            line.setLineWidth(width);
            line.setPosition({0, y});
            y += line.height() + leading;
        }
        m_layout.endLayout();
        m_height = qCeil(y - leading);
    }

    int height() const { return m_height; }
    void paint(QPainter& painter, const QPoint& topLeft) const { m_layout.draw(&painter, topLeft); }

private:
    QTextLayout m_layout;
    int m_height = 0;
};

/// The texts of a row at a width, one under the other.
struct RowTexts {
    RowTexts(const Theme& theme, const RowContent& content, int width)
        : title(theme.font(TextStyle::RowTitle), content.isOneLined ? QString() : content.title, width)
        , description(theme.font(TextStyle::Secondary), content.description, width)
        , titleHeight(content.isOneLined ? QFontMetrics(theme.font(TextStyle::RowTitle)).height() : title.height()) {}

    int height() const { return titleHeight + (description.height() == 0 ? 0 : kTextGap + description.height()); }

    WrappedText title; ///< empty where it stays on one line
    WrappedText description;
    int titleHeight;
};

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
    const RowTexts texts(theme, content, area.width());
    const int y = area.top() + (area.height() - texts.height()) / 2;
    painter.setPen(isEnabled ? theme.text : theme.disabledText);
    if (content.isOneLined) {
        painter.setFont(theme.font(TextStyle::RowTitle));
        paintNameAndMark(painter, theme, QRect(area.left(), y, area.width(), texts.titleHeight), content);
    } else {
        texts.title.paint(painter, {area.left(), y});
    }
    painter.setPen(isEnabled ? theme.secondaryText : theme.disabledText);
    texts.description.paint(painter, {area.left(), y + texts.titleHeight + kTextGap});
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

int leastRowHeight(const RowContent& content) {
    return content.description.isEmpty() ? Theme::kSingleRow : Theme::kRow;
}

int rowHeight(const Theme& theme, const RowContent& content, int width) {
    const int texts = RowTexts(theme, content, textWidth(content, width)).height();
    return std::max(leastRowHeight(content), texts + 2 * Theme::kGap8);
}

QSizePolicy rowSizePolicy() {
    QSizePolicy policy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    policy.setHeightForWidth(true);
    return policy;
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
