#include "ui/QuorvaneStyle.h"

#include "ui/symbols/PaintedIcon.h"
#include "ui/symbols/Symbols.h"

#include <QAbstractButton>
#include <QApplication>
#include <QPainter>
#include <QPointer>
#include <QPushButton>
#include <QStyleOption>
#include <QToolTip>
#include <QVariant>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr const char* kDestructive = "quorvaneDestructive";
constexpr int kScrollBarWidth = 12;
constexpr int kScrollBarMargin = 3;
constexpr int kShortestSlider = 32;

bool showsFocus(const QStyleOption& option) {
    return option.state.testFlag(QStyle::State_HasFocus) && option.state.testFlag(QStyle::State_KeyboardFocusChange);
}

QRect withoutRing(const QRect& rect) {
    return rect.adjusted(Theme::kRingRoom, Theme::kRingRoom, -Theme::kRingRoom, -Theme::kRingRoom);
}

QRectF insideLine(const QRect& rect) {
    return QRectF(rect).adjusted(0.5, 0.5, -0.5, -0.5);
}

/// A button's text, and before it the symbol that it may have.
void drawTitle(const QStyleOptionButton& button, QPainter& painter, bool isEnabled) {
    constexpr int kInMiddle = Qt::AlignCenter | Qt::TextShowMnemonic | Qt::TextHideMnemonic;
    if (button.icon.isNull()) {
        painter.drawText(button.rect, kInMiddle, button.text);
        return;
    }
    const int ofSymbol = button.iconSize.width() + Theme::kGap4;
    const int ofText = painter.fontMetrics().size(Qt::TextShowMnemonic, button.text).width();
    const int left = button.rect.left() + (button.rect.width() - ofSymbol - ofText) / 2;
    const int top = button.rect.top() + (button.rect.height() - button.iconSize.height()) / 2;
    button.icon.paint(&painter, QRect(QPoint(left, top), button.iconSize), Qt::AlignCenter,
                      isEnabled ? QIcon::Normal : QIcon::Disabled);
    painter.drawText(button.rect.adjusted(ofSymbol, 0, 0, 0), kInMiddle, button.text);
}

} // namespace

QuorvaneStyle::QuorvaneStyle(const Look& look)
    : QProxyStyle(u"fusion"_s)
    , m_theme(look) {}

void QuorvaneStyle::setLook(const Look& look) {
    if (look == m_theme.look()) {
        return;
    }
    m_theme = Theme(look);
    takePalette();
    for (QWidget* const widget : QApplication::allWidgets()) {
        QEvent changed(QEvent::StyleChange);
        QApplication::sendEvent(widget, &changed);
    }
}

void QuorvaneStyle::takePalette() {
    QApplication::setPalette(m_theme.palette());
    QToolTip::setPalette(m_theme.palette());
}

void QuorvaneStyle::polish(QApplication* application) {
    QProxyStyle::polish(application);
    takePalette();
    QApplication::setFont(m_theme.font(TextStyle::Body));
}

void QuorvaneStyle::polish(QWidget* widget) {
    QProxyStyle::polish(widget);
    if (qobject_cast<QAbstractButton*>(widget) != nullptr) {
        widget->setAttribute(Qt::WA_Hover);
    }
}

void QuorvaneStyle::drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                                const QWidget* widget) const {
    if (element == CE_PushButton) {
        drawPushButton(*option, *painter, widget);
    } else {
        QProxyStyle::drawControl(element, option, painter, widget);
    }
}

void QuorvaneStyle::drawPushButton(const QStyleOption& option, QPainter& painter, const QWidget* widget) const {
    const auto* const button = qstyleoption_cast<const QStyleOptionButton*>(&option);
    if (button == nullptr) {
        return;
    }
    const bool isEnabled = widget == nullptr || looksEnabled(widget);
    const bool isMarked =
        button->features.testFlag(QStyleOptionButton::DefaultButton) || option.state.testFlag(State_On);
    const bool isFilled = isMarked && isEnabled;
    const QRectF frame = insideLine(withoutRing(button->rect));
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(isFilled ? QPen(Qt::NoPen) : QPen(m_theme.fieldBorder, 1));
    painter.setBrush(isFilled ? m_theme.selection : m_theme.field);
    painter.drawRoundedRect(frame, Theme::kFieldRadius, Theme::kFieldRadius);
    if (button->state.testFlag(State_Sunken)) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(m_theme.pressed);
        painter.drawRoundedRect(frame, Theme::kFieldRadius, Theme::kFieldRadius);
    }
    QColor ink = isEnabled ? m_theme.text : m_theme.disabledText;
    if (isFilled) {
        ink = m_theme.onAccent;
    } else if (isEnabled && isDestructive(widget)) {
        ink = m_theme.danger;
    }
    painter.setPen(ink);
    drawTitle(*button, painter, isEnabled);
    if (showsFocus(*button)) {
        drawFocusRing(painter, m_theme, frame, Theme::kFieldRadius);
    }
    painter.restore();
}

void QuorvaneStyle::drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                                  const QWidget* widget) const {
    switch (element) {
    case PE_FrameFocusRect:
        if (showsFocus(*option)) {
            drawFocusRing(*painter, m_theme, QRectF(withoutRing(option->rect)), Theme::kFieldRadius);
        }
        return;
    case PE_PanelLineEdit: {
        const QRectF frame = insideLine(withoutRing(option->rect));
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(m_theme.fieldBorder);
        painter->setBrush(m_theme.field);
        painter->drawRoundedRect(frame, Theme::kFieldRadius, Theme::kFieldRadius);
        if (option->state.testFlag(State_HasFocus)) {
            drawFocusRing(*painter, m_theme, frame, Theme::kFieldRadius);
        }
        painter->restore();
        return;
    }
    case PE_IndicatorCheckBox: // of menus; any other is an AppSwitch
        if (option->state.testFlag(State_On)) {
            drawCheckMark(*painter, option->rect, m_theme.text);
        }
        return;
    case PE_FrameLineEdit:
        return;
    default:
        QProxyStyle::drawPrimitive(element, option, painter, widget);
    }
}

void QuorvaneStyle::drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                                       const QWidget* widget) const {
    if (control != CC_ScrollBar) {
        QProxyStyle::drawComplexControl(control, option, painter, widget);
        return;
    }
    drawScrollBar(*option, subControlRect(CC_ScrollBar, option, SC_ScrollBarSlider, widget), *painter);
}

/// Only the slider, as a round bar.
void QuorvaneStyle::drawScrollBar(const QStyleOption& option, const QRect& slider, QPainter& painter) const {
    const auto* const bar = qstyleoption_cast<const QStyleOptionSlider*>(&option);
    if (bar == nullptr || bar->minimum == bar->maximum) {
        return;
    }
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    QColor ink = m_theme.text;
    ink.setAlphaF(bar->state.testFlag(State_MouseOver) ? 0.5F : 0.3F);
    painter.setPen(Qt::NoPen);
    painter.setBrush(ink);
    const QRectF body =
        QRectF(slider).adjusted(kScrollBarMargin, kScrollBarMargin, -kScrollBarMargin, -kScrollBarMargin);
    const double radius = std::min(body.width(), body.height()) / 2;
    painter.drawRoundedRect(body, radius, radius);
    painter.restore();
}

/// No arrows at the ends.
QRect QuorvaneStyle::subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                                    const QWidget* widget) const {
    const auto* const bar = control == CC_ScrollBar ? qstyleoption_cast<const QStyleOptionSlider*>(option) : nullptr;
    if (bar == nullptr) {
        return QProxyStyle::subControlRect(control, option, part, widget);
    }
    const bool isVertical = bar->orientation == Qt::Vertical;
    const int length = isVertical ? bar->rect.height() : bar->rect.width();
    const int range = bar->maximum - bar->minimum;
    const auto proportional =
        static_cast<int>(static_cast<qint64>(length) * bar->pageStep / std::max(1, range + bar->pageStep));
    const int size = range > 0 ? std::min(length, std::max(kShortestSlider, proportional)) : length;
    const int start =
        sliderPositionFromValue(bar->minimum, bar->maximum, bar->sliderPosition, length - size, bar->upsideDown);
    const auto along = [&](int from, int extent) {
        return isVertical ? QRect(bar->rect.x(), bar->rect.y() + from, bar->rect.width(), extent)
                          : QRect(bar->rect.x() + from, bar->rect.y(), extent, bar->rect.height());
    };
    switch (part) {
    case SC_ScrollBarSlider:
        return along(start, size);
    case SC_ScrollBarGroove:
        return bar->rect;
    case SC_ScrollBarSubPage:
        return along(0, start);
    case SC_ScrollBarAddPage:
        return along(start + size, length - start - size);
    default:
        return {};
    }
}

/// The text of a field keeps away from its rounded ends.
QRect QuorvaneStyle::subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const {
    const QRect rect = QProxyStyle::subElementRect(element, option, widget);
    return element == SE_LineEditContents ? rect.adjusted(Theme::kGap4, 0, -Theme::kGap4, 0) : rect;
}

QSize QuorvaneStyle::sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                                      const QWidget* widget) const {
    if (type == CT_PushButton) {
        return QSize(std::max(contents.width() + 2 * Theme::kGap16, Theme::kButtonWidth),
                     std::max(contents.height() + Theme::kGap8, Theme::kButtonHeight)) +
               QSize(2 * Theme::kRingRoom, 2 * Theme::kRingRoom);
    }
    const QSize size = QProxyStyle::sizeFromContents(type, option, contents, widget);
    if (type == CT_LineEdit) {
        return {size.width() + Theme::kGap8,
                std::max(size.height() + Theme::kGap8, Theme::kButtonHeight + 2 * Theme::kRingRoom)};
    }
    return size;
}

/// Each menu bar asks for what its end would show if it were too short. Qt's own is read from a file there and then.
QIcon QuorvaneStyle::standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const {
    if (icon != SP_ToolBarHorizontalExtensionButton) {
        return QProxyStyle::standardIcon(icon, option, widget);
    }
    return symbolOn(widget, u"chevron.right"_s); // the bar asks once, and may see another look
}

int QuorvaneStyle::pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const {
    switch (metric) {
    case PM_ScrollBarExtent:
        return kScrollBarWidth;
    case PM_ScrollView_ScrollBarSpacing:
    case PM_ButtonShiftHorizontal:
    case PM_ButtonShiftVertical:
        return 0;
    case PM_SplitterWidth:
        return 1;
    case PM_DefaultFrameWidth:
        return qobject_cast<const QAbstractButton*>(widget) != nullptr
                   ? 0
                   : QProxyStyle::pixelMetric(metric, option, widget);
    default:
        return QProxyStyle::pixelMetric(metric, option, widget);
    }
}

int QuorvaneStyle::styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                             QStyleHintReturn* answer) const {
    switch (hint) {
    case SH_Widget_Animation_Duration: // Fusion would keep a timer for each scroll bar
    case SH_UnderlineShortcut:
    case SH_EtchDisabledText:
    case SH_DialogButtonBox_ButtonsHaveIcons:
    case SH_ScrollBar_Transient:
        return 0;
    case SH_ScrollBar_LeftClickAbsolutePosition:
        return 1;
    default:
        return QProxyStyle::styleHint(hint, option, widget, answer);
    }
}

QIcon symbolOn(const QWidget* widget, const QString& symbol) {
    return paintedIcon([on = QPointer<const QWidget>(widget), symbol](QPainter& painter, const QRectF& rect) {
        if (on != nullptr) {
            paintSymbol(painter, symbol, rect, themeOf(on).text);
        }
    });
}

void setDestructive(QWidget* button, bool isDestructive) {
    button->setProperty(kDestructive, isDestructive);
}

bool isDestructive(const QWidget* button) {
    return button != nullptr && button->property(kDestructive).toBool();
}

void drawCheckMark(QPainter& painter, const QRectF& box, const QColor& ink) {
    const auto at = [&box](double x, double y) {
        return QPointF(box.left() + x * box.width(), box.top() + y * box.height());
    };
    const QPolygonF mark{at(0.15, 0.55), at(0.4, 0.8), at(0.85, 0.2)};
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(ink, box.width() / 8, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
    painter.drawPolyline(mark);
    painter.restore();
}

void drawFocusRing(QPainter& painter, const Theme& theme, const QRectF& around, double radius) {
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(theme.focusRing, Theme::kFocusRing));
    painter.setBrush(Qt::NoBrush);
    constexpr double kApart = 2; // half the ring, and a pixel between it and a ground of nearly its colour
    painter.drawRoundedRect(around.adjusted(-kApart, -kApart, kApart, kApart), radius + kApart, radius + kApart);
    painter.restore();
}

bool looksEnabled(const QWidget* widget) {
    return widget->isEnabled() || !widget->testAttribute(Qt::WA_ForceDisabled);
}

} // namespace quorvane
