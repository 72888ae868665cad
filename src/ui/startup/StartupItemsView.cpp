#include "ui/startup/StartupItemsView.h"

#include "ui/startup/StartupItemsModel.h"

#include <QKeyEvent>
#include <QMenu>
#include <QScrollBar>

namespace quorvane {

namespace {

using Part = StartupItemRow::Part;

} // namespace

StartupItemsView::StartupItemsView(StartupItemsModel& model, QWidget* parent)
    : QListView(parent)
    , m_model(model)
    , m_row(model) {
    setModel(&model);
    setItemDelegate(&m_row);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
    // Nothing of one is seen where there is nothing to scroll, and nothing moves when there is.
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    setTabKeyNavigation(false);
    setResizeMode(QListView::Adjust);
    viewport()->setAutoFillBackground(false);
    verticalScrollBar()->setSingleStep(Theme::kRow / 2);
    setAccessibleName(kStartupItemsTitle);
    connect(&model, &StartupItemsModel::rowsAboutToChange, this, &StartupItemsView::rememberPlace);
    connect(&model, &StartupItemsModel::rowsHaveChanged, this, &StartupItemsView::keepPlace);
    setCurrentIndex(firstUsable(0, 1));
}

// ---- What stays where it is

/// The current row where it is seen, else the uppermost one.
void StartupItemsView::rememberPlace() {
    const bool isSeen = currentIndex().isValid() && visualRect(currentIndex()).intersects(viewport()->rect());
    m_anchor = isSeen ? currentIndex() : indexAt(QPoint(width() / 2, 0));
    m_anchorTop = m_anchor.isValid() ? visualRect(m_anchor).top() : 0;
}

void StartupItemsView::keepPlace() {
    if (!currentIndex().isValid()) {
        setCurrentIndex(firstUsable(0, 1));
    }
    executeDelayedItemsLayout();
    if (m_anchor.isValid() && verticalScrollBar()->value() > 0) {
        QScrollBar* const bar = verticalScrollBar();
        bar->setValue(bar->value() + visualRect(m_anchor).top() - m_anchorTop);
    }
    m_anchor = QPersistentModelIndex();
}

QModelIndex StartupItemsView::firstUsable(int row, int step) const {
    for (; row >= 0 && row < m_model.rowCount(); row += step) {
        if (m_model.flags(m_model.index(row)).testFlag(Qt::ItemIsEnabled)) {
            return m_model.index(row);
        }
    }
    return {};
}

/// The next row is the current one after a removal; Qt would take the one before it.
void StartupItemsView::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
    const int current = currentIndex().row();
    if (current >= start && current <= end) {
        const QModelIndex next = firstUsable(end + 1, 1);
        setCurrentIndex(next.isValid() ? next : firstUsable(start - 1, -1));
    }
    QListView::rowsAboutToBeRemoved(parent, start, end);
}

// ---- Keys and clicks

/// The row may have gone beneath a menu.
void StartupItemsView::actOn(const QModelIndex& index, Part part) {
    if (!index.isValid()) {
        return;
    }
    switch (part) {
    case Part::Row:
    case Part::Lock:
        Q_EMIT pressed(index);
        break;
    case Part::Hide:
        Q_EMIT hidingAsked(index);
        break;
    case Part::Remove:
        askForRemoval(index);
        break;
    case Part::Nothing:
        break;
    }
}

void StartupItemsView::askForRemoval(const QModelIndex& index) {
    if (index.isValid() && index.data(StartupItemsModel::RemovableRole).toBool()) {
        Q_EMIT removalAsked(index);
    }
}

void StartupItemsView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Space:
        if (currentIndex().isValid()) {
            Q_EMIT pressed(currentIndex());
        }
        return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        askForRemoval(currentIndex());
        return;
    case Qt::Key_Menu:
        popUpMenu(currentIndex(), viewport()->mapToGlobal(visualRect(currentIndex()).center()));
        return;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Escape:
        event->ignore(); // they are the editor's
        return;
    default:
        QListView::keyPressEvent(event);
    }
}

/// Only to rows that can be used: Qt would stay where a heading lies a page away.
QModelIndex StartupItemsView::moveCursor(CursorAction action, Qt::KeyboardModifiers modifiers) {
    switch (action) {
    case MoveHome:
        return firstUsable(0, 1);
    case MoveEnd:
        return firstUsable(m_model.rowCount() - 1, -1);
    case MovePageUp:
        return pageAway(-viewport()->height());
    case MovePageDown:
        return pageAway(viewport()->height());
    default:
        return QListView::moveCursor(action, modifiers);
    }
}

QModelIndex StartupItemsView::pageAway(int distance) const {
    const int onwards = distance < 0 ? -1 : 1;
    const int end = distance < 0 ? 0 : m_model.rowCount() - 1;
    const QModelIndex there = indexAt(visualRect(currentIndex()).center() + QPoint(0, distance));
    const int row = there.isValid() ? there.row() : end;
    const QModelIndex usable = firstUsable(row, onwards);
    return usable.isValid() ? usable : firstUsable(row, -onwards);
}

void StartupItemsView::mousePressEvent(QMouseEvent* event) {
    QListView::mousePressEvent(event);
    const QPoint position = event->position().toPoint();
    m_pressedIndex = indexAt(position);
    m_pressedPart =
        m_pressedIndex.isValid() ? m_row.partAt(visualRect(m_pressedIndex), m_pressedIndex, position) : Part::Nothing;
}

void StartupItemsView::mouseReleaseEvent(QMouseEvent* event) {
    QListView::mouseReleaseEvent(event);
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    if (event->button() == Qt::LeftButton && index.isValid() && m_pressedIndex == index &&
        m_row.partAt(visualRect(index), index, position) == m_pressedPart) {
        actOn(index, m_pressedPart);
    }
}

void StartupItemsView::contextMenuEvent(QContextMenuEvent* event) {
    if (event->reason() == QContextMenuEvent::Mouse) {
        popUpMenu(indexAt(event->pos()), event->globalPos());
    }
}

/// It goes with the list: nothing can be chosen in it once the list can't be used.
void StartupItemsView::popUpMenu(const QModelIndex& index, const QPoint& place) {
    if (!index.isValid() || !index.data(StartupItemsModel::RemovableRole).toBool()) {
        return;
    }
    auto* const menu = new QMenu(this);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const QPersistentModelIndex row(index);
    if (const QVariant isHidden = index.data(StartupItemsModel::HiddenRole); isHidden.isValid()) {
        QAction* const hide = menu->addAction(hiddenHelp(true));
        hide->setCheckable(true);
        hide->setChecked(isHidden.toBool());
        connect(hide, &QAction::triggered, this, [this, row] { actOn(row, Part::Hide); });
    }
    connect(menu->addAction(kRemoveFromStartup), &QAction::triggered, this, [this, row] { actOn(row, Part::Remove); });
    menu->popup(place);
}

void StartupItemsView::resizeEvent(QResizeEvent* event) {
    m_row.measureAnew();
    QListView::resizeEvent(event);
}

void StartupItemsView::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() == QEvent::StyleChange || event->type() == QEvent::FontChange) {
        m_row.measureAnew();
        scheduleDelayedItemsLayout();
    }
    if (event->type() == QEvent::EnabledChange && !isEnabled()) {
        for (QMenu* const menu : findChildren<QMenu*>()) {
            menu->close();
        }
    }
}

void StartupItemsView::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) {
        scrollTo(currentIndex());
    }
}

} // namespace quorvane
