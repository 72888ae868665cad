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

/// A button of the row that is current. The row has painted it; this adds what only a button has.
class SavedProfilesView::Tool : public QToolButton {
public:
    Tool(const QString& name, const QString& symbol, QColor Theme::*hoveredInk, QWidget* parent)
        : QToolButton(parent)
        , m_symbol(symbol)
        , m_hoveredInk(hoveredInk) {
        setAccessibleName(name);
        setToolTip(name);
        setFocusPolicy(Qt::StrongFocus);
    }

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
            paintRowTool(painter, rect(), m_symbol, theme.*m_hoveredInk);
        }
        if (hasFocus() && window()->testAttribute(Qt::WA_KeyboardFocusChange)) {
            drawFocusRing(painter, theme, QRectF(rect()).adjusted(3, 3, -3, -3), Theme::kFieldRadius);
        }
    }

private:
    QString m_symbol;
    QColor Theme::*m_hoveredInk;
};

SavedProfilesView::SavedProfilesView(SavedProfilesModel& model, QWidget* parent)
    : QListView(parent)
    , m_model(model)
    , m_row(model)
    , m_edit(new Tool(kEditRow, kEditSymbol, &Theme::accentText, this))
    , m_delete(new Tool(kDeleteProfile, kDeleteSymbol, &Theme::danger, this)) {
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
    connect(m_edit, &QAbstractButton::clicked, this, [this] { press(Part::Edit, currentIndex()); });
    connect(m_delete, &QAbstractButton::clicked, this, [this] { press(Part::Delete, currentIndex()); });
    for (const auto signal : {&QAbstractItemModel::rowsInserted, &QAbstractItemModel::rowsRemoved}) {
        connect(&model, signal, this, &SavedProfilesView::takeHeight);
    }
    // Who comes by the keys begins at the top, whatever was there before the profiles were read.
    connect(&model, &QAbstractItemModel::rowsInserted, this, [this] {
        if (!hasFocus()) {
            setCurrentIndex(m_model.index(0));
        }
    });
    connect(&model, &QAbstractItemModel::rowsMoved, this, &SavedProfilesView::placeTools);
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
    placeTools();
}

void SavedProfilesView::placeTools() {
    const QModelIndex current = currentIndex();
    const QRect row = current.isValid() ? visualRect(current) : QRect();
    const QString title = current.isValid() ? m_model.row(current).text.title : QString();
    placeTool(*m_edit, current.isValid() ? m_row.editButton(row, current) : QRect(), title);
    placeTool(*m_delete, current.isValid() ? m_row.deleteButton(row, current) : QRect(), title);
}

/// @param place  empty for a row without one
void SavedProfilesView::placeTool(Tool& tool, const QRect& place, const QString& title) {
    tool.setFocusProxy(place.isEmpty() ? this : nullptr);
    tool.setVisible(!place.isEmpty());
    if (!place.isEmpty()) {
        tool.setGeometry(place.translated(pos()));
        tool.raise();
        tool.setAccessibleDescription(title);
    }
}

bool SavedProfilesView::isPickable(const QModelIndex& index) const {
    return index.isValid() && m_model.kind(index) != SavedProfilesModel::Kind::Unreadable;
}

SavedProfilesView::Part SavedProfilesView::partAt(const QModelIndex& index, const QPoint& position) const {
    if (index.isValid() && m_row.deleteButton(visualRect(index), index).contains(position)) {
        return Part::Delete;
    }
    return index.isValid() && m_row.editButton(visualRect(index), index).contains(position) ? Part::Edit : Part::Row;
}

void SavedProfilesView::press(Part part, const QModelIndex& index) {
    if (part == Part::Row) {
        if (isPickable(index)) {
            Q_EMIT picked(index);
        }
    } else if (index.isValid() && m_model.kind(index) == SavedProfilesModel::Kind::Profile) {
        setFocus(Qt::OtherFocusReason); // the button may go with its row
        if (part == Part::Delete) {
            Q_EMIT deletionAsked(index);
        } else {
            Q_EMIT editingAsked(index);
        }
    }
}

void SavedProfilesView::keyPressEvent(QKeyEvent* event) {
    switch (event->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        press(Part::Row, currentIndex());
        return;
    case Qt::Key_Delete:
    case Qt::Key_Backspace:
        press(Part::Delete, currentIndex());
        return;
    default:
        QListView::keyPressEvent(event);
    }
}

void SavedProfilesView::mousePressEvent(QMouseEvent* event) {
    QListView::mousePressEvent(event);
    const QPoint position = event->position().toPoint();
    m_pressed = indexAt(position);
    m_pressedPart = partAt(m_pressed, position);
}

void SavedProfilesView::mouseReleaseEvent(QMouseEvent* event) {
    QListView::mouseReleaseEvent(event);
    const QPoint position = event->position().toPoint();
    const QModelIndex index = indexAt(position);
    if (event->button() == Qt::LeftButton && index.isValid() && m_pressed == index &&
        partAt(index, position) == m_pressedPart) {
        press(m_pressedPart, index);
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
    placeTools();
}

/// The buttons stand beside the list in what all are in: a list's own accessible children are its rows alone.
bool SavedProfilesView::event(QEvent* event) {
    if (event->type() == QEvent::ParentChange && parentWidget() != nullptr) {
        m_edit->setParent(parentWidget());
        m_delete->setParent(parentWidget());
        setTabOrder(this, m_edit);
        setTabOrder(m_edit, m_delete);
        placeTools();
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
    placeTools();
    if (hasFocus()) {
        Q_EMIT currentMoved(visualRect(current));
    }
}

} // namespace quorvane
