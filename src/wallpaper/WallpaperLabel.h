#pragma once

#include <QByteArray>
#include <QColor>
#include <QImage>
#include <QRect>
#include <QSizeF>
#include <QString>

// The label on a desktop picture: a profile's name, large and bold, in the top left corner.
//
// All sizes are in device pixels of the display that the picture is for, so that the text is as sharp as the display. Any
// thread; painting text needs a QGuiApplication.
namespace quorvane {

/// 6 % of the canvas's height, but no less than 40 and no more than 96 pixels.
double labelFontSize(double canvasHeight);
/// The distance of the text from the left and the top, and of its end from the right: 4 % of the shorter side.
double labelMargin(const QSizeF& canvas);
/// What a text looks like that begins at the top left margin: shortened with an ellipsis where it would run over the right
/// one. Empty where the system has no font.
struct LabelText {
    QString text;
    QRectF box; ///< of the line that the text stands on, on the canvas
};
LabelText labelText(const QString& text, const QSizeF& canvas);

/// How much of a text can be read: where no font of the system has a letter, a box stands for it.
enum class LabelLetters { All, Some, None };
/// Blanks and what changes only the letters beside it don't count.
LabelLetters labelLetters(const QString& text);

/// Where the brightness is sampled: the corner where the text will stand, at most 500 by 240 pixels.
QRect labelCorner(const QSize& canvas);
/// The mean luminance of the corner, from 0 for black to 1 for white; 0.5 where there is nothing to sample.
/// @param canvas  opaque
double cornerBrightness(const QImage& canvas);
/// Black on a corner brighter than 0.55, white on any other.
QColor labelColor(double cornerBrightness);

/// The picture as the desktop itself shows it, filling the canvas in its own proportions and clipped on both sides alike,
/// with the label on it. What is transparent shows black.
/// @return opaque, with the picture's colour space. Null when the picture is null, a side of the canvas is below 1 pixel,
///         the canvas has more than 1 GiB of pixels, or no font of the system has a letter of the text.
QImage labelledPicture(const QImage& picture, const QString& text, const QSizeF& canvas);

/// The picture as it is, on black where it is transparent.
QImage opaquePicture(const QImage& picture);

/// A JPEG file of a quality of 92 %. Empty for a picture that no such file can hold.
QByteArray jpegFile(const QImage& picture);

} // namespace quorvane
