#include "rehearsal/LabelCommand.h"

#include "platform/FileManager.h"
#include "platform/portable/DiskFileManager.h"
#include "platform/portable/PictureDecoder.h"
#include "rehearsal/Terminal.h"
#include "wallpaper/WallpaperLabel.h"

#include <QRegularExpression>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QSizeF canvasFrom(const QString& size) {
    static const QRegularExpression form(u"^([1-9][0-9]{0,4})x([1-9][0-9]{0,4})$"_s);
    const QRegularExpressionMatch match = form.match(size);
    if (!match.hasMatch()) {
        throw UnusableInput(u"label: not a size such as 3024x1964: "_s + size);
    }
    return QSizeF(match.captured(1).toInt(), match.captured(2).toInt());
}

QImage pictureIn(const QString& file) {
    try {
        const QImage picture = decodedPicture(DiskFileManager().read(file));
        if (picture.isNull()) {
            throw UnusableInput(file + u": not a picture that can be read"_s);
        }
        return picture;
    } catch (const FileError& error) {
        throw UnusableInput(error.message());
    }
}

} // namespace

int labelPicture(const Arguments& arguments) {
    const QString& outFile = arguments.operands.at(1);
    const QSizeF canvas = canvasFrom(arguments.operands.at(3));
    const QByteArray file =
        jpegFile(labelledPicture(pictureIn(arguments.operands.at(0)), arguments.operands.at(2), canvas));
    try {
        if (file.isEmpty()) {
            throw FileError(outFile, u"The label could not be composed"_s);
        }
        DiskFileManager().writeAtomically(outFile, file);
        if (labelLetters(arguments.operands.at(2)) != LabelLetters::All) {
            std::fprintf(stderr, "Not every letter of the name has a font.\n");
        }
        return kDone;
    } catch (const FileError& error) {
        complain(error.message());
        return kNotDone;
    }
}

} // namespace quorvane
