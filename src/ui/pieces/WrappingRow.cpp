#include "ui/pieces/WrappingRow.h"

#include "ui/Theme.h"

#include <algorithm>

namespace quorvane {

namespace {

constexpr int kApart = Theme::kGap8;

} // namespace

WrappingRow::WrappingRow(QWidget* parent)
    : QLayout(parent) {
    setContentsMargins(0, 0, 0, 0);
}

WrappingRow::~WrappingRow() = default;

void WrappingRow::addItem(QLayoutItem* item) {
    m_items.emplace_back(item);
}

QLayoutItem* WrappingRow::itemAt(int index) const {
    return index >= 0 && index < count() ? m_items[static_cast<std::size_t>(index)].get() : nullptr;
}

QLayoutItem* WrappingRow::takeAt(int index) {
    if (index < 0 || index >= count()) {
        return nullptr;
    }
    const auto place = m_items.begin() + index;
    QLayoutItem* const item = place->release();
    m_items.erase(place);
    return item;
}

QList<WrappingRow::Line> WrappingRow::linesIn(int width) const {
    QList<Line> lines;
    int left = 0;
    for (const std::unique_ptr<QLayoutItem>& item : m_items) {
        if (item->isEmpty()) {
            continue;
        }
        const int wanted = item->sizeHint().width();
        if (lines.isEmpty() || wanted + kApart > left) {
            lines.append(Line());
            left = width + kApart;
        }
        lines.last().append(item.get());
        left -= wanted + kApart;
    }
    return lines;
}

int WrappingRow::heightOf(const Line& line) {
    int height = 0;
    for (const QLayoutItem* const item : line) {
        height = std::max(height, item->sizeHint().height());
    }
    return height;
}

int WrappingRow::heightForWidth(int width) const {
    int height = 0;
    for (const Line& line : linesIn(width)) {
        height += heightOf(line) + (height > 0 ? kApart : 0);
    }
    return height;
}

QSize WrappingRow::sizeHint() const {
    int width = -kApart;
    for (const std::unique_ptr<QLayoutItem>& item : m_items) {
        width += item->isEmpty() ? 0 : item->sizeHint().width() + kApart;
    }
    return {std::max(0, width), heightForWidth(width)};
}

QSize WrappingRow::minimumSize() const {
    QSize size;
    for (const std::unique_ptr<QLayoutItem>& item : m_items) {
        size = item->isEmpty() ? size : size.expandedTo(item->sizeHint());
    }
    return size;
}

void WrappingRow::setGeometry(const QRect& rect) {
    QLayout::setGeometry(rect);
    QRect room = rect;
    for (const Line& line : linesIn(rect.width())) {
        room.setHeight(heightOf(line));
        place(line, room);
        room.moveTop(room.bottom() + 1 + kApart);
    }
}

void WrappingRow::place(const Line& line, const QRect& room) const {
    int spare = room.width() + kApart;
    for (const QLayoutItem* const item : line) {
        spare -= item->sizeHint().width() + kApart;
    }
    int left = room.left();
    for (QLayoutItem* const item : line) {
        QSize size = item->sizeHint();
        if (spare > 0 && item->expandingDirections().testFlag(Qt::Horizontal)) {
            size.rwidth() += spare;
            spare = 0;
        }
        item->setGeometry(QRect(QPoint(left, room.top() + (room.height() - size.height()) / 2), size));
        left += size.width() + kApart;
    }
}

} // namespace quorvane
