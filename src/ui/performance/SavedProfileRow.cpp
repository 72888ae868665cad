#include "ui/performance/SavedProfileRow.h"

#include "ui/performance/SavedProfilesModel.h"
#include "ui/symbols/Symbols.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kButton = 28;
constexpr int kButtonSymbol = 15;
constexpr int kDescriptionLines = 2; // where there is little room for a line

BadgeColor tintOf(SavedProfilesModel::Kind kind) {
    switch (kind) {
    case SavedProfilesModel::Kind::Profile:
        return BadgeColor::Blue;
    case SavedProfilesModel::Kind::Unreadable:
        return BadgeColor::Orange;
    case SavedProfilesModel::Kind::Default:
        break;
    }
    return BadgeColor::Grey;
}

} // namespace

SavedProfileRow::SavedProfileRow(const SavedProfilesModel& model, QObject* parent)
    : QStyledItemDelegate(parent)
    , m_model(model) {}

RowContent SavedProfileRow::content(const QModelIndex& index) const {
    const ProfileRow row = m_model.row(index);
    return {.symbol = row.text.symbol,
            .tint = tintOf(m_model.kind(index)),
            .title = row.text.title,
            .description = row.text.subtitle,
            .end = row.isInForce ? RowEnd::CheckMark : RowEnd::Nothing,
            .mark = row.mark,
            .isOneLined = true,
            .isMatch = row.isInForce,
            .controlWidth = 2 * kButton};
}

int SavedProfileRow::height(const Theme& theme, int width) const {
    const int line = QFontMetrics(theme.font(TextStyle::Secondary)).lineSpacing();
    const int usual = QFontMetrics(theme.font(TextStyle::RowTitle)).height() + line + 2 * Theme::kGap12;
    const bool hasRoom = width > 40 * line; // of some eighty characters
    return std::max(Theme::kRow, usual) + (hasRoom ? 0 : (kDescriptionLines - 1) * line);
}

QRect SavedProfileRow::button(const QRect& row, const QModelIndex& index, int fromRight) const {
    if (m_model.kind(index) != SavedProfilesModel::Kind::Profile) {
        return {};
    }
    return {row.right() + 1 - Theme::kGap12 - (fromRight + 1) * kButton, row.center().y() - kButton / 2 + 1, kButton,
            kButton};
}

void SavedProfileRow::paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const {
    const Theme& theme = themeOf(option.widget);
    const bool isEnabled = m_model.kind(index) != SavedProfilesModel::Kind::Unreadable;
    const bool showsRing = option.state.testFlag(QStyle::State_HasFocus) &&
                           option.widget->window()->testAttribute(Qt::WA_KeyboardFocusChange);
    const bool isHovered =
        option.state.testFlag(QStyle::State_MouseOver) && option.state.testFlag(QStyle::State_Enabled);
    const RowContent row = content(index);
    paintRow(*painter, theme, option.rect, row, {true, isHovered && isEnabled, false, showsRing});
    if (const QRect button = deleteButton(option.rect, index); !button.isEmpty()) {
        paintRowTool(*painter, editButton(option.rect, index), kEditSymbol, theme.secondaryText);
        paintRowTool(*painter, button, kDeleteSymbol, theme.secondaryText);
    }
    if (index.row() + 1 < m_model.rowCount()) {
        QRect line = option.rect;
        line.setTop(line.bottom());
        painter->fillRect(line.adjusted(rowTextLeft(row), 0, 0, 0), theme.border);
    }
}

QSize SavedProfileRow::sizeHint(const QStyleOptionViewItem& option, const QModelIndex&) const {
    return {0, height(themeOf(option.widget), option.widget->width())}; // as wide as the list, whatever that becomes
}

void paintRowTool(QPainter& painter, const QRect& rect, const QString& symbol, const QColor& ink) {
    const double margin = (rect.width() - kButtonSymbol) / 2.0;
    paintSymbol(painter, symbol, QRectF(rect).adjusted(margin, margin, -margin, -margin), ink);
}

} // namespace quorvane
