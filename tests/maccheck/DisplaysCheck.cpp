// The displays of this Mac, and the pictures that come with the system.

#include "contract/Awaited.h"
#include "maccheck/CheckProgram.h"
#include "maccheck/People.h"
#include "platform/macos/MacDisplays.h"

#include <QDir>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class DisplaysAtScreen : public CheckAtScreen {};

QStringList systemPictures() {
    QStringList paths;
    for (const QFileInfo& file : QDir(u"/System/Library/Desktop Pictures"_s).entryInfoList(QDir::Files)) {
        if (QStringList{u"heic"_s, u"jpg"_s, u"jpeg"_s, u"png"_s, u"tiff"_s}.contains(file.suffix().toLower())) {
            paths.append(file.filePath());
        }
    }
    return paths;
}

} // namespace

TEST_F(DisplaysAtScreen, eachShowsAPictureThatIsThere) {
    const MacDisplays displays;
    QStringList shown;
    for (const Display& display : displays.screens()) {
        const std::optional<QString> picture = displays.desktopPicture(display);
        EXPECT_TRUE(!picture || QFileInfo::exists(*picture)) << picture->toStdString();
        shown.append(display.localizedName + u" shows "_s + picture.value_or(u"nothing that the system says"_s));
    }
    tell(shown.isEmpty() ? u"no display"_s : shown.join(u", "_s));
}

TEST(SystemPictures, eachIsLoaded) {
    const QStringList pictures = systemPictures();
    if (pictures.isEmpty()) {
        GTEST_SKIP() << "no picture lies in /System/Library/Desktop Pictures";
    }
    MacDisplays displays;
    for (const QString& path : pictures) {
        EXPECT_FALSE(awaited(displays.loadPicture(path)).isNull()) << path.toStdString();
    }
    tell(u"%1 pictures"_s.arg(pictures.size()));
}

} // namespace quorvane
