#include "fakes/Pictures.h"

#include <QFont>
#include <QFontMetrics>

#include <gtest/gtest.h>

namespace quorvane {

QImage plainPicture(const QSize& size, const QColor& color) {
    QImage picture(size, QImage::Format_RGB32);
    picture.fill(color);
    return picture;
}

void fillRect(QImage& picture, const QRect& rect, const QColor& color) {
    QPainter(&picture).fillRect(rect, color);
}

QByteArray pngFile(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    picture.save(&buffer, "PNG");
    return bytes;
}

QRect paintedRect(const QImage& picture, const QColor& background) {
    QRect rect;
    for (int y = 0; y < picture.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        for (int x = 0; x < picture.width(); ++x) {
            if ((line[x] | 0xff000000U) != background.rgb()) {
                rect |= QRect(x, y, 1, 1);
            }
        }
    }
    return rect;
}

qsizetype countOf(const QImage& picture, const QColor& color) {
    qsizetype count = 0;
    for (int y = 0; y < picture.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(picture.constScanLine(y));
        count += std::count_if(line, line + picture.width(),
                               [&color](QRgb pixel) { return (pixel | 0xff000000U) == color.rgb(); });
    }
    return count;
}

QColor textColorIn(const QImage& picture) {
    const QImage upper = picture.copy(0, 0, picture.width(), picture.height() / 2);
    const bool isPlain = picture.pixelColor(picture.width() - 1, 0) == QColor(Qt::white);
    const qsizetype white = isPlain ? 0 : countOf(upper, Qt::white);
    const bool isBlack = picture.pixelColor(picture.width() - 1, 0) == QColor(Qt::black);
    return white > (isBlack ? 0 : countOf(upper, Qt::black)) ? Qt::white : Qt::black;
}

int darkest(const QImage& picture, const QRect& rect) {
    int least = 255;
    for (int y = rect.top(); y <= rect.bottom(); ++y) {
        for (int x = rect.left(); x <= rect.right(); ++x) {
            least = std::min(least, qGray(picture.pixel(x, y)));
        }
    }
    return least;
}

int lightest(const QImage& picture) {
    QImage inverse = picture;
    inverse.invertPixels();
    return 255 - darkest(inverse, inverse.rect());
}

QString lettersWithoutAFont() {
    constexpr char16_t kFirstBehindGreekAndCyrillic = 0x0530;
    constexpr char16_t kLast = 0xd7a3;
    const QFontMetrics metrics{QFont()};
    QString letters;
    for (char16_t letter = kFirstBehindGreekAndCyrillic; letter <= kLast && letters.size() < 2; ++letter) {
        if (QChar::isLetter(letter) && !metrics.inFontUcs4(letter)) {
            letters.append(letter);
        }
    }
    EXPECT_EQ(letters.size(), 2) << "every letter has a font here";
    return letters.leftJustified(2, u'?');
}

} // namespace quorvane
