#include "ui/window/SidebarView.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/TextLabel.h"
#include "ui/symbols/Logo.h"
#include "ui/symbols/Symbols.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kRowHeight = 32;
constexpr int kHeaderHeight = 26;
constexpr int kSymbol = 16;
constexpr int kFootLogo = 24;
constexpr int kTabRole = Qt::UserRole;
constexpr int kSymbolRole = Qt::UserRole + 1;

bool isTabRow(const QModelIndex& index) {
    return index.data(kTabRole).isValid();
}

/// Group titles in small letters, tabs with their symbol, the selected one on the accent.
class SidebarDelegate : public QStyledItemDelegate {
public:
    using QStyledItemDelegate::QStyledItemDelegate;

    QSize sizeHint(const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        const Theme& theme = themeOf(option.widget);
        const TextStyle style = isTabRow(index) ? TextStyle::RowTitle : TextStyle::Secondary;
        const int text = QFontMetrics(theme.font(style)).height() + Theme::kGap12;
        return {0, std::max(isTabRow(index) ? kRowHeight : kHeaderHeight, text)};
    }

    void paint(QPainter* painter, const QStyleOptionViewItem& option, const QModelIndex& index) const override {
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        if (isTabRow(index)) {
            paintTab(*painter, option, index);
        } else {
            paintHeader(*painter, option, index);
        }
        painter->restore();
    }

private:
    static void paintHeader(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
        const Theme& theme = themeOf(option.widget);
        painter.setFont(theme.font(TextStyle::Secondary));
        painter.setPen(theme.secondaryText);
        painter.drawText(option.rect.adjusted(Theme::kGap8, Theme::kGap4, 0, 0), Qt::AlignLeft | Qt::AlignVCenter,
                         index.data().toString());
    }

    static void paintTab(QPainter& painter, const QStyleOptionViewItem& option, const QModelIndex& index) {
        const Theme& theme = themeOf(option.widget);
        const bool isSelected = option.state.testFlag(QStyle::State_Selected);
        const QRectF ground =
            QRectF(option.rect).adjusted(Theme::kRingRoom, Theme::kRingRoom, -Theme::kRingRoom, -Theme::kRingRoom);
        painter.setPen(Qt::NoPen);
        if (isSelected) {
            painter.setBrush(theme.selection);
            painter.drawRoundedRect(ground, Theme::kFieldRadius, Theme::kFieldRadius);
        }
        const QRectF symbol(option.rect.left() + Theme::kGap8, option.rect.center().y() - kSymbol / 2.0 + 0.5, kSymbol,
                            kSymbol);
        paintSymbol(painter, index.data(kSymbolRole).toString(), symbol,
                    isSelected ? theme.onAccent : theme.accentText);
        painter.setFont(theme.font(TextStyle::RowTitle));
        painter.setPen(isSelected ? theme.onAccent : theme.text);
        painter.drawText(option.rect.adjusted(2 * Theme::kGap8 + kSymbol, 0, -Theme::kGap4, 0),
                         Qt::AlignLeft | Qt::AlignVCenter, index.data().toString());
        const bool showsFocus = option.state.testFlag(QStyle::State_HasFocus) &&
                                option.widget->window()->testAttribute(Qt::WA_KeyboardFocusChange);
        if (showsFocus) {
            drawFocusRing(painter, theme, ground, Theme::kFieldRadius);
        }
    }
};

class FootLogo : public QWidget {
public:
    FootLogo() { setFixedSize(kFootLogo, kFootLogo); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintLogo(painter, rect());
    }
};

} // namespace

SidebarView::SidebarView(QWidget* parent)
    : QWidget(parent)
    , m_list(new QListWidget) {
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(Theme::kGap8, Theme::kGap12, Theme::kGap8, Theme::kGap12);
    layout->addWidget(m_list, 1);
    layout->addWidget(makeFoot());
    m_list->setFrameShape(QFrame::NoFrame);
    m_list->setItemDelegate(new SidebarDelegate(m_list));
    m_list->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    m_list->setAccessibleName(u"Sidebar"_s);
    addGroups();
    takeTheme();
    connect(m_list, &QListWidget::currentItemChanged, this, [this](const QListWidgetItem* item) {
        if (item != nullptr) {
            Q_EMIT tabSelected(item->data(kTabRole).value<Tab>());
        }
    });
}

void SidebarView::addGroups() {
    QString group;
    for (const TabText& tab : tabTexts()) {
        if (tab.group != group) {
            group = tab.group;
            auto* const header = new QListWidgetItem(group, m_list);
            header->setFlags(Qt::NoItemFlags);
        }
        auto* const item = new QListWidgetItem(tab.text, m_list);
        item->setData(kTabRole, QVariant::fromValue(tab.tab));
        item->setData(kSymbolRole, tab.symbol);
    }
}

int SidebarView::widthOfTexts() const {
    const QFontMetrics metrics(themeOf(this).font(TextStyle::RowTitle));
    int widest = 0;
    for (const TabText& tab : tabTexts()) {
        widest = std::max(widest, metrics.horizontalAdvance(tab.text));
    }
    const QMargins outside = layout()->contentsMargins();
    return outside.left() + 2 * Theme::kGap8 + kSymbol + widest + Theme::kGap12 + outside.right();
}

void SidebarView::setSelectedTab(Tab tab) {
    for (int row = 0; row < m_list->count(); ++row) {
        const QVariant of = m_list->item(row)->data(kTabRole);
        if (of.isValid() && of.value<Tab>() == tab) {
            m_list->setCurrentRow(row);
        }
    }
}

QWidget* SidebarView::makeFoot() {
    auto* const foot = new QWidget;
    auto* const layout = new QHBoxLayout(foot);
    layout->setContentsMargins(Theme::kGap8, 0, 0, 0);
    layout->setSpacing(Theme::kGap8);
    layout->addWidget(new FootLogo);
    layout->addWidget(new TextLabel(TextStyle::RowTitle, TextTone::Normal, u"Quorvane"_s), 1);
    return foot;
}

void SidebarView::takeTheme() {
    QPalette ground = m_list->palette();
    ground.setColor(QPalette::Base, themeOf(this).sidebar);
    m_list->setPalette(ground);
}

void SidebarView::changeEvent(QEvent* event) {
    QWidget::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        takeTheme();
    }
}

void SidebarView::paintEvent(QPaintEvent*) {
    QPainter(this).fillRect(rect(), themeOf(this).sidebar);
}

} // namespace quorvane
