#include "wallpaper/WallpaperManifest.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const ScreenWallpaperRecord kBuiltIn{u"display-1"_s, u"/Users/alex/original-display-1.jpg"_s,
                                     u"file:///Users/alex/Stage.heic"_s};
const ScreenWallpaperRecord kUnnumbered{u"Booth \"1\"-0x0-1920x1080"_s, u"/Users/alex/b.jpg"_s, std::nullopt};

} // namespace

TEST(WallpaperManifest, isReadAsItWasWritten) {
    const WallpaperManifest manifest{{kBuiltIn, kUnnumbered}};
    EXPECT_EQ(decodeWallpaperManifest(encodeWallpaperManifest(manifest)), manifest);
    EXPECT_EQ(decodeWallpaperManifest(encodeWallpaperManifest({})), WallpaperManifest{});
}

TEST(WallpaperManifest, hasTheKeysOfItsFormat) {
    EXPECT_EQ(encodeWallpaperManifest({{kBuiltIn, kUnnumbered}}), R"({
  "screens": [
    {
      "screenIdentifier": "display-1",
      "originalImagePath": "/Users/alex/original-display-1.jpg",
      "originalDesktopURL": "file:///Users/alex/Stage.heic"
    },
    {
      "screenIdentifier": "Booth \"1\"-0x0-1920x1080",
      "originalImagePath": "/Users/alex/b.jpg"
    }
  ]
})");
}

TEST(WallpaperManifest, tellsAsWhichFilesAPictureIsShown) {
    const WallpaperManifest manifest{
        {{u"away-1"_s, u"/a"_s, std::nullopt, QStringList(u"composited-display-1-live.jpg"_s), u"Color LCD-1280x800"_s},
         {u"display-1"_s, u"/b"_s, std::nullopt, QStringList(), std::nullopt, true}}};
    EXPECT_EQ(encodeWallpaperManifest(manifest), R"({
  "screens": [
    {
      "screenIdentifier": "away-1",
      "originalImagePath": "/a",
      "shownAs": [
        "composited-display-1-live.jpg"
      ],
      "screen": "Color LCD-1280x800"
    },
    {
      "screenIdentifier": "display-1",
      "originalImagePath": "/b",
      "shownAs": [],
      "mayBeReplaced": true
    }
  ]
})");
    EXPECT_EQ(decodeWallpaperManifest(encodeWallpaperManifest(manifest)), manifest);
}

TEST(WallpaperManifest, thatIsDamagedIsNone) {
    for (const QByteArray& bytes :
         {QByteArray(), QByteArray("{"), QByteArray("[]"), QByteArray("7"), QByteArray("{}"), QByteArray("\xff\xfe"),
          QByteArray(R"({"screens": 7})"), QByteArray(R"({"screens": {"a": 1}})"), QByteArray(R"({"screens": [null]})"),
          QByteArray(R"({"screens": [{"screenIdentifier": "display-1"}]})"),
          QByteArray(R"({"screens": [{"screenIdentifier": 1, "originalImagePath": "/a"}]})"),
          QByteArray(R"({"screens": [{"screenIdentifier": "a", "originalImagePath": "/a", "originalDesktopURL": 1}]})"),
          QByteArray(R"({"screens": [{"screenIdentifier": "a", "originalImagePath": "/a", "shownAs": "b"}]})"),
          QByteArray(R"({"screens": [{"screenIdentifier": "a", "originalImagePath": "/a", "screen": 1}]})"),
          QByteArray(R"({"screens": [{"screenIdentifier": "a", "originalImagePath": "/a", "mayBeReplaced": 1}]})"),
          encodeWallpaperManifest({{kBuiltIn}}).chopped(20)}) {
        EXPECT_EQ(decodeWallpaperManifest(bytes), std::nullopt) << bytes.toStdString();
    }
}

TEST(WallpaperManifest, thatHoldsMoreThanItsKeysIsRead) {
    EXPECT_EQ(decodeWallpaperManifest(R"({"version": 9, "screens": [{"originalDesktopURL": null, "x": [],
        "originalImagePath": "/a", "screenIdentifier": "display-1"}]})"),
              (WallpaperManifest{{{u"display-1"_s, u"/a"_s, std::nullopt}}}));
}

TEST(WallpaperManifest, holdsOneRecordForEachDisplay) {
    WallpaperManifest manifest{{kBuiltIn, kUnnumbered}};
    const ScreenWallpaperRecord newer{u"display-1"_s, u"/newer.jpg"_s, std::nullopt};
    manifest.put(newer);
    EXPECT_EQ(manifest, (WallpaperManifest{{newer, kUnnumbered}}));
    ASSERT_NE(manifest.record(u"display-1"_s), nullptr);
    EXPECT_EQ(*manifest.record(u"display-1"_s), newer);
    EXPECT_EQ(manifest.record(u"display-2"_s), nullptr);
}

} // namespace quorvane
