#include "lock/LockTexts.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(LockTexts, speakOfTheMeansByItsName) {
    EXPECT_EQ(lockScreenText(BiometryType::TouchId), u"Enter your app password or use Touch ID to continue."_s);
    EXPECT_EQ(lockScreenText(BiometryType::FaceId), u"Enter your app password or use Biometrics to continue."_s);
    EXPECT_EQ(unlockWithBiometryText(BiometryType::OpticId), u"Unlock with Optic ID"_s);
    EXPECT_EQ(biometryFailedText(BiometryType::TouchId),
              u"Touch ID could not unlock Quorvane. Enter your password instead."_s);
}

TEST(LockTexts, theSheetSaysWhatItIsFor) {
    EXPECT_EQ(passwordSheetTitle(AppPasswordSheetMode::enable), u"Set App Password"_s);
    EXPECT_EQ(passwordSheetTitle(AppPasswordSheetMode::change), u"Change App Password"_s);
    EXPECT_EQ(passwordSheetTitle(AppPasswordSheetMode::disable), u"Remove App Lock"_s);
    EXPECT_EQ(passwordSheetButton(AppPasswordSheetMode::enable), u"Enable App Lock"_s);
    EXPECT_EQ(passwordSheetButton(AppPasswordSheetMode::change), u"Save Password"_s);
    EXPECT_EQ(passwordSheetButton(AppPasswordSheetMode::disable), u"Remove Lock"_s);
    EXPECT_EQ(useBiometryText(BiometryType::TouchId), u"Use Touch ID"_s);
    EXPECT_EQ(verificationFailedText(BiometryType::OpticId), u"Optic ID verification failed."_s);
}

TEST(LockTexts, offerNoMeansThatCannotOpenTheLock) {
    EXPECT_EQ(lockScreenText({}), u"Enter your app password to continue."_s);
}

} // namespace quorvane
