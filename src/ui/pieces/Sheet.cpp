#include "ui/pieces/Sheet.h"

#include "ui/pieces/TextLabel.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

namespace quorvane {

/// As high as what it shows, as long as there is room.
class Sheet::ContentsArea : public QScrollArea {
public:
    ContentsArea() {
        setFrameShape(QFrame::NoFrame);
        setWidgetResizable(true);
        setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn); // it shows nothing where there is nothing to scroll
        setFocusPolicy(Qt::NoFocus);
    }
    int scrollBarWidth() const { return verticalScrollBar()->sizeHint().width(); }
    int wholeHeight(int width) const {
        if (widget() == nullptr) {
            return 0;
        }
        const int inside = width - scrollBarWidth();
        return widget()->hasHeightForWidth() ? widget()->heightForWidth(inside) : widget()->sizeHint().height();
    }
    QSize sizeHint() const override { return {Theme::kSheet, wholeHeight(width())}; }
    QSize minimumSizeHint() const override { return {0, 0}; }

protected:
    /// A row that comes later is shown in a later turn: the sheet grows by it only then.
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == widget() && event->type() == QEvent::LayoutRequest) {
            updateGeometry();
        }
        return QScrollArea::eventFilter(watched, event);
    }
};

Sheet::Sheet(QWidget* parent)
    : QDialog(parent, Qt::Widget)
    , m_title(new TextLabel(TextStyle::SectionTitle))
    , m_subtitle(new TextLabel(TextStyle::Secondary, TextTone::Secondary))
    , m_contents(new ContentsArea)
    , m_buttons(new QHBoxLayout) {
    setAttribute(Qt::WA_NoMousePropagation);
    // The scroll bar stands in the margin, so that all right edges are in one line.
    const int ofScrollBar = m_contents->scrollBarWidth();
    auto* const layout = new QVBoxLayout(this);
    layout->setContentsMargins(Theme::kGap24, Theme::kGap24, Theme::kGap24 - ofScrollBar, Theme::kGap16);
    layout->setSpacing(Theme::kGap8);
    auto* const heading = new QVBoxLayout;
    heading->setSpacing(Theme::kGap8);
    heading->setContentsMargins(0, 0, ofScrollBar, 0);
    heading->addWidget(m_title);
    heading->addWidget(m_subtitle);
    layout->addLayout(heading);
    layout->addSpacing(Theme::kGap4);
    layout->addWidget(m_contents, 1);
    layout->addSpacing(Theme::kGap8);
    layout->addLayout(m_buttons);
    m_buttons->setContentsMargins(0, 0, ofScrollBar, 0);
    m_buttons->setSpacing(Theme::kGap8);
    m_buttons->addStretch(1);
}

int Sheet::wholeHeight(int width) const {
    const QMargins margins = layout()->contentsMargins();
    const int inside = width - margins.left() - margins.right();
    const int ofHeading = inside - m_contents->scrollBarWidth();
    const auto heightOf = [ofHeading](const QWidget& widget) {
        return widget.isHidden() ? 0 : widget.heightForWidth(ofHeading);
    };
    return margins.top() + margins.bottom() + heightOf(*m_title) + heightOf(*m_subtitle) +
           m_contents->wholeHeight(inside) + m_buttons->sizeHint().height() + 5 * Theme::kGap8 + Theme::kGap12;
}

void Sheet::setTitle(const QString& title, const QString& subtitle) {
    m_title->setText(title);
    m_subtitle->setText(subtitle);
    m_subtitle->setVisible(!subtitle.isEmpty());
    setAccessibleName(title);
    setAccessibleDescription(subtitle);
}

void Sheet::setContents(QWidget* contents) {
    m_contents->setWidget(contents);
    contents->show();
    Q_EMIT contentsChanged();
}

void Sheet::addButton(QWidget* button) {
    m_buttons->addWidget(button);
}

void Sheet::addButtonAside(QWidget* button) {
    m_buttons->insertWidget(0, button);
}

/// The buttons have the focus; what they stand under can be read to its end all the same.
void Sheet::keyPressEvent(QKeyEvent* event) {
    QScrollBar& bar = *m_contents->verticalScrollBar();
    switch (event->key()) {
    case Qt::Key_PageUp:
        bar.triggerAction(QScrollBar::SliderPageStepSub);
        return;
    case Qt::Key_PageDown:
        bar.triggerAction(QScrollBar::SliderPageStepAdd);
        return;
    case Qt::Key_Home:
        bar.triggerAction(QScrollBar::SliderToMinimum);
        return;
    case Qt::Key_End:
        bar.triggerAction(QScrollBar::SliderToMaximum);
        return;
    default:
        QDialog::keyPressEvent(event);
    }
}

void Sheet::paintEvent(QPaintEvent*) {
    const Theme& theme = themeOf(this);
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(theme.border);
    painter.setBrush(theme.window);
    painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), Theme::kCardRadius, Theme::kCardRadius);
}

void Sheet::changeEvent(QEvent* event) {
    QDialog::changeEvent(event);
    if (event->type() == QEvent::StyleChange) {
        Q_EMIT contentsChanged();
    }
}

} // namespace quorvane
