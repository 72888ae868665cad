#include "ui/tweaks/IconPicker.h"

#include "actions/PageTexts.h"
#include "tweaks/PopularIcons.h"
#include "ui/QuorvaneStyle.h"
#include "ui/pieces/TextLabel.h"
#include "ui/symbols/Symbols.h"

#include <QKeyEvent>
#include <QLineEdit>
#include <QListView>
#include <QPainter>
#include <QStringListModel>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kCell = 40;
constexpr int kColumns = 8;
constexpr int kVisibleRows = 5;
constexpr int kGridSymbol = 20;
constexpr int kMark = 12;

/// Tells a screen reader which one is marked.
class IconModel : public QStringListModel {
public:
    IconModel(const QString& currentIcon, QObject* parent)
        : QStringListModel(parent)
        , m_currentIcon(currentIcon) {}

    QVariant data(const QModelIndex& index, int role) const override {
        if (role == Qt::AccessibleDescriptionRole) {
            return index.data().toString() == m_currentIcon ? u"Selected"_s : QString();
        }
        return QStringListModel::data(index, role);
    }

private:
    QString m_currentIcon;
};

/// A symbol in its cell; the current one is marked.
class IconDelegate : public QStyledItemDelegate {
public:
    IconDelegate(const QString& currentIcon, QObject* parent)
        : QStyledItemDelegate(parent)
        , m_currentIcon(currentIcon) {}

    QSize sizeHint(const QStyleOptionViewItem&, const QModelIndex&) const override { return {kCell, kCell}; }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const Theme& theme = themeOf(option.widget);
        const QString icon = index.data().toString();
        const QRectF cell(option.rect);
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (option.state.testFlag(QStyle::State_MouseOver)) {
            painter->setPen(Qt::NoPen);
            painter->setBrush(theme.hover);
            painter->drawRoundedRect(cell.adjusted(2, 2, -2, -2), Theme::kFieldRadius, Theme::kFieldRadius);
        }
        const double margin = (kCell - kGridSymbol) / 2.0;
        paintSymbol(*painter, icon, cell.adjusted(margin, margin, -margin, -margin), theme.text);
        if (icon == m_currentIcon) {
            paintSymbol(*painter, u"checkmark.circle.fill"_s,
                        QRectF(cell.right() - kMark - 2, cell.bottom() - kMark - 2, kMark, kMark), theme.accentText);
        }
        if (option.state.testFlag(QStyle::State_HasFocus)) {
            drawFocusRing(*painter, theme, cell.adjusted(3, 3, -3, -3), Theme::kFieldRadius);
        }
        painter->restore();
    }

private:
    QString m_currentIcon;
};

} // namespace

IconPicker::IconPicker(const QString& currentIcon, QWidget* parent)
    : QWidget(parent)
    , m_currentIcon(hasSymbol(currentIcon) ? currentIcon : u"gearshape.fill"_s)
    , m_search(new QLineEdit)
    , m_grid(new QListView)
    , m_icons(new IconModel(m_currentIcon, this)) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(Theme::kGap4, Theme::kGap4, Theme::kGap4, Theme::kGap4);
    layout->setSpacing(Theme::kGap8);
    layout->addWidget(new TextLabel(TextStyle::SectionTitle, TextTone::Normal, kSelectIcon));
    layout->addWidget(m_search);
    layout->addWidget(m_grid);
    setAccessibleName(kSelectIcon);
    m_search->setPlaceholderText(kSearchIcons);
    m_search->setAccessibleName(kSearchIconLabel);
    m_search->setClearButtonEnabled(false);
    m_search->installEventFilter(this);
    m_grid->setModel(m_icons);
    m_grid->setItemDelegate(new IconDelegate(m_currentIcon, m_grid));
    m_grid->setViewMode(QListView::IconMode);
    m_grid->setMovement(QListView::Static);
    m_grid->setResizeMode(QListView::Adjust);
    m_grid->setUniformItemSizes(true);
    m_grid->setGridSize({kCell, kCell});
    m_grid->setFixedSize(kCell * kColumns + Theme::kGap16, kCell * kVisibleRows);
    m_grid->setFrameShape(QFrame::NoFrame);
    m_grid->viewport()->setAutoFillBackground(false); // the pop-over's ground is its own
    m_grid->setMouseTracking(true);
    m_grid->setEditTriggers(QAbstractItemView::NoEditTriggers);
    m_grid->setSelectionMode(QAbstractItemView::NoSelection);
    m_grid->setTabKeyNavigation(false);
    m_grid->setAccessibleName(kSelectIcon);
    m_grid->installEventFilter(this);
    setFocusProxy(m_search);
    connect(m_search, &QLineEdit::textChanged, this, &IconPicker::search);
    connect(m_grid, &QListView::clicked, this, &IconPicker::select);
    search({});
}

void IconPicker::search(const QString& text) {
    m_icons->setStringList(matchingIcons(text));
    const auto current = static_cast<int>(m_icons->stringList().indexOf(m_currentIcon));
    m_grid->setCurrentIndex(m_icons->index(std::max(0, current)));
}

void IconPicker::select(const QModelIndex& index) {
    if (index.isValid()) {
        Q_EMIT iconSelected(index.data().toString());
    }
}

/// Return takes the current icon, wherever the focus is; the down arrow leads from the field into the grid.
bool IconPicker::eventFilter(QObject* watched, QEvent* event) {
    if (event->type() != QEvent::KeyPress) {
        return QWidget::eventFilter(watched, event);
    }
    const int key = static_cast<const QKeyEvent*>(event)->key();
    if (key == Qt::Key_Return || key == Qt::Key_Enter || (key == Qt::Key_Space && watched == m_grid)) {
        select(m_grid->currentIndex());
        return true;
    }
    if (key == Qt::Key_Down && watched == m_search) {
        m_grid->setFocus(Qt::TabFocusReason);
        return true;
    }
    return QWidget::eventFilter(watched, event);
}

} // namespace quorvane
