// The label on the wallpaper as a person tries it from a terminal.

#include "fakes/Pictures.h"
#include "fakes/RehearsalProgram.h"

#include <QDir>

namespace quorvane {

namespace {

const QString kOverlayFolder = u"/Users/mika/Library/Application Support/Quorvane/WallpaperOverlay"_s;

class RehearsalWallpaper : public RehearsalTest {
protected:
    RehearsalWallpaper()
        : RehearsalTest({QStringLiteral(QUORVANE_SOURCE_DIR "/examples/macs/dj-laptop.json")}) {}

    QString picture(const QColor& color) { return file(u"picture.png"_s, pngFile(plainPicture({60, 40}, color))); }
    QString outFile() const { return folder.path() + u"/out.jpg"_s; }
    QStringList workFiles() const {
        return QDir(macFolder() + kOverlayFolder).entryList(QDir::Files | QDir::Hidden, QDir::Name);
    }
};

} // namespace

// ---- One picture

TEST_F(RehearsalWallpaper, labelWritesOnePicture) {
    const Ending run = start({u"label"_s, picture(QColor(20, 30, 60)), outFile(), u"Live"_s, u"640x480"_s});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, QByteArray());
    EXPECT_EQ(run.error, QByteArray());
    const QImage labelled(outFile());
    EXPECT_EQ(labelled.size(), QSize(640, 480));
    EXPECT_GT(lightest(labelled.copy(0, 0, 320, 100)), 240);
    EXPECT_LT(lightest(labelled.copy(0, 120, 640, 360)), 80);
}

TEST_F(RehearsalWallpaper, labelRefusesWhatItCantUse) {
    const QString used = picture(Qt::blue);
    const auto expectUnusable = [](const QStringList& arguments, const QByteArray& line) {
        const Ending run = start(arguments);
        EXPECT_EQ(run.status, 2);
        EXPECT_EQ(run.output, QByteArray());
        EXPECT_EQ(run.error.toStdString(), "quorvane-rehearsal: " + line.toStdString() + "\n");
    };
    for (const char* size : {"640", "640x", "x480", "0x480", "-1x480", "640x480x2", "640X480", "6.5x480"}) {
        expectUnusable({u"label"_s, used, outFile(), u"Live"_s, QString::fromUtf8(size)},
                       QByteArray("label: not a size such as 3024x1964: ") + size);
    }
    const QString text = file(u"text.jpg"_s, "text");
    expectUnusable({u"label"_s, text, outFile(), u"Live"_s, u"640x480"_s},
                   text.toUtf8() + ": not a picture that can be read");
    expectUnusable({u"label"_s, u"/nowhere.png"_s, outFile(), u"Live"_s, u"640x480"_s},
                   "/nowhere.png: No such file or directory");
    expectUnusable({u"label"_s, used, outFile(), u"Live"_s}, "label: an operand is missing");
    expectUnusable({u"label"_s, used, outFile(), u"Live"_s, u"1x1"_s, u"more"_s}, "label: superfluous argument: more");
    EXPECT_FALSE(QFileInfo::exists(outFile()));
}

TEST_F(RehearsalWallpaper, labelThatCantBeWrittenEndsWithStatusOne) {
    const Ending missing = start({u"label"_s, picture(Qt::blue), u"/nowhere/out.jpg"_s, u"Live"_s, u"640x480"_s});
    EXPECT_EQ(missing.status, 1);
    EXPECT_EQ(missing.error, "/nowhere/out.jpg: No such file or directory\n");
    const Ending tooLarge = start({u"label"_s, picture(Qt::blue), outFile(), u"Live"_s, u"99999x99999"_s});
    EXPECT_EQ(tooLarge.status, 1);
    EXPECT_EQ(tooLarge.error, outFile().toUtf8() + ": The label could not be composed\n");
    EXPECT_FALSE(QFileInfo::exists(outFile()));
}

TEST_F(RehearsalWallpaper, labelSaysSoWhenALetterHasNoFont) {
    const QString letters = lettersWithoutAFont();
    const Ending part = start({u"label"_s, picture(Qt::blue), outFile(), u"Tour "_s + letters, u"640x480"_s});
    EXPECT_EQ(part.status, 0);
    EXPECT_EQ(part.error, "Not every letter of the name has a font.\n");
    const Ending none = start({u"label"_s, picture(Qt::blue), outFile(), letters, u"640x480"_s});
    EXPECT_EQ(none.status, 1);
    EXPECT_EQ(none.error, outFile().toUtf8() + ": The label could not be composed\n");
}

// ---- The displays

TEST_F(RehearsalWallpaper, overlayShowsTheNameAndTakesItAway) {
    const Ending on = rehearse({u"overlay"_s, u"Late Night Set"_s});
    EXPECT_EQ(on.status, 0);
    EXPECT_EQ(on.error, QByteArray());
    EXPECT_EQ(on.output.toStdString(),
              "  [APPLIED] Wallpaper profile label set to \"Late Night Set\" on 2 display(s).\n"
              "Color LCD: the label is shown\n"
              "Booth Monitor: the label is shown\n"
              "Color LCD: " +
                  kOverlayFolder.toStdString() +
                  "/composited-display-1-late-night-set-1.jpg\n"
                  "Booth Monitor: " +
                  kOverlayFolder.toStdString() + "/composited-display-3-late-night-set-1.jpg\n");
    const Ending off = rehearse({u"overlay"_s, u"--off"_s});
    EXPECT_EQ(off.status, 0);
    EXPECT_EQ(off.output, "  [APPLIED] Wallpaper profile label removed.\n"
                          "Color LCD: /Users/mika/Pictures/Stage.jpg\n"
                          "Booth Monitor: /Users/mika/Pictures/Dunes.jpg\n");
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(RehearsalWallpaper, overlayReportsEachDisplay) {
    const Ending run = rehearse({u"overlay"_s, u"Live"_s, u"--json"_s});
    const macsim::Json report = macsim::Json::parse(run.output.cbegin(), run.output.cend());
    EXPECT_EQ(report.at("labels"), (macsim::Json{{{"display", "Color LCD"}, {"isShown", true}, {"detail", ""}},
                                                 {{"display", "Booth Monitor"}, {"isShown", true}, {"detail", ""}}}));
}

TEST_F(RehearsalWallpaper, overlayWithoutAProfilesNameEndsWithStatusOne) {
    const Ending run = rehearse({u"overlay"_s, u"Default"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.output.startsWith("  [INFO] Wallpaper overlay enabled but no custom profile name is available.\n"));
}

TEST_F(RehearsalWallpaper, overlayNeedsEitherANameOrItsOption) {
    const QByteArray line = "quorvane-rehearsal: overlay: either a name or --off\n";
    expectRefused({u"overlay"_s}, line);
    expectRefused({u"overlay"_s, u"--off"_s, u"Live"_s}, line);
}

TEST_F(RehearsalWallpaper, anAppliedProfileIsNamedOnTheDisplays) {
    ASSERT_EQ(rehearse({u"overlay"_s, u"Late Night Set"_s}).status, 0);
    const Ending run = rehearse({u"apply"_s, example(u"rehearsal"_s)});
    EXPECT_EQ(run.status, 0);
    EXPECT_TRUE(run.output.contains("Color LCD: the label is shown\nBooth Monitor: the label is shown\n"));
    EXPECT_TRUE(run.output.contains("  [APPLIED] Wallpaper profile label set to \"Rehearsal\" on 2 display(s).\n"));
    EXPECT_TRUE(workFiles().contains(u"composited-display-3-rehearsal-2.jpg"_s));
    const Ending back = rehearse({u"default"_s});
    EXPECT_TRUE(back.output.contains("  [APPLIED] Wallpaper profile label removed.\n"));
    EXPECT_EQ(workFiles(), QStringList());
}

// ---- A full disk

TEST_F(RehearsalWallpaper, noPictureIsLostOnAFullDisk) {
    const struct {
        rlim_t bytes;
        QByteArray displays; ///< how many get their label
        qsizetype filesAfterwards;
    } cases[] = {{2'000, "", 0},     // the copies of the pictures can't be written
                 {20'000, "", 3},    // the labelled pictures can't
                 {100'000, "1", 4}}; // the larger one of them can't
    for (const auto& [bytes, displays, files] : cases) {
        SCOPED_TRACE(bytes);
        const Ending full = rehearse({u"overlay"_s, u"Live"_s}, bytes);
        EXPECT_EQ(full.status, 1);
        EXPECT_EQ(full.error, QByteArray());
        EXPECT_EQ(full.output.contains("on 1 display(s)"), !displays.isEmpty()) << full.output.toStdString();
        EXPECT_TRUE(full.output.contains("Booth Monitor: no label. The labelled picture could not be saved.\n"));
        EXPECT_TRUE(full.output.contains("  [ERROR] Could not save composited wallpaper for display-3.\n"));
        EXPECT_TRUE(full.output.contains("Booth Monitor: /Users/mika/Pictures/Dunes.jpg\n"));
        EXPECT_EQ(workFiles().size(), files) << workFiles().join(u' ').toStdString();
        const Ending off = rehearse({u"overlay"_s, u"--off"_s}, bytes);
        EXPECT_EQ(off.status, 0);
        EXPECT_TRUE(off.output.endsWith("Color LCD: /Users/mika/Pictures/Stage.jpg\n"
                                        "Booth Monitor: /Users/mika/Pictures/Dunes.jpg\n"));
        EXPECT_EQ(workFiles(), QStringList());
    }
}

} // namespace quorvane
