// Draws the application's icon from the program's logo: quorvane-icon FOLDER writes a PNG for each size and scale that a Mac asks
// for, named as its iconutil wants them.

#include "ui/symbols/Logo.h"

#include <QCoreApplication>
#include <QDir>
#include <QImage>
#include <QPainter>

#include <cstdio>

namespace quorvane {

namespace {

using namespace Qt::StringLiterals;

// On Apple's grid for icons the ground takes 824 of 1,024 pixels; in the logo's drawing it takes 112 of 128.
constexpr qreal kLogoWidth = (824.0 / 1024) / (112.0 / 128);

QImage iconOf(int side) {
    QImage icon(side, side, QImage::Format_ARGB32_Premultiplied);
    icon.fill(Qt::transparent);
    QRectF place(0, 0, side * kLogoWidth, side * kLogoWidth);
    place.moveCenter(QRectF(icon.rect()).center());
    QPainter painter(&icon);
    paintLogo(painter, place);
    return icon;
}

bool isDrawn(const QDir& folder, int points, int scale) {
    const QString suffix = scale == 1 ? QString() : u"@%1x"_s.arg(scale);
    return iconOf(points * scale).save(folder.filePath(u"icon_%1x%1%2.png"_s.arg(points).arg(suffix)));
}

bool areDrawn(const QDir& folder) {
    for (const int points : {16, 32, 128, 256, 512}) {
        if (!isDrawn(folder, points, 1) || !isDrawn(folder, points, 2)) {
            return false;
        }
    }
    return true;
}

} // namespace

} // namespace quorvane

int main(int argumentCount, char** arguments) {
    const QCoreApplication application(argumentCount, arguments);
    const QStringList words = QCoreApplication::arguments();
    if (words.size() != 2) {
        std::fputs("usage: quorvane-icon FOLDER\n", stderr);
        return 2;
    }
    if (!QDir().mkpath(words[1]) || !quorvane::areDrawn(QDir(words[1]))) {
        std::fprintf(stderr, "quorvane-icon: %s can't be written to\n", qPrintable(words[1]));
        return 1;
    }
    return 0;
}
