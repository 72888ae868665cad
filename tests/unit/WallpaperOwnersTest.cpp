#include "wallpaper/WallpaperOwners.h"

#include <gtest/gtest.h>

#include <optional>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = ShownWallpaper::Kind;

QString fileOf(int number) {
    return u"composited-display-%1-live.jpg"_s.arg(number);
}

/// Of a display with a picture of its own, which shows it as `files`.
ScreenWallpaperRecord recordOf(const QString& screen, int picture, const QStringList& files) {
    return {screen, u"/work/original-%1.jpg"_s.arg(picture), u"file:///%1.png"_s.arg(picture), files, u"LCD-4x3"_s};
}

ShownWallpaper labelled(int number, const QString& file) {
    return {u"display-%1"_s.arg(number), u"LCD-4x3"_s, Kind::Ours, file};
}

ShownWallpaper chosen(int number, const QString& screen = u"LCD-4x3"_s) {
    return {u"display-%1"_s.arg(number), screen, Kind::Users};
}

const ScreenWallpaperRecord kFirst = recordOf(u"display-1"_s, 1, {fileOf(1)});
const ScreenWallpaperRecord kSecond = recordOf(u"display-2"_s, 2, {fileOf(2)});

} // namespace

TEST(WallpaperOwners, aDisplayKeepsItsRecord) {
    const WallpaperManifest manifest{{kFirst, kSecond}};
    EXPECT_EQ(settledManifest(manifest, {labelled(1, fileOf(1)), labelled(2, fileOf(2))}), manifest);
    EXPECT_EQ(settledManifest({}, {chosen(1)}), WallpaperManifest{});
}

TEST(WallpaperOwners, aRecordGoesWithTheDisplayThatShowsIt) {
    EXPECT_EQ(
        settledManifest({{kFirst, kSecond}}, {labelled(1, fileOf(2)), labelled(2, fileOf(1))}),
        (WallpaperManifest{{recordOf(u"display-2"_s, 1, {fileOf(1)}), recordOf(u"display-1"_s, 2, {fileOf(2)})}}));
    EXPECT_EQ(settledManifest({{kFirst}}, {labelled(7, u"original-1.jpg"_s)}),
              (WallpaperManifest{{recordOf(u"display-7"_s, 1, {u"original-1.jpg"_s})}}));
}

TEST(WallpaperOwners, aRecordThatSeveralShowIsCopied) {
    EXPECT_EQ(settledManifest({{kFirst}}, {labelled(2, fileOf(1)), labelled(1, fileOf(1)), labelled(3, fileOf(1))}),
              (WallpaperManifest{
                  {kFirst, recordOf(u"display-2"_s, 1, {fileOf(1)}), recordOf(u"display-3"_s, 1, {fileOf(1)})}}));
}

TEST(WallpaperOwners, aCopyTakesThePlaceOfTheDisplaysOwnRecord) {
    EXPECT_EQ(settledManifest({{kFirst, kSecond}}, {labelled(1, fileOf(1)), labelled(2, fileOf(1))}),
              (WallpaperManifest{{kFirst, recordOf(u"display-2"_s, 1, {fileOf(1)})}}));
}

TEST(WallpaperOwners, aRecordGoesToTheOneThatStillShowsIt) {
    EXPECT_EQ(settledManifest({{kFirst}}, {chosen(1), labelled(2, fileOf(1))}),
              (WallpaperManifest{{recordOf(u"display-2"_s, 1, {fileOf(1)})}}));
}

TEST(WallpaperOwners, aRecordWhoseDisplayIsAwayFreesItsNumber) {
    const WallpaperManifest away = settledManifest({{kFirst, kSecond}}, {labelled(1, fileOf(1))});
    EXPECT_EQ(away, (WallpaperManifest{{kFirst, recordOf(u"away-1"_s, 2, {fileOf(2)})}}));
    EXPECT_EQ(settledManifest(away, {labelled(1, fileOf(1)), chosen(2)}), away) << "another one has the number now";
    EXPECT_EQ(settledManifest(away, {}),
              (WallpaperManifest{{recordOf(u"away-2"_s, 1, {fileOf(1)}), recordOf(u"away-1"_s, 2, {fileOf(2)})}}));
    EXPECT_EQ(settledManifest(away, {labelled(1, fileOf(1)), labelled(2, fileOf(2))}),
              (WallpaperManifest{{kFirst, kSecond}}));
}

TEST(WallpaperOwners, aPictureOfItsUsersMakesARecordOneThatIsShownNowhere) {
    const WallpaperManifest nowhere = settledManifest({{kFirst}}, {chosen(1)});
    EXPECT_EQ(nowhere, (WallpaperManifest{{recordOf(u"display-1"_s, 1, {})}}));
    EXPECT_EQ(settledManifest(nowhere, {}), WallpaperManifest{}) << "nobody will look for it";
}

TEST(WallpaperOwners, aDisplayOfAnotherMakeOrSizeIsAnother) {
    EXPECT_EQ(settledManifest({{kFirst}}, {chosen(1, u"Projector-4x3"_s)}),
              (WallpaperManifest{{recordOf(u"away-1"_s, 1, {fileOf(1)})}}));
}

TEST(WallpaperOwners, aSpaceThatIsNotVisibleIsLikeADisplayThatIsAway) {
    const WallpaperManifest hidden = settledManifest({{kFirst}}, {chosen(1)}, Spaces::Others);
    EXPECT_EQ(hidden, (WallpaperManifest{{recordOf(u"away-1"_s, 1, {fileOf(1)})}}));
    const ScreenWallpaperRecord ofTheOther = recordOf(u"display-1"_s, 2, {u"composited-display-1-live-2.jpg"_s});
    EXPECT_EQ(settledManifest({{hidden.screens.first(), ofTheOther}}, {labelled(1, fileOf(1))}, Spaces::Others),
              (WallpaperManifest{{kFirst, recordOf(u"away-2"_s, 2, {u"composited-display-1-live-2.jpg"_s})}}));
    EXPECT_EQ(settledManifest({{kFirst}}, {labelled(1, fileOf(1))}, Spaces::Others), (WallpaperManifest{{kFirst}}));
    const ScreenWallpaperRecord shownNowhere = recordOf(u"display-1"_s, 1, {});
    EXPECT_EQ(settledManifest({{shownNowhere}}, {chosen(1)}, Spaces::Others), (WallpaperManifest{{shownNowhere}}))
        << "no Space will look for it";
}

TEST(WallpaperOwners, aRecordThatMayBeReplacedGoesWhenTheSpacesAreTheSame) {
    const WallpaperManifest marked = settledManifest({{kFirst}}, {chosen(1)}, Spaces::Unknown);
    ScreenWallpaperRecord away = recordOf(u"away-1"_s, 1, {fileOf(1)});
    const WallpaperManifest kept{{away}};
    away.mayBeReplaced = true;
    EXPECT_EQ(marked, (WallpaperManifest{{away}}));
    EXPECT_EQ(settledManifest(marked, {chosen(1)}, Spaces::Unknown), marked);
    EXPECT_EQ(settledManifest(marked, {chosen(1)}, Spaces::Others), kept);
    EXPECT_EQ(settledManifest(marked, {chosen(1)}, Spaces::TheSame), WallpaperManifest{});
    EXPECT_EQ(settledManifest(marked, {labelled(1, fileOf(1))}, Spaces::TheSame), (WallpaperManifest{{kFirst}}))
        << "its label is seen";
    EXPECT_EQ(settledManifest({{kFirst}}, {}, Spaces::Unknown), kept) << "its display is away";
}

TEST(WallpaperOwners, aDisplayOfWhichTheSystemSaysNothingKeepsItsRecord) {
    EXPECT_EQ(settledManifest({{kFirst}}, {{u"display-1"_s, u"LCD-4x3"_s}}), (WallpaperManifest{{kFirst}}));
}

TEST(WallpaperOwners, aRecordOfAnEarlierVersionBelongsToItsDisplaysFiles) {
    const ScreenWallpaperRecord earlier{u"display-1"_s, u"/work/original-1.jpg"_s, std::nullopt};
    EXPECT_TRUE(isShownAs(earlier, u"composited-display-1-anything.jpg"_s));
    EXPECT_FALSE(isShownAs(earlier, u"composited-display-12-anything.jpg"_s));
    EXPECT_TRUE(isShownElsewhere({{earlier}}, fileOf(1), u"display-2"_s));
    EXPECT_FALSE(isShownElsewhere({{earlier}}, fileOf(1), u"display-1"_s));
    EXPECT_EQ(
        settledManifest({{earlier}}, {chosen(1)}),
        (WallpaperManifest{{{u"display-1"_s, u"/work/original-1.jpg"_s, std::nullopt, QStringList(), u"LCD-4x3"_s}}}));
}

} // namespace quorvane
