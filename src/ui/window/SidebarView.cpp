#include "ui/window/SidebarView.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/TextLabel.h"
#include "ui/symbols/Logo.h"
#include "ui/window/SidebarButton.h"
#include "ui/window/SidebarRow.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QListWidget>
#include <QPainter>
#include <QStyledItemDelegate>
#include <QVBoxLayout>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kHeaderHeight = 26;
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
        const int text = QFontMetrics(theme.font(TextStyle::Secondary)).height() + Theme::kGap12;
        return {0, isTabRow(index) ? sidebarRowHeight(theme) : std::max(kHeaderHeight, text)};
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
        SidebarRow row{index.data().toString(), index.data(kSymbolRole).toString()};
        row.isSelected = option.state.testFlag(QStyle::State_Selected);
        row.hasRing = option.state.testFlag(QStyle::State_HasFocus) &&
                      option.widget->window()->testAttribute(Qt::WA_KeyboardFocusChange);
        paintSidebarRow(painter, themeOf(option.widget), option.rect, row);
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
    layout->addWidget(makeDocumentationButton());
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
    const Theme& theme = themeOf(this);
    int widest = sidebarRowWidth(theme, kDocumentation);
    for (const TabText& tab : tabTexts()) {
        widest = std::max(widest, sidebarRowWidth(theme, tab.text));
    }
    const QMargins outside = layout()->contentsMargins();
    return outside.left() + widest + outside.right();
}

void SidebarView::setSelectedTab(Tab tab) {
    for (int row = 0; row < m_list->count(); ++row) {
        const QVariant of = m_list->item(row)->data(kTabRole);
        if (of.isValid() && of.value<Tab>() == tab) {
            m_list->setCurrentRow(row);
        }
    }
}

QWidget* SidebarView::makeDocumentationButton() {
    auto* const button = new SidebarButton(kDocumentationSymbol, kDocumentation);
    connect(button, &QPushButton::clicked, this, &SidebarView::documentationRequested);
    return button;
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
