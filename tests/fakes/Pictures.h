#pragma once

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRect>

#include <algorithm>

namespace quorvane {

inline QImage plainPicture(const QSize& size, const QColor& color) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(color);
    return picture;
}

inline void fillRect(QImage& picture, const QRect& rect, const QColor& color) {
    QPainter(&picture).fillRect(rect, color);
}

/// The bytes of a file, without loss.
inline QByteArray pngFile(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return bytes;
}

/// Around every pixel that isn't of the background's colour; empty when all are.
inline QRect paintedRect(const QImage& picture, const QColor& background) {
    QRect rect;
    for (int y = 0; y < picture.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            if ((line[x] | 0xff000000U) != background.rgb())
                rect |= QRect(x, y, 1, 1);
        }
    }
    return rect;
}

inline qsizetype countOf(const QImage& picture, const QColor& color) {
    qsizetype count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        count += std::count_if(line, line + picture.width(),
                               [&color](QRgb pixel) { return (pixel | 0xff000000U) == color.rgb(); });
    }
    return count;
}

/// Black or white, whichever there is more of in the picture's upper half; the background must be neither.
inline QColor textColorIn(const QImage& picture) {
    const QImage upper = picture.copy(0, 0, picture.width(), picture.height() / 2);
    const bool isPlain = picture.pixelColor(picture.width() - 1, 0) == QColor(Qt::white);
    const qsizetype white = isPlain ? 0 : countOf(upper, Qt::white);
    const bool isBlack = picture.pixelColor(picture.width() - 1, 0) == QColor(Qt::black);
    return white > (isBlack ? 0 : countOf(upper, Qt::black)) ? Qt::white : Qt::black;
}

/// The lightness of the darkest pixel within, from 0 to 255.
inline int darkest(const QImage& picture, const QRect& rect) {
    int least = 255;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x)
            least = std::min(least, qGray(picture.pixel(x, y)));
    }
    return least;
}

inline int lightest(const QImage& picture) {
    QImage inverse = picture;
    inverse.invertPixels();
    return 255 - darkest(inverse, inverse.rect());
}

} // namespace quorvane
