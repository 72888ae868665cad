#include "wallpaper/WallpaperLabel.h"

#include <QBuffer>
#include <QColorSpace>
#include <QFont>
#include <QFontDatabase>
#include <QFontMetricsF>
#include <QImageWriter>
#include <QPainter>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr double kLargestDarkBrightness = 0.55;
constexpr int kJpegQuality = 92;
/// 72 dots per inch: on such a canvas a point is a pixel, and a font may have a fraction of one.
constexpr int kDotsPerMeter = 2835;

/// As large as any picture that is read: 1 GiB of pixels.
constexpr qint64 kLargestCanvas = 1LL << 28;

/// Null when it can't be made.
QImage blackCanvas(const QSize& size) {
    if (qint64{size.width()} * size.height() > kLargestCanvas) {
        return {};
    }
    QImage canvas(size, QImage::Format_RGB32);
    canvas.setDotsPerMeterX(kDotsPerMeter);
    canvas.setDotsPerMeterY(kDotsPerMeter);
    if (!canvas.isNull()) {
        canvas.fill(Qt::black);
    }
    return canvas;
}

/// The Mac's system font; elsewhere the one that set-up installs.
QFont labelFont(double canvasHeight) {
    QFont font(QStringList{u".AppleSystemUIFont"_s, u"Inter"_s});
    font.setPointSizeF(labelFontSize(canvasHeight));
    font.setWeight(QFont::Bold);
    return font;
}

/// As the painter measures it on a canvas.
QFontMetricsF metricsOf(const QFont& font) {
    QImage device = blackCanvas({1, 1});
    return QFontMetricsF(font, &device);
}

/// The largest part of the picture, from its middle, that has the canvas's proportions.
QRect partShown(const QSize& picture, const QSize& canvas) {
    const QSize part = canvas.scaled(picture, Qt::KeepAspectRatio).expandedTo({1, 1});
    return QRect(QPoint((picture.width() - part.width()) / 2, (picture.height() - part.height()) / 2), part);
}

/// It is clipped before it is scaled: a panorama that fills a canvas may be many times as wide.
QImage filling(const QImage& picture, const QSize& canvas) {
    const QImage::Format format =
        picture.hasAlphaChannel() ? QImage::Format_ARGB32_Premultiplied : QImage::Format_RGB32;
    return picture.copy(partShown(picture.size(), canvas))
        .convertToFormat(format)
        .scaled(canvas, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
}

/// A mark, a joiner or a control changes the letters beside it at most.
bool isSeen(char32_t character) {
    return QChar::isPrint(character) && !QChar::isMark(character) && !QChar::isSpace(character) &&
           QChar::category(character) != QChar::Other_Format;
}

void keepColorSpace(QImage& canvas, const QImage& picture) {
    if (picture.colorSpace().isValid()) {
        canvas.setColorSpace(picture.colorSpace());
    }
}

double luminance(QRgb pixel) {
    return (0.2126 * qRed(pixel) + 0.7152 * qGreen(pixel) + 0.0722 * qBlue(pixel)) / 255;
}

} // namespace

double labelFontSize(double canvasHeight) {
    return std::max(std::min(0.06 * canvasHeight, 96.0), 40.0);
}

double labelMargin(const QSizeF& canvas) {
    return 0.04 * std::min(canvas.width(), canvas.height());
}

LabelText labelText(const QString& text, const QSizeF& canvas) {
    if (QFontDatabase::families().isEmpty()) {
        return {};
    }
    const QFontMetricsF metrics = metricsOf(labelFont(canvas.height()));
    const double margin = labelMargin(canvas);
    const QString fitting = metrics.elidedText(text, Qt::ElideRight, canvas.width() - 2 * margin);
    return {fitting, QRectF(margin, margin, metrics.horizontalAdvance(fitting), metrics.height())};
}

LabelLetters labelLetters(const QString& text) {
    const QFontMetricsF metrics = metricsOf(labelFont(0)); // a font has the same letters in every size
    const QList<uint> characters = text.toUcs4();
    const auto seen = std::count_if(characters.cbegin(), characters.cend(), &isSeen);
    const auto missing = std::count_if(characters.cbegin(), characters.cend(), [&metrics](uint character) {
        return isSeen(character) && !metrics.inFontUcs4(character);
    });
    if (missing == 0) {
        return LabelLetters::All;
    }
    return missing < seen ? LabelLetters::Some : LabelLetters::None;
}

QRect labelCorner(const QSize& canvas) {
    const int margin = static_cast<int>(labelMargin(canvas));
    const QSize size(std::clamp(canvas.width() / 3, 120, 500), std::clamp(canvas.height() / 10, 80, 240));
    return QRect(QPoint(margin, margin), size).intersected(QRect(QPoint(), canvas));
}

double cornerBrightness(const QImage& canvas) {
    const QRect corner = labelCorner(canvas.size());
    if (corner.isEmpty()) {
        return 0.5;
    }
    double sum = 0;
    for (int y = corner.top(); y <= corner.bottom(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(canvas.constScanLine(y));
        for (int x = corner.left(); x <= corner.right(); ++x) {
            sum += luminance(line[x]);
        }
    }
    return sum / (static_cast<double>(corner.width()) * corner.height());
}

QColor labelColor(double cornerBrightness) {
    return cornerBrightness > kLargestDarkBrightness ? Qt::black : Qt::white;
}

QImage labelledPicture(const QImage& picture, const QString& text, const QSizeF& canvas) {
    const QSize size(static_cast<int>(canvas.width()), static_cast<int>(canvas.height()));
    const LabelText label = labelText(text, canvas);
    if (picture.isNull() || size.isEmpty() || label.box.height() <= 0 || labelLetters(text) == LabelLetters::None) {
        return {};
    }
    QImage labelled = blackCanvas(size);
    if (labelled.isNull()) {
        return {};
    }
    keepColorSpace(labelled, picture);
    QPainter painter(&labelled);
    painter.drawImage(QPoint(), filling(picture, size));
    const QFont font = labelFont(canvas.height());
    painter.setFont(font);
    painter.setPen(labelColor(cornerBrightness(labelled)));
    painter.drawText(label.box.topLeft() + QPointF(0, metricsOf(font).ascent()), label.text);
    return labelled;
}

QImage opaquePicture(const QImage& picture) {
    if (!picture.hasAlphaChannel()) {
        return picture;
    }
    QImage opaque = blackCanvas(picture.size());
    if (!opaque.isNull()) {
        keepColorSpace(opaque, picture);
        QPainter(&opaque).drawImage(QPoint(), picture);
    }
    return opaque;
}

QByteArray jpegFile(const QImage& picture) {
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "jpeg");
    writer.setQuality(kJpegQuality);
    return writer.write(picture) ? bytes : QByteArray();
}

} // namespace quorvane
