#include "ui/documentation/ShippedDocumentation.h"

#include "ui/symbols/Logo.h"

#include <QBuffer>
#include <QFile>
#include <QImage>
#include <QPainter>

// Outside of any namespace: the macro declares a function of the global one.
static void initialiseDocumentation() {
    Q_INIT_RESOURCE(documentation);
}

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kLogoPixels = 64; // twice as many as its place in the page has points

QString resourceText(const QString& name) {
    QFile file(u":/documentation/"_s + name + u".md"_s);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

QByteArray logoFile() {
    QImage picture(kLogoPixels, kLogoPixels, QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    paintLogo(painter, picture.rect());
    painter.end();
    QByteArray bytes;
    QBuffer buffer(&bytes);
    picture.save(&buffer, "PNG");
    return bytes;
}

} // namespace

DocumentationParts shippedDocumentation() {
    initialiseDocumentation();
    return {resourceText(u"DOCUMENTATION"_s), resourceText(u"COPYRIGHT"_s), logoFile()};
}

} // namespace quorvane
