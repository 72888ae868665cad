#include "ui/performance/SavedProfilesView.h"

#include "actions/PageTexts.h"
#include "ui/QuorvaneStyle.h"
#include "ui/performance/SavedProfilesModel.h"
#include "ui/pieces/ReturnKey.h"

#include <QKeyEvent>
#include <QPainter>
#include <QToolButton>
#include <QWheelEvent>

#include <utility>

namespace quorvane {

namespace {

/// The delete button of the row that is current. The row has painted it; this adds what only a button has.
class DeleteButton : public QToolButton {
public:
    using QToolButton::QToolButton;

protected:
    void keyPressEvent(QKeyEvent* event) override {
        if (!isPressedByReturn(*this, *event)) {
            QToolButton::keyPressEvent(event);
        }
    }
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        const Theme& theme = themeOf(this);
        if (underMouse()) {
            paintDeleteButton(painter, theme, rect(), true);
        }
        if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
            drawFocusRing(painter, theme, QRectF(rect()).adjusted(3, 3, -3, -3), Theme::kFieldRadius);
        }
    }
};

} // namespace

SavedProfilesView::SavedProfilesView(SavedProfilesModel& model, QWidget* parent)
    : QListView(parent)
    , m_model(model)
    , m_row(model)
    , m_delete(new DeleteButton(this)) {
    setModel(&model);
    setItemDelegate(&m_row);
    setUniformItemSizes(true);
    setFrameShape(QFrame::NoFrame);
    setSelectionMode(QAbstractItemView::NoSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setMouseTracking(true);
    setTabKeyNavigation(false);
    viewport()->setAutoFillBackground(false);
    setAccessibleName(kSavedProfilesTitle);
    m_delete->setAccessibleName(kDeleteProfile);
    m_delete->setToolTip(kDeleteProfile);
    m_delete->setFocusPolicy(Qt::StrongFocus);
    connect(m_delete, &QAbstractButton::clicked, this, [this] { askForDeletion(currentIndex()); });
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(&model, signal, this, &SavedProfilesView::takeHeight);
    }
    // Who comes by the keys begins at the top, whatever was there before the profiles were read.
    connect(&model, &QAbstractItemModel::rowsInserted, this, [this] {
        if (!hasFocus()) {
            setCurrentIndex(m_model.index(0));
        }
    });
    connect(&model, &QAbstractItemModel::rowsMoved, this, &SavedProfilesView::placeDeleteButton);
    setCurrentIndex(model.index(0));
    takeHeight();
}

QSize SavedProfilesView::sizeHint() const {
    return {Theme::kColumn, m_model.rowCount() * m_row.height(themeOf(this), width())};
}

QSize SavedProfilesView::minimumSizeHint() const {
    return {Theme::kSheet / 2, sizeHint().height()};
}

void SavedProfilesView::takeHeight() {
    const int rowHeight = m_row.height(themeOf(this), width());
    if (std::exchange(m_rowHeight, rowHeight) != rowHeight) {
        doItemsLayout();
    }
    setFixedHeight(sizeHint().height());
    placeDeleteButton();
}

void SavedProfilesView::placeDeleteButton() {
    const QRect button =
        currentIndex().isValid() ? m_row.deleteButton(visualRect(currentIndex()), currentIndex()) : QRect();
    m_delete->setFocusProxy(button.isEmpty() ? this : nullptr);
    m_delete->setVisible(!button.isEmpty());
    if (!button.isEmpty()) {
        m_delete->setGeometry(button.translated(pos()));
        m_delete->raise();
        m_delete->setAccessibleDescription(m_model.row(currentIndex()).text.title);
    }
}

bool SavedProfilesView::isPickable(const QModelIndex& index) const {
    return index.isValid() && m_model.kind(index) != SavedProfilesModel::Kind::Unreadable;
}

void SavedProfilesView::askForDeletion(const QModelIndex& index) {
    if (index.isValid() && m_model.kind(index) == SavedProfilesModel::Kind::Profile) {
        setFocus(Qt::OtherFocusReason); // the button goes with its row
        Q_EMIT deletionAsked(index);
    }
}

void SavedProfilesView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        if (isPickable(currentIndex())) {
            Q_EMIT picked(currentIndex());
        }
        return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        askForDeletion(currentIndex());
        return;
    default:
        QListView::keyPressEvent(event);
    }
}

void SavedProfilesView::mousePressEvent(QMouseEvent* event) {
    QListView::mousePressEvent(event);
    const QModelIndex index = indexAt(event->position().toPoint());
    m_pressed = index;
    m_pressedDelete =
        index.isValid() && m_row.deleteButton(visualRect(index), index).contains(event->position().toPoint());
}

void SavedProfilesView::mouseReleaseEvent(QMouseEvent* event) {
    QListView::mouseReleaseEvent(event);
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    if (event->button() != Qt::LeftButton || !index.isValid() || m_pressed != index) {
        return;
    }
    const bool isOnDelete = m_row.deleteButton(visualRect(index), index).contains(position);
    if (m_pressedDelete && isOnDelete) {
        askForDeletion(index);
    } else if (!m_pressedDelete && !isOnDelete && isPickable(index)) {
        Q_EMIT picked(index);
    }
}

void SavedProfilesView::wheelEvent(QWheelEvent* event) {
    event->ignore();
}

void SavedProfilesView::resizeEvent(QResizeEvent* event) {
    QListView::resizeEvent(event);
    takeHeight();
}

void SavedProfilesView::moveEvent(QMoveEvent* event) {
    QListView::moveEvent(event);
    placeDeleteButton();
}

/// The delete button stands beside the list in what both are in: a list's own accessible children are its rows alone.
bool SavedProfilesView::event(QEvent* event) {
    if (event->type() == QEvent::ParentChange && parentWidget() != nullptr) {
        m_delete->setParent(parentWidget());
        setTabOrder(this, m_delete);
        placeDeleteButton();
    }
    return QListView::event(event);
}

/// The next row is the current one after a deletion; Qt would take the one before it.
void SavedProfilesView::rowsAboutToBeRemoved(const QModelIndex& parent, int start, int end) {
    const int current = currentIndex().row();
    if (current >= start && current <= end) {
        setCurrentIndex(m_model.index(end + 1));
    }
    QListView::rowsAboutToBeRemoved(parent, start, end);
}

void SavedProfilesView::focusInEvent(QFocusEvent* event) {
    QListView::focusInEvent(event);
    if (event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason) {
        Q_EMIT currentMoved(visualRect(currentIndex()));
    }
}

void SavedProfilesView::changeEvent(QEvent* event) {
    QListView::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        takeHeight();
    }
}

void SavedProfilesView::currentChanged(const QModelIndex& current, const QModelIndex& previous) {
    QListView::currentChanged(current, previous);
    placeDeleteButton();
    if (hasFocus()) {
        Q_EMIT currentMoved(visualRect(current));
    }
}

} // namespace quorvane
