#pragma once

#include <QBuffer>
#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRect>
#include <QString>

#include <algorithm>

namespace quorvane {

QImage plainPicture(const QSize& size, const QColor& color);
void fillRect(QImage& picture, const QRect& rect, const QColor& color);

/// The bytes of a file, without loss.
QByteArray pngFile(const QImage& picture);

/// Around every pixel that isn't of the background's colour; empty when all are.
QRect paintedRect(const QImage& picture, const QColor& background);
qsizetype countOf(const QImage& picture, const QColor& color);

/// Black or white, whichever there is more of in the picture's upper half; the background must be neither.
QColor textColorIn(const QImage& picture);

/// The lightness of the darkest pixel within, from 0 to 255.
int darkest(const QImage& picture, const QRect& rect);
int lightest(const QImage& picture);

/// Two letters that no font of this machine has, for a name that can't be read; a failed test where there are none.
QString lettersWithoutAFont();

} // namespace quorvane
