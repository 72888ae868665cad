#pragma once

#include "ui/Theme.h"

#include <QIcon>
#include <QProxyStyle>

namespace quorvane {

/// Draws Qt's own controls as the theme says, and carries the theme to every widget. It is the application's style.
class QuorvaneStyle final : public QProxyStyle {
    Q_OBJECT

public:
    explicit QuorvaneStyle(const Look& look);

    const Theme& theme() const { return m_theme; }
    /// Gives every widget another look. Nothing happens for the one it has.
    void setLook(const Look& look);

    void polish(QApplication* application) override;
    void polish(QWidget* widget) override;
    using QProxyStyle::polish;

    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override;
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override;
    void drawComplexControl(ComplexControl control, const QStyleOptionComplex* option, QPainter* painter,
                            const QWidget* widget) const override;
    QRect subControlRect(ComplexControl control, const QStyleOptionComplex* option, SubControl part,
                         const QWidget* widget) const override;
    QRect subElementRect(SubElement element, const QStyleOption* option, const QWidget* widget) const override;
    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override;
    QIcon standardIcon(StandardPixmap icon, const QStyleOption* option, const QWidget* widget) const override;
    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override;
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* answer) const override;

private:
    void takePalette();
    void drawPushButton(const QStyleOption& option, QPainter& painter, const QWidget* widget) const;
    void drawScrollBar(const QStyleOption& option, const QRect& slider, QPainter& painter) const;

    Theme m_theme;
};

/// A symbol for a widget, in the ink of its texts, whatever look that has by then.
QIcon symbolOn(const QWidget* widget, const QString& symbol);

/// Marks a button whose deed can't be taken back.
void setDestructive(QWidget* button, bool isDestructive);
bool isDestructive(const QWidget* button);

/// The ring around what has the focus. @param radius  of the corners of what it goes round
void drawFocusRing(QPainter& painter, const Theme& theme, const QRectF& around, double radius);

/// The mark of what is ticked.
void drawCheckMark(QPainter& painter, const QRectF& box, const QColor& ink);

/// Whether a control is to look enabled. A page that waits for something keeps its looks, so that it doesn't flicker with each
/// short action; only what is disabled by itself looks so.
bool looksEnabled(const QWidget* widget);

} // namespace quorvane
