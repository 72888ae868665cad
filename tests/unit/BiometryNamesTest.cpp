#include "lock/BiometryNames.h"

#include "lock/AppPasswordSheetMode.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(BiometryNames, areThoseOfTheMakerWhereTheMeansIsKnown) {
    EXPECT_EQ(biometryDisplayName(static_cast<BiometryType>(1)), u"Touch ID"_s);
    EXPECT_EQ(biometrySymbolName(static_cast<BiometryType>(1)), u"touchid"_s);
    EXPECT_EQ(biometryDisplayName(static_cast<BiometryType>(4)), u"Optic ID"_s);
    EXPECT_EQ(biometrySymbolName(static_cast<BiometryType>(4)), u"opticid"_s);
    for (const int other : {0, 2, 3, 5}) {
        EXPECT_EQ(biometryDisplayName(static_cast<BiometryType>(other)), u"Biometrics"_s) << other;
        EXPECT_EQ(biometrySymbolName(static_cast<BiometryType>(other)), u"lock.fill"_s) << other;
    }
}

TEST(AppPasswordSheetMode, hasAReasonWhereAFingerCanStandInForTheCurrentPassword) {
    EXPECT_EQ(verificationReason(AppPasswordSheetMode::enable), std::nullopt);
    EXPECT_EQ(verificationReason(AppPasswordSheetMode::change), u"Verify your identity to change the app password"_s);
    EXPECT_EQ(verificationReason(AppPasswordSheetMode::disable), u"Verify your identity to remove app lock"_s);
}

} // namespace quorvane
