#include "ui/symbols/Logo.h"

#include "ui/symbols/PaintedIcon.h"

#include <QFontMetricsF>
#include <QGuiApplication>
#include <QPainter>
#include <QSvgRenderer>

#include <algorithm>
#include <initializer_list>

// Outside of any namespace: the macro declares a function of the global one.
static void initialiseLogo() {
    Q_INIT_RESOURCE(quorvane_logo);
}

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kLetters = u"QV"_s;

// Of the status area nobody tells the ground: dark letters on a light one of their own can be read on any.
constexpr QColor kStatusGround(0xf5, 0xf5, 0xf7);
constexpr QColor kStatusLetters(0x1d, 0x1d, 0x1f);
constexpr qreal kStatusRadius = 0.2;        // of the side
constexpr qreal kStatusLettersWidth = 0.82; // of the side

QRectF squareIn(const QRectF& rect) {
    const qreal side = std::min(rect.width(), rect.height());
    QRectF square(0, 0, side, side);
    square.moveCenter(rect.center());
    return square;
}

QList<QSize> squares(std::initializer_list<int> sides) {
    QList<QSize> sizes;
    for (const int side : sides) {
        sizes.append({side, side});
    }
    return sizes;
}

/// The largest in which the letters are no wider than that.
QFont statusFont(qreal width) {
    QFont font = QGuiApplication::font();
    font.setWeight(QFont::Bold);
    constexpr int kTrial = 100;
    font.setPixelSize(kTrial);
    const qreal trialWidth = QFontMetricsF(font).horizontalAdvance(kLetters);
    font.setPixelSize(std::max(1, static_cast<int>(width * kTrial / std::max(trialWidth, 1.0))));
    return font;
}

void paintStatusIcon(QPainter& painter, const QRectF& rect) {
    const QRectF square = squareIn(rect);
    const qreal radius = square.width() * kStatusRadius;
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(kStatusGround);
    painter.drawRoundedRect(square, radius, radius);
    painter.setFont(statusFont(square.width() * kStatusLettersWidth));
    painter.setPen(kStatusLetters);
    painter.drawText(square, Qt::AlignCenter | Qt::TextDontClip, kLetters);
    painter.restore();
}

} // namespace

void paintLogo(QPainter& painter, const QRectF& rect) {
    initialiseLogo();
    QSvgRenderer renderer(u":/quorvane/quorvane_logo.svg"_s);
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing);
    renderer.render(&painter, squareIn(rect));
    painter.restore();
}

QIcon logoIcon() {
    QIcon icon;
    for (const QSize& size : squares({16, 32, 48, 64, 128})) {
        QPixmap picture(size);
        picture.fill(Qt::transparent);
        QPainter painter(&picture);
        paintLogo(painter, picture.rect());
        painter.end();
        icon.addPixmap(picture);
    }
    return icon;
}

QIcon statusIcon() {
    return paintedIcon(paintStatusIcon, squares({16, 22, 24, 32, 44, 48, 64}));
}

} // namespace quorvane
