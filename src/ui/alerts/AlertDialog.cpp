#include "ui/alerts/AlertDialog.h"

#include "ui/QuorvaneStyle.h"
#include "ui/pieces/TextLabel.h"
#include "ui/symbols/Logo.h"
#include "ui/symbols/Symbols.h"

#include <QCloseEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kIcon = 56;
constexpr int kSign = 24;
constexpr int kTextWidth = 320;

/// The program's icon, with a sign of what the alert tells.
class AlertIcon : public QWidget {
public:
    explicit AlertIcon(AlertStyle style)
        : m_style(style) {
        setFixedSize(kIcon, kIcon);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        paintLogo(painter, rect());
        if (m_style != AlertStyle::Informational) {
            const QRectF sign(kIcon - kSign, kIcon - kSign, kSign, kSign);
            painter.setRenderHint(QPainter::Antialiasing);
            const Theme& theme = themeOf(this);
            if (m_style == AlertStyle::Success) {
                paintSymbol(painter, u"checkmark.circle.fill"_s, sign, theme.success);
            } else {
                paintSymbol(painter, u"exclamationmark.triangle.fill"_s, sign, theme.warning);
            }
        }
    }

private:
    AlertStyle m_style;
};

/// Text that can be selected and copied. It isn't on the way of the Tab key.
TextLabel* selectableText(TextStyle style, const QString& text, int width) {
    auto* const label = new TextLabel(style, TextTone::Normal, text);
    label->setTextInteractionFlags(Qt::TextSelectableByMouse);
    label->setFixedWidth(width);
    return label;
}

} // namespace

AlertDialog::AlertDialog(const Alert& alert)
    : m_alert(alert) {
    setAccessibleName(alert.message);
    setAccessibleDescription(alert.informativeText);
    auto* const layout = new QHBoxLayout(this);
    layout->setContentsMargins(Theme::kGap24, Theme::kGap24, Theme::kGap24, Theme::kGap16);
    layout->setSpacing(Theme::kGap16);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    layout->addWidget(new AlertIcon(alert.style), 0, Qt::AlignTop);
    layout->addWidget(makeTexts());
    if (m_onReturn != nullptr) {
        m_onReturn->setFocus(); // not earlier: the focus of what isn't in a window yet is lost on the way
    } else {
        setFocus(); // nor does the first button in the order of the Tab key take Return or the space bar
    }
}

QWidget* AlertDialog::makeTexts() {
    auto* const column = new QWidget;
    auto* const layout = new QVBoxLayout(column);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap8);
    QWidget* const buttons = makeButtons();
    const int width = std::max(kTextWidth, buttons->sizeHint().width());
    layout->addWidget(selectableText(TextStyle::SectionTitle, m_alert.message, width));
    layout->addWidget(selectableText(TextStyle::Body, m_alert.informativeText, width));
    layout->addSpacing(Theme::kGap8);
    layout->addWidget(buttons);
    return column;
}

/// The first button stands at the right end; the Tab key goes from left to right.
QWidget* AlertDialog::makeButtons() {
    auto* const row = new QWidget;
    auto* const layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(Theme::kGap8);
    layout->addStretch(1);
    for (int index = static_cast<int>(m_alert.buttons.size()) - 1; index >= 0; --index) {
        auto* const button = new QPushButton(m_alert.buttons.at(index));
        button->setAutoDefault(false);
        button->setDefault(index == m_alert.returnButton());
        setDestructive(button, m_alert.destructiveButton == index);
        connect(button, &QPushButton::clicked, this, [this, index] { press(index); });
        layout->addWidget(button);
        if (index == m_alert.returnButton()) {
            m_onReturn = button;
        }
    }
    return row;
}

void AlertDialog::showOver(QWidget* window) {
    adjustSize();
    if (window != nullptr) {
        winId(); // makes the window of the system
        windowHandle()->setTransientParent(window->windowHandle());
        const QRect place = window->frameGeometry();
        move(place.center().x() - width() / 2, place.top() + (place.height() - height()) / 3);
    }
    show();
    raise();
    activateWindow();
}

void AlertDialog::reject() {
    press(m_alert.cancelButton);
}

void AlertDialog::closeEvent(QCloseEvent* event) {
    event->accept();
    reject();
}

void AlertDialog::press(int button) {
    if (!std::exchange(m_isAnswered, true)) {
        hide();
        deleteLater();
        Q_EMIT answered(button);
    }
}

} // namespace quorvane
