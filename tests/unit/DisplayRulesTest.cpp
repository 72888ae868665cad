#include "platform/macos/DisplayRules.h"

#include <gtest/gtest.h>

#include <limits>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr double kFirstHeight = 982;

Display numbered(std::optional<quint32> number, const QString& name = u"Display"_s) {
    return {number, name, QRectF(0, 0, 100, 50), 2};
}

} // namespace

TEST(DisplayRules, theFirstScreenIsAtTheOrigin) {
    EXPECT_EQ(frameFromAbove({0, 0, 1512, kFirstHeight}, kFirstHeight), QRectF(0, 0, 1512, kFirstHeight));
}

TEST(DisplayRules, whatLiesHigherBeginsBeforeIt) {
    const QRectF above = frameFromAbove({-200, kFirstHeight, 1920, 1080}, kFirstHeight);
    EXPECT_EQ(above, QRectF(-200, -1080, 1920, 1080));
    const QRectF below = frameFromAbove({0, -1080, 1920, 1080}, kFirstHeight);
    EXPECT_EQ(below, QRectF(0, kFirstHeight, 1920, 1080));
    const QRectF beside = frameFromAbove({1512, 100, 800, 600}, kFirstHeight);
    EXPECT_EQ(beside, QRectF(1512, 282, 800, 600));
}

TEST(DisplayRules, aDisplayIsFoundByItsNumberWhateverElseHasChanged) {
    Display moved = numbered(2, u"Renamed"_s);
    moved.frame = {5, 5, 10, 10};
    EXPECT_EQ(placeOf(numbered(2), {numbered(1), moved}), 1);
    EXPECT_EQ(placeOf(numbered(3), {numbered(1), numbered(2)}), std::nullopt);
    EXPECT_EQ(placeOf(numbered(3), {}), std::nullopt);
}

TEST(DisplayRules, oneWithoutANumberIsTheOneThatIsEqual) {
    const QList<Display> connected{numbered(1), numbered(std::nullopt, u"Other"_s), numbered(std::nullopt)};
    EXPECT_EQ(placeOf(numbered(std::nullopt), connected), 2);
    EXPECT_EQ(placeOf(numbered(std::nullopt, u"Gone"_s), connected), std::nullopt);
}

TEST(DisplayRules, aPictureIsDecodedInItsOwnSize) {
    EXPECT_EQ(decodedSide(6016, 6016), 6016);
    EXPECT_EQ(decodedSide(1, 3000), 3000);
    EXPECT_EQ(decodedSide(16384, 16384), 16384) << "1 GiB";
}

TEST(DisplayRules, aPictureWithoutASizeOrThatIsTooLargeIsNone) {
    constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();
    constexpr double kInfinite = std::numeric_limits<double>::infinity();
    EXPECT_EQ(decodedSide(16385, 16384), std::nullopt);
    for (const double length : {0.0, -4.0, kNoNumber, kInfinite}) {
        EXPECT_EQ(decodedSide(length, 4), std::nullopt) << length;
        EXPECT_EQ(decodedSide(4, length), std::nullopt) << length;
    }
}

} // namespace quorvane
