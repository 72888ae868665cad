#include "ui/logs/LogLinesView.h"

#include "ui/QuorvaneStyle.h"
#include "ui/logs/LogModel.h"

#include <QClipboard>
#include <QContextMenuEvent>
#include <QGuiApplication>
#include <QItemSelection>
#include <QKeyEvent>
#include <QMenu>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <array>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kLineGap = 4;

struct TagInk {
    QStringView tag;
    QColor Theme::*ink;
};

const std::array kTagInks{TagInk{u"ERROR", &Theme::danger},        TagInk{u"EXC", &Theme::danger},
                          TagInk{u"STDERR", &Theme::danger},       TagInk{u"MISSING", &Theme::warning},
                          TagInk{u"OK", &Theme::success},          TagInk{u"APPLIED", &Theme::success},
                          TagInk{u"RESTORED", &Theme::success},    TagInk{u"REVERTED", &Theme::success},
                          TagInk{u"DELETED", &Theme::success},     TagInk{u"SKIPPED", &Theme::secondaryText},
                          TagInk{u"INFO", &Theme::secondaryText},  TagInk{u"DEBUG", &Theme::secondaryText},
                          TagInk{u"STDOUT", &Theme::secondaryText}};

QColor inkOfTag(const Theme& theme, QStringView tag) {
    const auto* const known =
        std::find_if(kTagInks.begin(), kTagInks.end(), [tag](const TagInk& each) { return each.tag == tag; });
    return known != kTagInks.end() ? theme.*known->ink : theme.accentText;
}

/// Of a line that begins with a tag, how much of it that is.
qsizetype lengthOfTag(const QString& line) {
    const QStringView tag = logTag(line);
    return tag.isEmpty() ? 0 : tag.data() + tag.size() + 1 - line.constData();
}

} // namespace

LogLinesView::LogLinesView(LogModel& model, QWidget* parent)
    : QListView(parent)
    , m_model(model) {
    setModel(&model);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(ExtendedSelection);
    setEditTriggers(NoEditTriggers);
    setVerticalScrollMode(ScrollPerPixel);
    setHorizontalScrollMode(ScrollPerPixel);
    setTabKeyNavigation(false);
    viewport()->setAutoFillBackground(false); // the card shows through, with its round corners
    takeTheme();
}

void LogLinesView::takeTheme() {
    setFont(themeOf(this).font(TextStyle::Fixed));
    m_rowHeight = fontMetrics().height() + kLineGap;
    m_widestLine = 0;
    updateGeometries();
    viewport()->update();
}

void LogLinesView::setMarkedText(const QString& text) {
    m_markedText = text;
    viewport()->update();
}

void LogLinesView::setEmptyText(const QString& text) {
    m_emptyText = text;
    setAccessibleDescription(m_model.rowCount() == 0 ? text : QString());
    viewport()->update();
}

// ---- Where lines are

QRect LogLinesView::visualRect(const QModelIndex& index) const {
    if (!index.isValid()) {
        return {};
    }
    const int width = std::max(m_widestLine + 2 * Theme::kGap12, viewport()->width());
    return {-horizontalOffset(), index.row() * m_rowHeight - verticalOffset(), width, m_rowHeight};
}

QModelIndex LogLinesView::indexAt(const QPoint& point) const {
    const int from = point.y() + verticalOffset();
    return from >= 0 ? m_model.index(from / m_rowHeight) : QModelIndex();
}

int LogLinesView::horizontalOffset() const {
    return horizontalScrollBar()->value();
}

int LogLinesView::verticalOffset() const {
    return verticalScrollBar()->value();
}

int LogLinesView::firstRowInView() const {
    return verticalOffset() / m_rowHeight;
}

int LogLinesView::lastRowInView() const {
    return std::min((verticalOffset() + viewport()->height()) / m_rowHeight, m_model.rowCount() - 1);
}

void LogLinesView::doItemsLayout() {
    QAbstractItemView::doItemsLayout(); // NOLINT(bugprone-parent-virtual-call): a list would measure every line
}

void LogLinesView::reset() {
    m_follows = true;
    m_widestLine = 0;
    QListView::reset();
    updateGeometries();
}

void LogLinesView::updateGeometries() {
    QAbstractItemView::updateGeometries(); // NOLINT(bugprone-parent-virtual-call): the same
    setAccessibleDescription(m_model.rowCount() == 0 ? m_emptyText : QString());
    m_isPlacing = true;
    const int height = viewport()->height();
    verticalScrollBar()->setRange(0, std::max(0, m_model.rowCount() * m_rowHeight - height));
    verticalScrollBar()->setPageStep(height);
    verticalScrollBar()->setSingleStep(m_rowHeight);
    if (m_follows) {
        verticalScrollBar()->setValue(verticalScrollBar()->maximum());
    }
    measureLinesInView();
    m_isPlacing = false;
    countLinesBelow();
}

/// How wide all lines are nobody knows without measuring each. So there is as much to scroll to as was ever in view.
void LogLinesView::measureLinesInView() {
    const QFontMetrics metrics = fontMetrics();
    const int last = isVisible() ? lastRowInView() : -1; // before it is laid out far more lines seem to be in view
    for (int row = firstRowInView(); row <= last; ++row) {
        m_widestLine = std::max(m_widestLine, metrics.horizontalAdvance(m_model.index(row).data().toString()));
    }
    const int width = viewport()->width();
    horizontalScrollBar()->setRange(0, std::max(0, m_widestLine + 2 * Theme::kGap12 - width));
    horizontalScrollBar()->setPageStep(width);
    horizontalScrollBar()->setSingleStep(m_rowHeight);
}

void LogLinesView::resizeEvent(QResizeEvent*) {
    updateGeometries();
}

void LogLinesView::showEvent(QShowEvent* event) {
    QListView::showEvent(event);
    updateGeometries();
}

// ---- Following

bool LogLinesView::isLatestInView() const {
    return verticalOffset() + viewport()->height() >= m_model.rowCount() * m_rowHeight - m_rowHeight / 2;
}

void LogLinesView::scrollContentsBy(int, int) {
    if (!std::exchange(m_isPlacing, true)) {
        m_follows = isLatestInView();
        measureLinesInView();
        m_isPlacing = false;
        countLinesBelow();
    }
    viewport()->update();
}

void LogLinesView::countLinesBelow() {
    const int below = m_follows ? 0 : m_model.rowCount() - 1 - lastRowInView();
    if (std::exchange(m_linesBelow, below) != below) {
        Q_EMIT linesBelowChanged();
    }
}

void LogLinesView::scrollToLatest() {
    m_follows = true;
    updateGeometries();
    viewport()->update();
}

void LogLinesView::scrollTo(const QModelIndex& index, ScrollHint hint) {
    if (!index.isValid()) {
        return;
    }
    const int top = index.row() * m_rowHeight;
    const int height = viewport()->height();
    const bool isInView = top >= verticalOffset() && top + m_rowHeight <= verticalOffset() + height;
    if (hint == PositionAtCenter || !isInView) {
        const bool isAbove = top < verticalOffset();
        const int place = hint == PositionAtCenter ? top - height / 2 : isAbove ? top : top + m_rowHeight - height;
        verticalScrollBar()->setValue(place);
    }
}

void LogLinesView::showRow(int row) {
    const QModelIndex index = m_model.index(row);
    selectionModel()->setCurrentIndex(index, QItemSelectionModel::ClearAndSelect);
    if (!viewport()->rect().contains(visualRect(index).center())) {
        scrollTo(index, PositionAtCenter);
    }
}

// ---- Keys, selection, copying

QModelIndex LogLinesView::moveCursor(CursorAction action, Qt::KeyboardModifiers) {
    const int rows = m_model.rowCount();
    const int page = std::max(1, viewport()->height() / m_rowHeight - 1);
    const int current = currentIndex().isValid() ? currentIndex().row() : lastRowInView();
    int row = current;
    switch (action) {
    case MoveUp:
    case MovePrevious:
        row = current - 1;
        break;
    case MoveDown:
    case MoveNext:
        row = current + 1;
        break;
    case MovePageUp:
        row = current - page;
        break;
    case MovePageDown:
        row = current + page;
        break;
    case MoveHome:
        row = 0;
        break;
    case MoveEnd:
        row = rows - 1;
        break;
    case MoveLeft:
        horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepSub);
        break;
    case MoveRight:
        horizontalScrollBar()->triggerAction(QAbstractSlider::SliderSingleStepAdd);
        break;
    }
    return m_model.index(std::clamp(row, 0, std::max(0, rows - 1)));
}

void LogLinesView::setSelection(const QRect& rect, QItemSelectionModel::SelectionFlags command) {
    const int last = m_model.rowCount() - 1;
    const int top = std::clamp((rect.top() + verticalOffset()) / m_rowHeight, 0, std::max(0, last));
    const int bottom = std::clamp((rect.bottom() + verticalOffset()) / m_rowHeight, 0, std::max(0, last));
    selectionModel()->select(QItemSelection(m_model.index(top), m_model.index(bottom)), command);
}

QRegion LogLinesView::visualRegionForSelection(const QItemSelection& selection) const {
    QRegion region;
    for (const QItemSelectionRange& range : selection) {
        region += visualRect(range.topLeft()) | visualRect(range.bottomRight());
    }
    return region & viewport()->rect();
}

QString LogLinesView::copiedText() const {
    QItemSelection ranges = selectionModel()->selection();
    if (ranges.isEmpty()) {
        return m_model.text(0, m_model.rowCount() - 1);
    }
    std::sort(ranges.begin(), ranges.end(),
              [](const QItemSelectionRange& one, const QItemSelectionRange& other) { return one.top() < other.top(); });
    QStringList texts;
    for (const QItemSelectionRange& range : std::as_const(ranges)) {
        texts.append(m_model.text(range.top(), range.bottom()));
    }
    return texts.join(u'\n');
}

void LogLinesView::keyPressEvent(QKeyEvent* event) {
    if (event->matches(QKeySequence::Copy)) {
        QGuiApplication::clipboard()->setText(copiedText());
    } else {
        QListView::keyPressEvent(event);
    }
}

void LogLinesView::contextMenuEvent(QContextMenuEvent* event) {
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    menu->addAction(u"Copy"_s, this, [this] { QGuiApplication::clipboard()->setText(copiedText()); });
    menu->addAction(u"Select All"_s, this, &LogLinesView::selectAll);
    menu->popup(event->globalPos());
}

// ---- Painting

void LogLinesView::paintEvent(QPaintEvent*) {
    QPainter painter(viewport());
    const Theme& theme = themeOf(this);
    if (m_model.rowCount() == 0) {
        painter.setFont(theme.font(TextStyle::Body));
        painter.setPen(theme.secondaryText);
        const int margin = Theme::kGap24;
        painter.drawText(viewport()->rect().adjusted(margin, margin, -margin, -margin),
                         Qt::AlignCenter | Qt::TextWordWrap, m_emptyText);
        return;
    }
    painter.setFont(font());
    for (int row = firstRowInView(); row <= lastRowInView(); ++row) {
        paintLine(painter, m_model.index(row));
    }
}

void LogLinesView::paintLine(QPainter& painter, const QModelIndex& index) const {
    const Theme& theme = themeOf(this);
    const QRect line = visualRect(index);
    const QString text = index.data().toString();
    const bool isSelected = selectionModel()->isSelected(index);
    if (isSelected) {
        painter.fillRect(line, theme.selection);
    } else if (!m_markedText.isEmpty()) {
        paintMarks(painter, text, line);
    }
    const QString tag = text.left(lengthOfTag(text));
    QRect place = line.adjusted(Theme::kGap12, 0, 0, 0);
    painter.setPen(isSelected ? theme.onAccent : inkOfTag(theme, logTag(text)));
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, tag);
    place.setLeft(place.left() + fontMetrics().horizontalAdvance(tag));
    painter.setPen(isSelected ? theme.onAccent : theme.text);
    painter.drawText(place, Qt::AlignLeft | Qt::AlignVCenter | Qt::TextSingleLine, text.mid(tag.size()));
}

void LogLinesView::paintMarks(QPainter& painter, const QString& text, const QRect& line) const {
    const QFontMetrics metrics = fontMetrics();
    for (qsizetype at = text.indexOf(m_markedText, 0, Qt::CaseInsensitive); at >= 0;
         at = text.indexOf(m_markedText, at + m_markedText.size(), Qt::CaseInsensitive)) {
        const int left = line.left() + Theme::kGap12 + metrics.horizontalAdvance(text.left(at));
        const int width = metrics.horizontalAdvance(text.mid(at, m_markedText.size()));
        painter.fillRect(QRect(left, line.top(), width, line.height()), themeOf(this).pressed);
    }
}

void LogLinesView::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        takeTheme();
    }
}

} // namespace quorvane
