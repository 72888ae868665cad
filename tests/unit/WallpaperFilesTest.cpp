#include "wallpaper/WallpaperFiles.h"

#include "fakes/ScriptedSystem.h"

namespace quorvane {

namespace {

const QString kFolder = u"/Users/alex/Library/Application Support/Quorvane/WallpaperOverlay"_s;

class WallpaperFilesTest : public ScriptedSystem {
protected:
    static Display unnumbered(const QString& name, const QRectF& frame) { return {std::nullopt, name, frame, 1}; }

    WallpaperFiles work{files, machine};
};

} // namespace

TEST_F(WallpaperFilesTest, aDisplayIsCalledByItsNumberOrByItsNameAndPlace) {
    EXPECT_EQ(screenIdentifier({4'294'967'295U, u"Booth"_s, {0, 0, 1, 1}, 2}), u"display-4294967295"_s);
    EXPECT_EQ(screenIdentifier({0, {}, {}, 2}), u"display-0"_s);
    EXPECT_EQ(screenIdentifier(unnumbered(u"Booth"_s, {-1920.9, 37.9, 1920.5, 1080})), u"Booth--1920x37-1920x1080"_s);
    EXPECT_EQ(screenIdentifier(unnumbered({}, {0, 0, 640, 480})), u"-0x0-640x480"_s);
}

TEST_F(WallpaperFilesTest, aSlugIsMadeOfTheNamesLettersAndDigits) {
    EXPECT_EQ(wallpaperSlug(u"My Gig!"_s), u"my-gig"_s);
    EXPECT_EQ(wallpaperSlug(u"!?*…"_s), u"profile"_s);
    EXPECT_EQ(wallpaperSlug({}), u"profile"_s);
    EXPECT_EQ(wallpaperSlug(u"DJ-Set 2 / Club"_s), u"dj-set-2--club"_s);
    EXPECT_EQ(wallpaperSlug(u"../../etc"_s), u"etc"_s);
    EXPECT_EQ(wallpaperSlug(u"Ärger über Ⅷ 音楽 ٣"_s), u"ärger-über-ⅷ-音楽-٣"_s);
    EXPECT_EQ(wallpaperSlug(u"e\u0301\U0001D400🎛\t"_s), u"e\u0301\U0001D400"_s) << "marks and letters of any plane";
    EXPECT_EQ(wallpaperSlug(u"   "_s), u"---"_s);
}

TEST_F(WallpaperFilesTest, allFilesLieInTheWorkFolder) {
    EXPECT_EQ(work.folder(), kFolder);
    EXPECT_TRUE(files.exists(kFolder));
    EXPECT_EQ(work.manifestPath(), kFolder + u"/wallpaper-originals.json"_s);
    EXPECT_EQ(work.originalPath(u"display-1"_s), kFolder + u"/original-display-1.jpg"_s);
    EXPECT_EQ(work.compositedPath(u"display-1"_s, u"My Gig!"_s, 7), kFolder + u"/composited-display-1-my-gig-7.jpg"_s);
}

TEST_F(WallpaperFilesTest, anIdentifierIsNoPath) {
    EXPECT_EQ(work.originalPath(u"../../x\0y/z"_s), kFolder + u"/original-..-..-x-y-z.jpg"_s);
    EXPECT_EQ(work.compositedPath(u"a/b-0x0-1x1"_s, u"x"_s, 1), kFolder + u"/composited-a-b-0x0-1x1-x-1.jpg"_s);
}

TEST_F(WallpaperFilesTest, aNameThatIsTooLongForAFileIsCutOffBetweenCharacters) {
    for (const QString& name :
         {QString(300, u'a'), QString(300, u'é'), QString(300, u'音'), u"\U0001D400"_s.repeated(200)}) {
        for (const QString& id : {u"display-1"_s, name}) {
            const QString path = work.compositedPath(id, name, 1234);
            const QString file = path.mid(kFolder.size() + 1);
            EXPECT_LE(file.toUtf8().size(), 255);
            EXPECT_GT(file.toUtf8().size(), 245);
            EXPECT_EQ(QString::fromUtf8(path.toUtf8()), path) << "no half of a character";
            EXPECT_TRUE(WallpaperFiles::isComposited(file, id));
            EXPECT_EQ(WallpaperFiles::numberIn(file), 1234);
            EXPECT_LE(work.originalPath(id).toUtf8().size() - kFolder.size(), 256);
        }
    }
}

TEST_F(WallpaperFilesTest, aLabelledPictureIsThatOfOneDisplay) {
    EXPECT_TRUE(WallpaperFiles::isComposited(u"composited-display-1-live.jpg"_s, u"display-1"_s));
    EXPECT_FALSE(WallpaperFiles::isComposited(u"composited-display-12-live.jpg"_s, u"display-1"_s));
    EXPECT_FALSE(WallpaperFiles::isComposited(u"original-display-1.jpg"_s, u"display-1"_s));
    EXPECT_FALSE(WallpaperFiles::isComposited(u"composited-display-1.jpg"_s, u"display-1"_s));
}

TEST_F(WallpaperFilesTest, aDisplaysCopyMayHaveSeveralNames) {
    EXPECT_EQ(work.originalPath(u"display-1"_s, 1), work.originalPath(u"display-1"_s));
    EXPECT_EQ(work.originalPath(u"display-1"_s, 2), kFolder + u"/original-display-1.2.jpg"_s);
}

TEST_F(WallpaperFilesTest, aFilesNameTellsItsNumber) {
    for (const QString& id : {u"display-1"_s, u"Booth 1.5-0x0-640x480"_s, u"e\u0301"_s, QString(300, u'音')}) {
        for (const int number : {2, 13, 999'999'999}) {
            EXPECT_EQ(WallpaperFiles::numberIn(WallpaperFiles::nameOf(work.restoredPath(id, number))), number);
            EXPECT_EQ(WallpaperFiles::numberIn(WallpaperFiles::nameOf(work.compositedPath(id, u"Set 8"_s, number))),
                      number);
        }
    }
    EXPECT_EQ(WallpaperFiles::numberIn(u"composited-display-1-live-99999999999.jpg"_s), 0) << "nobody counts that far";
    for (const QString& other : {QString(), u"composited-display-1-live.jpg"_s, u"holiday-7.jpg"_s,
                                 u"wallpaper-originals.json"_s, u"original-display-1.2.jpg"_s}) {
        EXPECT_EQ(WallpaperFiles::numberIn(other), 0) << other.toStdString();
    }
}

TEST_F(WallpaperFilesTest, whatIsKnownOfADisplayIsItsNameAndSize) {
    EXPECT_EQ(screenDescription({7, u"Booth %1"_s, {-1920.9, 37.9, 1920.5, 1080}, 2}), u"Booth %1-1920x1080"_s);
}

TEST_F(WallpaperFilesTest, aPictureIsOursByItsPath) {
    EXPECT_TRUE(work.isOurs(kFolder + u"/composited-display-1-live.jpg"_s));
    EXPECT_TRUE(work.isOurs(u"/Volumes/Moved/Quorvane/WallpaperOverlay/a.jpg"_s));
    EXPECT_FALSE(work.isOurs(kFolder));
    EXPECT_FALSE(work.isOurs(u"/Users/alex/Pictures/a.jpg"_s));
}

TEST_F(WallpaperFilesTest, aPictureIsOursWhereverALinkLeads) {
    files.addFolders(u"/Users/alex/Library/Application Support"_s);
    files.addLink(u"/Users/alex/Library/Application Support/Quorvane"_s, u"/Volumes/Data/Apps"_s);
    files.addFile(u"/Volumes/Data/Apps/WallpaperOverlay/a.jpg"_s, "a");
    EXPECT_TRUE(work.isOurs(u"/Volumes/Data/Apps/WallpaperOverlay/a.jpg"_s));
    EXPECT_EQ(work.standardized(kFolder + u"/a.jpg"_s), u"/Volumes/Data/Apps/WallpaperOverlay/a.jpg"_s);
}

TEST_F(WallpaperFilesTest, pathsAreComparedInOneForm) {
    EXPECT_EQ(work.standardized(u"/a/./b/../c.jpg"_s), u"/a/c.jpg"_s);
    EXPECT_EQ(work.standardized(u"/a/a\u0308.jpg"_s), work.standardized(u"/a/ä.jpg"_s));
}

TEST_F(WallpaperFilesTest, anOriginalTellsItsDisplay) {
    EXPECT_EQ(WallpaperFiles::displayOfOriginal(u"original-display-1.jpg"_s), u"display-1"_s);
    EXPECT_EQ(WallpaperFiles::displayOfOriginal(u"composited-display-1-x.jpg"_s), QString());
    EXPECT_EQ(WallpaperFiles::displayOfOriginal(u"original-display-1.jpg.tmp"_s), QString());
}

TEST_F(WallpaperFilesTest, aFileIsHeldWhereItLiesOnceLinksAreResolved) {
    files.addFile(kFolder + u"/a.jpg"_s, "a");
    files.addFile(u"/Users/alex/Pictures/b.jpg"_s, "b");
    files.addLink(kFolder + u"/link.jpg"_s, u"/Users/alex/Pictures/b.jpg"_s);
    files.addLink(u"/Users/alex/in.jpg"_s, kFolder + u"/a.jpg"_s);
    EXPECT_TRUE(work.holds(kFolder + u"/a.jpg"_s));
    EXPECT_TRUE(work.holds(u"/Users/alex/in.jpg"_s));
    EXPECT_FALSE(work.holds(kFolder + u"/link.jpg"_s));
    EXPECT_FALSE(work.holds(kFolder + u"/../../../b.jpg"_s));
    EXPECT_FALSE(work.holds(u"/Users/alex/Pictures/b.jpg"_s));
    EXPECT_FALSE(work.holds(kFolder + u"/missing.jpg"_s));
    EXPECT_FALSE(work.holds(kFolder));
}

TEST_F(WallpaperFilesTest, aLinkIsRemovedAndNotWhatItLeadsTo) {
    files.addFile(u"/Users/alex/Pictures/b.jpg"_s, "b");
    files.addLink(kFolder + u"/link.jpg"_s, u"/Users/alex/Pictures/b.jpg"_s);
    work.remove(u"link.jpg"_s);
    EXPECT_EQ(work.names(), QStringList());
    EXPECT_EQ(files.read(u"/Users/alex/Pictures/b.jpg"_s), "b");
}

TEST_F(WallpaperFilesTest, nothingIsRemovedWhereTheFolderIsALinkToAnother) {
    files.addFile(u"/Users/alex/Pictures/b.jpg"_s, "b");
    files.addFolders(u"/Users/alex/Library/Application Support/Quorvane"_s);
    files.addLink(kFolder, u"/Users/alex/Pictures"_s);
    EXPECT_EQ(work.names(), QStringList(u"b.jpg"_s));
    work.remove(u"b.jpg"_s);
    EXPECT_EQ(files.read(u"/Users/alex/Pictures/b.jpg"_s), "b");
}

TEST_F(WallpaperFilesTest, theProgramsFoldersMayLieOnAnotherVolume) {
    files.addFolders(u"/Users/alex/Library/Application Support"_s);
    files.addLink(u"/Users/alex/Library/Application Support/Quorvane"_s, u"/Volumes/Data/Quorvane"_s);
    files.addFile(u"/Volumes/Data/Quorvane/WallpaperOverlay/a.jpg"_s, "a");
    work.remove(u"a.jpg"_s);
    EXPECT_EQ(work.names(), QStringList());
}

TEST_F(WallpaperFilesTest, aFileThatCantBeRemovedStays) {
    files.addFile(kFolder + u"/a.jpg"_s, "a");
    files.failOn(MemoryFileManager::Operation::Remove, kFolder + u"/a.jpg"_s);
    work.remove(u"a.jpg"_s);
    work.remove(u"missing.jpg"_s);
    EXPECT_EQ(work.names(), QStringList(u"a.jpg"_s));
}

TEST_F(WallpaperFilesTest, aFolderThatCantBeMadeHoldsNothing) {
    files.addFile(u"/Users/alex/Library/Application Support/Quorvane"_s, "a file in the way");
    EXPECT_EQ(work.folder(), kFolder);
    EXPECT_EQ(work.names(), QStringList());
    EXPECT_FALSE(work.holds(kFolder + u"/a.jpg"_s));
}

} // namespace quorvane
