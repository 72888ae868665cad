#include "ui/startup/StartupItemRow.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/AppSwitch.h"
#include "ui/pieces/RowContent.h"
#include "ui/symbols/Symbols.h"

#include <QAbstractItemView>
#include <QApplication>
#include <QFontMetrics>
#include <QHelpEvent>
#include <QPainter>
#include <QPainterPath>
#include <QStyle>
#include <QTextDocument>
#include <QToolTip>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = StartupItemsModel::Kind;
using Part = StartupItemRow::Part;

constexpr int kPartSize = 28; ///< of what can be pressed in a row
constexpr int kPartSymbol = 16;
constexpr int kHeadingSymbol = 16;
constexpr int kTextSpace = 2;

bool isHeading(Kind kind) {
    return kind == Kind::Heading || kind == Kind::ServicesHeading;
}

struct PartPlace {
    Part part = Part::Nothing;
    QRect rect;
};

/// What stands at the right end of a row, from right to left, as far as it has it.
class RowParts {
public:
    RowParts(const QRect& card, const StartupListRow& row, Kind kind)
        : m_right(card.right() + 1 - Theme::kGap12)
        , m_middle(card.center().y()) {
        if (row.isOn) {
            add(Part::Row, switchSize());
        } else if (kind == Kind::Suggestion) {
            add(Part::Row, {kPartSize, kPartSize});
        }
        if (row.isRemovable) {
            add(Part::Remove, {kPartSize, kPartSize});
        }
        if (row.isHidden) {
            add(Part::Hide, {kPartSize, kPartSize});
        }
        if (row.isProtected) {
            add(Part::Lock, {kPartSize, kPartSize});
        }
    }
    const QList<PartPlace>& places() const { return m_places; }
    int left() const { return m_right; }

private:
    void add(Part part, const QSize& size) {
        m_places.append(
            {part, QRect(m_right - size.width(), m_middle - size.height() / 2 + 1, size.width(), size.height())});
        m_right -= size.width() + Theme::kGap8;
    }

    QList<PartPlace> m_places;
    int m_right;
    int m_middle;
};

void paintPart(QPainter& painter, const QRect& rect, const QString& symbol, const QColor& ink) {
    const double margin = (rect.width() - kPartSymbol) / 2.0;
    paintSymbol(painter, symbol, QRectF(rect).adjusted(margin, margin, -margin, -margin), ink);
}

QString spokenHelp(Part part, const StartupListRow& row) {
    switch (part) {
    case Part::Lock:
        return kProtectedHelp;
    case Part::Hide:
        return hiddenHelp(row.isHidden.value_or(false));
    case Part::Remove:
        return kRemoveFromStartup;
    case Part::Row:
    case Part::Nothing:
        break;
    }
    return row.help;
}

} // namespace

StartupItemRow::StartupItemRow(const StartupItemsModel& model, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_model(model) {}

/// Like the column of a page that scrolls: what the scroll bar takes is taken from the margin beside it.
QRect StartupItemRow::cardRect(const QRect& rect) {
    const int room = rect.width() + QApplication::style()->pixelMetric(QStyle::PM_ScrollBarExtent) - 2 * Theme::kGap24;
    const int width = std::min(Theme::kColumn, room);
    return {rect.left() + Theme::kGap24 + (room - width) / 2, rect.top(), width, rect.height()};
}

StartupItemRow::Part StartupItemRow::partAt(const QRect& rect, const QModelIndex& index, const QPoint& position) const {
    const QRect card = cardRect(rect);
    const Kind kind = m_model.kind(index.row());
    if (!card.contains(position) || isHeading(kind) || kind == Kind::Note) {
        return Part::Nothing;
    }
    const RowParts parts(card, m_model.row(index), kind);
    for (const PartPlace& place : parts.places()) {
        if (place.rect.contains(position)) {
            return place.part;
        }
    }
    return Part::Row;
}

// ---- Sizes. There may be thousands of rows: each kind has one.

int StartupItemRow::height(const Theme& theme, int width, int row) const {
    const Kind kind = m_model.kind(row);
    const auto known = m_heights.constFind(static_cast<int>(kind));
    if (known != m_heights.cend()) {
        return *known;
    }
    const QFontMetrics title(theme.font(TextStyle::RowTitle));
    const QFontMetrics heading(theme.font(TextStyle::SectionTitle));
    const QFontMetrics small(theme.font(TextStyle::Secondary));
    const int textWidth = cardRect({0, 0, width, 1}).width() - 2 * Theme::kGap24;
    int needed = std::max(Theme::kRow, title.height() + kTextSpace + small.height() + 2 * Theme::kGap8);
    if (isHeading(kind)) {
        needed = Theme::kGap24 + heading.height() + Theme::kGap8;
    }
    if (kind == Kind::ServicesHeading) {
        needed += small.boundingRect(0, 0, textWidth, 1000, Qt::TextWordWrap, kServicesText).height() + Theme::kGap4;
    }
    if (kind == Kind::Note) {
        const QFontMetrics body(theme.font(TextStyle::Body));
        const QString longest = emptyListText(false, false);
        needed = body.boundingRect(0, 0, textWidth, 1000, Qt::TextWordWrap, longest).height() + 2 * Theme::kGap24;
    }
    return *m_heights.insert(static_cast<int>(kind), needed);
}

QSize StartupItemRow::sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const {
    return {0, height(themeOf(option.widget), option.widget->width(), index.row())}; // as wide as the list
}

// ---- Painting

void StartupItemRow::paintHeading(QPainter& painter, const Theme& theme, const QRect& rect,
                                  const StartupListRow& row) const {
    QRect line = cardRect(rect).adjusted(0, Theme::kGap24, 0, 0);
    const QFont font = theme.font(TextStyle::SectionTitle);
    line.setHeight(QFontMetrics(font).height());
    painter.setFont(font);
    painter.setPen(theme.text);
    QRect text = line;
    if (!row.symbol.isEmpty()) {
        paintSymbol(painter, row.symbol,
                    QRectF(line.left(), line.center().y() - kHeadingSymbol / 2.0 + 0.5, kHeadingSymbol, kHeadingSymbol),
                    theme.secondaryText);
        text.setLeft(line.left() + kHeadingSymbol + Theme::kGap8);
    }
    painter.drawText(text, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine,
                     painter.fontMetrics().elidedText(row.title, Qt::ElideRight, text.width()));
    if (!row.description.isEmpty()) {
        painter.setFont(theme.font(TextStyle::Secondary));
        painter.setPen(theme.secondaryText);
        painter.drawText(QRect(line.left(), line.bottom() + Theme::kGap4, line.width(), rect.bottom() - line.bottom()),
                         Qt::AlignLeft | Qt::AlignTop | Qt::TextWordWrap, row.description);
    }
}

/// A part of a card, as high as its row: rounded where the card begins and ends.
void StartupItemRow::paintCard(QPainter& painter, const Theme& theme, const QRect& rect, int row,
                               bool isHovered) const {
    const int group = m_model.group(row);
    const bool isFirst = row == 0 || m_model.group(row - 1) != group;
    const bool isLast = row + 1 == m_model.rowCount() || m_model.group(row + 1) != group;
    QRectF whole = QRectF(cardRect(rect)).adjusted(0.5, 0.5, -0.5, -0.5);
    whole.adjust(0, isFirst ? 0 : -2 * Theme::kCardRadius, 0, isLast ? 0 : 2 * Theme::kCardRadius);
    QPainterPath path;
    path.addRoundedRect(whole, Theme::kCardRadius, Theme::kCardRadius);
    painter.save();
    painter.setClipRect(rect);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(path, theme.card);
    if (isHovered) {
        painter.fillPath(path, theme.hover);
    }
    painter.setPen(theme.border);
    painter.drawPath(path);
    painter.setRenderHint(QPainter::Antialiasing, false);
    if (!isLast) {
        const int left = cardRect(rect).left() + rowTextLeft({.symbol = u"app.fill"_s});
        painter.fillRect(QRect(left, rect.bottom(), cardRect(rect).right() - left, 1), theme.border);
    }
    painter.restore();
}

void StartupItemRow::paintContents(QPainter& painter, const Theme& theme, const QRect& rect, const StartupListRow& row,
                                   Kind kind, bool isEnabled) const {
    const QRect card = cardRect(rect);
    const QRectF badge(card.left() + Theme::kGap12, card.center().y() - Theme::kBadge / 2.0 + 0.5, Theme::kBadge,
                       Theme::kBadge);
    painter.setOpacity(isEnabled ? 1 : 0.4);
    paintBadge(painter, theme, badge, row.symbol, row.isOn.value_or(true) ? row.tint : BadgeColor::Grey);
    painter.setOpacity(1);

    const RowParts parts(card, row, kind);
    for (const PartPlace& place : parts.places()) {
        switch (place.part) {
        case Part::Row:
            if (row.isOn) {
                paintSwitch(painter, theme, place.rect, *row.isOn ? 1 : 0, isEnabled && row.canSwitch);
            } else {
                paintPart(painter, place.rect, kAddSuggestionSymbol, theme.accentText);
            }
            break;
        case Part::Hide:
            paintPart(painter, place.rect, hiddenSymbol(*row.isHidden), theme.secondaryText);
            break;
        case Part::Remove:
            paintPart(painter, place.rect, kRemoveSymbol, theme.danger);
            break;
        case Part::Lock:
            paintPart(painter, place.rect, kProtectedSymbol, theme.warning);
            break;
        case Part::Nothing:
            break;
        }
    }

    const int left = card.left() + rowTextLeft({.symbol = row.symbol});
    const QFontMetrics title(theme.font(TextStyle::RowTitle));
    const QFontMetrics small(theme.font(TextStyle::Secondary));
    const int height = title.height() + (row.description.isEmpty() ? 0 : kTextSpace + small.height());
    QRect line(left, card.top() + (card.height() - height) / 2, std::max(0, parts.left() - left), title.height());
    const int markWidth = row.mark.isEmpty() ? 0 : small.horizontalAdvance(row.mark) + Theme::kGap8;
    const QString name = title.elidedText(row.title, Qt::ElideMiddle, line.width() - markWidth);
    constexpr int kOnLine = Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine;
    painter.setFont(theme.font(TextStyle::RowTitle));
    painter.setPen(isEnabled ? theme.text : theme.disabledText);
    painter.drawText(line, kOnLine, name);
    painter.setFont(theme.font(TextStyle::Secondary));
    if (!row.mark.isEmpty()) {
        painter.setPen(theme.accentText);
        painter.drawText(line.adjusted(title.horizontalAdvance(name) + Theme::kGap8, 0, 0, 0), kOnLine, row.mark);
    }
    line.translate(0, title.height() + kTextSpace);
    line.setHeight(small.height());
    painter.setPen(isEnabled ? theme.secondaryText : theme.disabledText);
    painter.drawText(line, kOnLine, small.elidedText(row.description, Qt::ElideMiddle, line.width()));
}

void StartupItemRow::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const Theme& theme = themeOf(option.widget);
    const Kind kind = m_model.kind(index.row());
    const StartupListRow row = m_model.row(index);
    painter->save();
    if (isHeading(kind)) {
        paintHeading(*painter, theme, option.rect, row);
    } else {
        const bool canBeUsed = kind != Kind::Note && option.state.testFlag(QStyle::State_Enabled);
        const bool isHovered = canBeUsed && option.state.testFlag(QStyle::State_MouseOver);
        paintCard(*painter, theme, option.rect, index.row(), isHovered);
        if (kind == Kind::Note) {
            painter->setFont(theme.font(TextStyle::Body));
            painter->setPen(theme.secondaryText);
            painter->drawText(cardRect(option.rect).adjusted(Theme::kGap24, 0, -Theme::kGap24, 0),
                              Qt::AlignCenter | Qt::TextWordWrap, row.title);
        } else {
            paintContents(*painter, theme, option.rect, row, kind, looksEnabled(option.widget));
        }
        if (option.state.testFlag(QStyle::State_HasFocus) &&
            option.widget->window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
            drawFocusRing(*painter, theme, QRectF(cardRect(option.rect)).adjusted(3, 3, -3, -3), Theme::kFieldRadius);
        }
    }
    painter->restore();
}

bool StartupItemRow::helpEvent(QHelpEvent* event, QAbstractItemView* view, const QStyleOptionViewItem& option,
                               const QModelIndex& index) {
    if (event->type() != QEvent::ToolTip || !index.isValid()) {
        return QStyledItemDelegate::helpEvent(event, view, option, index);
    }
    const QString help = spokenHelp(partAt(option.rect, index, event->pos()), m_model.row(index));
    QToolTip::showText(event->globalPos(), help.isEmpty() ? QString() : Qt::convertFromPlainText(help), view);
    return true;
}

} // namespace quorvane
