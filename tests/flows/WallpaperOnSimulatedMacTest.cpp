// The label on the displays of a simulated Mac, which tells of every change of a desktop, whoever makes it.

#include "core/UserDefaultKeys.h"
#include "fakes/Pictures.h"
#include "fakes/SimulatedSystem.h"
#include "fakes/WallpaperPorts.h"
#include "platform/Displays.h"
#include "wallpaper/WallpaperProfileOverlay.h"

#include <QCryptographicHash>

namespace quorvane {

namespace {

const QString kWork = u"/Users/mika/Library/Application Support/Quorvane/WallpaperOverlay/"_s;
const QString kStage = u"/Users/mika/Pictures/Stage.jpg"_s;
const QString kDunes = u"/Users/mika/Pictures/Dunes.jpg"_s;

class WallpaperOnSimulatedMac : public SimulatedSystem {
public:
    ~WallpaperOnSimulatedMac() override { QCoro::waitFor(overlay->finished()); }

protected:
    WallpaperOnSimulatedMac()
        : SimulatedSystem(u"dj-laptop"_s) {
        startOverlay();
    }

    void startOverlay() {
        overlay = std::make_unique<WallpaperProfileOverlay>(wallpaperPorts(host->host()));
        overlay->follow(*system);
    }
    void enable(const QString& name) { QCoro::waitFor(overlay->setOverlayEnabled(true, name)); }
    void disable() { QCoro::waitFor(overlay->setOverlayEnabled(false, {})); }

    /// As another program does it: this one hears of it.
    void changeDisplay(int number, const QByteArray& key, const macsim::Json& value) {
        host->mac().state().update("displays", [&](macsim::Json& displays) {
            displays[static_cast<size_t>(number)][key.toStdString()] = value;
        });
    }
    QString shown(int number) const {
        const macsim::Json displays = host->mac().state().read("displays");
        return QString::fromStdString(displays[static_cast<size_t>(number)]["picture"].get<std::string>());
    }
    void waitUntilShown(int number, const QString& path) {
        processEventsUntil([&] { return shown(number) == path && !overlay->isApplyingOverlay(); });
    }
    QImage imageAt(const QString& path) const { return QImage::fromData(volume().read(path)); }
    QStringList workFiles() const { return volume().exists(kWork) ? volume().list(kWork) : QStringList(); }

    std::unique_ptr<WallpaperProfileOverlay> overlay;
};

} // namespace

TEST_F(WallpaperOnSimulatedMac, theWholeMacIsAsBeforeWhenTheLabelIsGone) {
    const macsim::MacPicture before = picture();
    enable(u"Late Night Set"_s);
    EXPECT_EQ(log(), u"  [APPLIED] Wallpaper profile label set to \"Late Night Set\" on 2 display(s).\n"_s);
    EXPECT_EQ(shown(0), kWork + u"composited-display-1-late-night-set-1.jpg"_s);
    EXPECT_EQ(shown(1), kWork + u"composited-display-3-late-night-set-1.jpg"_s);
    EXPECT_EQ(imageAt(shown(0)).size(), QSize(1280, 800));
    EXPECT_EQ(imageAt(shown(1)).size(), QSize(3840, 2160));
    EXPECT_GT(lightest(imageAt(shown(0)).copy(0, 0, 640, 200)), 240) << "white on a dark stage";
    EXPECT_LT(darkest(imageAt(shown(1)), {0, 0, 1900, 300}), 20) << "black on light dunes";
    disable();
    EXPECT_EQ(workFiles(), QStringList());
    QStringList changes = picture().changesSince(before).split(u'\n');
    changes.removeIf([](const QString& line) { return line.startsWith(u"+ state drawnPictures/"_s); });
    EXPECT_EQ(changes.join(u'\n'),
              u"+ /Users/mika/Library/Application Support/Quorvane: folder\n"
              "+ /Users/mika/Library/Application Support/Quorvane/WallpaperOverlay: folder\n"
              "+ /Users/mika/Library/Preferences/com.quorvane.app.plist: file\n"
              "+ /Users/mika/Library/Preferences/com.quorvane.app.plist QuorvaneWallpaperNumber: <string>1</string>\n"
              "+ /Users/mika/Library/Preferences/com.quorvane.app.plist showProfileOnWallpaper: <false/>\n"
              "+ /Users/mika/Library/Preferences/com.quorvane.app.plist wallpaperProfileName: "
              "<string>Default</string>\n"
              "+ /private/var/db/simulator/drawnPictures.json: file\n"
              "+ state displays/0/allowClipping: true\n"
              "+ state displays/0/scaling: 3\n"
              "+ state displays/1/allowClipping: true\n"
              "+ state displays/1/scaling: 3\n"_s);
    EXPECT_EQ(shown(0), kStage);
    EXPECT_EQ(shown(1), kDunes);
}

TEST_F(WallpaperOnSimulatedMac, anAppliedProfileIsNamedAndDefaultTakesTheLabelAway) {
    enable(u"Late Night Set"_s);
    UnifiedProfile profile = exampleProfile(u"live-set"_s);
    ASSERT_TRUE(apply(profile));
    waitUntilShown(0, kWork + u"composited-display-1-live-set-2.jpg"_s);
    EXPECT_EQ(system->logMessages().last(),
              u"  [APPLIED] Wallpaper profile label set to \"Live Set\" on 2 display(s)."_s);
    EXPECT_EQ(host->host().defaults.string(kWallpaperProfileName), u"Live Set"_s);
    QCoro::waitFor(overlay->refreshForProfile(u"Default"_s));
    EXPECT_EQ(shown(1), kDunes);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperOnSimulatedMac, aRefusedApplyLeavesTheLabel) {
    enable(u"Late Night Set"_s);
    authorization.setAnswer(macsim::Authorization::Cancel);
    EXPECT_FALSE(apply(exampleProfile(u"live-set"_s)));
    QCoro::waitFor(overlay->finished());
    EXPECT_EQ(shown(0), kWork + u"composited-display-1-late-night-set-1.jpg"_s);
}

TEST_F(WallpaperOnSimulatedMac, aPictureThatIsChosenByHandIsLabelledAndComesBack) {
    enable(u"Live"_s);
    changeDisplay(0, "picture", kDunes.toStdString());
    waitUntilShown(0, kWork + u"composited-display-1-live-2.jpg"_s);
    EXPECT_LT(darkest(imageAt(shown(0)), {0, 0, 640, 150}), 20) << "black on light dunes";
    disable();
    EXPECT_EQ(shown(0), kDunes);
}

TEST_F(WallpaperOnSimulatedMac, aHeicPictureIsLabelledAndComesBack) {
    const QString heic = u"/System/Library/CoreServices/DefaultDesktop.heic"_s;
    changeDisplay(0, "picture", heic.toStdString());
    enable(u"Live"_s);
    EXPECT_EQ(shown(0), kWork + u"composited-display-1-live-1.jpg"_s);
    EXPECT_NEAR(imageAt(shown(0)).pixelColor(1200, 10).blue(), 0xf5, 8) << "the sky of the picture";
    disable();
    EXPECT_EQ(shown(0), heic);
}

TEST_F(WallpaperOnSimulatedMac, ofTwoNamesWithOneSlugTheOneOfNowIsDrawn) {
    const auto isDrawnAsItIs = [this](int number) {
        const QString path = shown(number);
        const QByteArray digest = QCryptographicHash::hash(volume().read(path), QCryptographicHash::Sha256).toHex();
        return host->mac().state().read("drawnPictures").at(path.toStdString()).get<std::string>() ==
               digest.toStdString();
    };
    for (int round = 0; round < 2; ++round) {
        for (const QString& name : {u"Show 1"_s, u"Show (1)"_s}) {
            enable(name);
            EXPECT_TRUE(isDrawnAsItIs(0)) << name.toStdString() << round;
            EXPECT_TRUE(isDrawnAsItIs(1)) << name.toStdString() << round;
        }
        changeDisplay(0, "frame", {0, 0, 1440 - round, 900});
        waitUntilShown(0, kWork + u"composited-display-1-show-1-%1.jpg"_s.arg(3 * round + 3));
        EXPECT_TRUE(isDrawnAsItIs(0)) << round;
    }
}

TEST_F(WallpaperOnSimulatedMac, anAnimatedPictureComesBackAsAStillOne) {
    const QString standIn = u"/System/Library/CoreServices/DefaultDesktop.heic"_s;
    changeDisplay(0, "animation", "Sonoma Horizon");
    EXPECT_TRUE(overlay->hasAnimatedPicture());
    host->host().defaults.setBoolean(kShowProfileOnWallpaper, true);
    QCoro::waitFor(overlay->updateForAppliedProfile(u"Live"_s));
    EXPECT_TRUE(host->mac().state().read("displays")[0].contains("animation")) << "nobody was asked";
    enable(u"Live"_s);
    EXPECT_TRUE(shown(0).startsWith(kWork));
    disable();
    EXPECT_EQ(shown(0), standIn);
    EXPECT_FALSE(host->mac().state().read("displays")[0].contains("animation"));
    EXPECT_FALSE(overlay->hasAnimatedPicture());
}

TEST_F(WallpaperOnSimulatedMac, eachSpaceIsLabelledWhenItIsVisited) {
    const auto visit = [this](int space) {
        host->mac().state().update("spaces", [space](macsim::Json& state) { state = {{"visible", space}}; });
    };
    const auto shownOnSecond = [this] {
        const macsim::Json displays = host->mac().state().read("displays");
        return QString::fromStdString(displays[0]["spaces"]["2"]["picture"].get<std::string>());
    };
    changeDisplay(0, "spaces", {{"2", {{"picture", kDunes.toStdString()}}}});
    changeDisplay(1, "spaces", {{"2", {{"picture", kStage.toStdString()}}}});
    enable(u"Live"_s);
    EXPECT_EQ(shownOnSecond(), kDunes) << "nothing can change it from here";
    visit(2);
    processEventsUntil([&] { return shownOnSecond().startsWith(kWork) && !overlay->isApplyingOverlay(); });
    disable();
    EXPECT_EQ(shownOnSecond(), kDunes);
    EXPECT_TRUE(shown(0).startsWith(kWork)) << "nor from here";
    visit(1);
    waitUntilShown(0, kStage);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperOnSimulatedMac, aDisplayThatWasUnpluggedGetsItsPictureBack) {
    enable(u"Live"_s);
    changeDisplay(1, "isConnected", false);
    disable();
    EXPECT_EQ(workFiles(), (QStringList{u"composited-display-3-live-1.jpg"_s, u"original-display-3.jpg"_s,
                                        u"wallpaper-originals.json"_s}));
    changeDisplay(1, "isConnected", true);
    waitUntilShown(1, kDunes);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperOnSimulatedMac, aDisplayThatCameBackMeanwhileIsRestoredAtTheStart) {
    enable(u"Live"_s);
    changeDisplay(1, "isConnected", false);
    disable();
    overlay.reset();
    start();
    changeDisplay(1, "isConnected", true);
    startOverlay();
    QCoro::waitFor(overlay->updateAtStart({}));
    EXPECT_EQ(shown(1), kDunes);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperOnSimulatedMac, aProjectorWithTheMonitorsNumberLeavesItsPictureAlone) {
    enable(u"Live"_s);
    changeDisplay(1, "isConnected", false);
    host->mac().state().update("displays", [](macsim::Json& displays) {
        displays.push_back({{"number", 3},
                            {"localizedName", "Projector"},
                            {"frame", {1280, 0, 1024, 768}},
                            {"picture", kStage.toStdString()}});
    });
    waitUntilShown(2, kWork + u"composited-display-3-live-2.jpg"_s);
    changeDisplay(2, "isConnected", false);
    changeDisplay(1, "isConnected", true);
    QCoro::waitFor(overlay->finished());
    disable();
    EXPECT_EQ(shown(1), kDunes);
    changeDisplay(1, "isConnected", false);
    changeDisplay(2, "isConnected", true);
    waitUntilShown(2, kStage);
    EXPECT_EQ(workFiles(), QStringList());
}

TEST_F(WallpaperOnSimulatedMac, aPictureOf6016By6016IsLabelled) {
    volume().write(kStage, pngFile(plainPicture({6016, 6016}, Qt::darkBlue)));
    enable(u"Live"_s);
    EXPECT_EQ(shown(0), kWork + u"composited-display-1-live-1.jpg"_s);
    EXPECT_EQ(imageAt(kWork + u"original-display-1.jpg"_s).size(), QSize(6016, 6016));
    disable();
    EXPECT_EQ(shown(0), kStage);
}

TEST_F(WallpaperOnSimulatedMac, aDisplayThatRefusesIsNotTriedForEver) {
    changeDisplay(0, "settingFails", "The picture could not be set.");
    enable(u"Live"_s);
    const QStringList afterwards = system->logMessages();
    changeDisplay(1, "lastSeen", "now"); // a notification that changes no picture
    changeDisplay(1, "lastSeen", "then");
    QCoro::waitFor(overlay->finished());
    EXPECT_EQ(system->logMessages(), afterwards);
    EXPECT_TRUE(afterwards.contains(u"  [ERROR] Could not set desktop wallpaper for display-1."_s));
    EXPECT_EQ(shown(0), kStage);
    EXPECT_EQ(shown(1), kWork + u"composited-display-3-live-1.jpg"_s);
}

} // namespace quorvane
