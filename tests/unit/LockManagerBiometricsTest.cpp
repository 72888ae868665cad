// The app lock with a finger, also where the prompt stands open while something else happens.

#include "fakes/AppLock.h"

namespace quorvane {

namespace {

using Finger = MemoryKeychain::Finger;

class LockManagerBiometricsTest : public AppLock {
protected:
    LockManagerBiometricsTest() { makeBiometricsUsable(); }

    /// The program is locked, and its prompt for a finger stands open.
    QCoro::Task<bool> openUnlockPrompt() {
        enable();
        keychain.finger = Finger::Held;
        QCoro::Task<bool> unlock = lock->unlockWithBiometrics();
        EXPECT_FALSE(unlock.isReady());
        return unlock;
    }
};

} // namespace

TEST_F(LockManagerBiometricsTest, theItemHoldsThePasswordItselfAndIsBoundToTheFingers) {
    enable(u"Bühne"_s);
    EXPECT_EQ(biometricItem(), "B\xc3\xbchne");
    EXPECT_TRUE(keychain.items.value(kBiometricItem).isBiometric);
    EXPECT_TRUE(lock->supportsBiometric());
    EXPECT_EQ(lock->biometryType(), BiometryType::TouchId);
    EXPECT_EQ(keychain.reasons, QStringList()) << "nobody is asked for it";
}

TEST_F(LockManagerBiometricsTest, withoutTheItemOrTheMeansThereIsNoShortcut) {
    EXPECT_FALSE(lock->supportsBiometric()) << "no item yet";
    enable();
    biometrics.isUsable = false;
    EXPECT_FALSE(lock->supportsBiometric()) << "the lid is closed";
}

TEST_F(LockManagerBiometricsTest, anItemThatIsRefusedLeavesTheTypedPassword) {
    keychain.refusesBiometricItems = true;
    EXPECT_EQ(lock->enableLock(kPassword, kPassword), std::nullopt);
    EXPECT_EQ(biometricItem(), std::nullopt);
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
    EXPECT_EQ(lock->changePassword(kPassword, kOtherPassword, kOtherPassword), std::nullopt);
    EXPECT_TRUE(lock->unlockWithPassword(kOtherPassword));
}

TEST_F(LockManagerBiometricsTest, aFingerUnlocksAndIsAskedForByName) {
    enable();
    EXPECT_TRUE(unlockWithFinger());
    EXPECT_EQ(keychain.reasons, QStringList(u"Unlock Quorvane"_s));
    EXPECT_EQ(takeTrace(), QStringList(u"isUnlocked: unlocked"_s));
}

TEST_F(LockManagerBiometricsTest, everyPasswordComesBackAsItWasTyped) {
    for (const QString& password :
         {u"\ufeffgig7"_s, u"🎛🎚🎙🎧"_s, u"a\0bc"_s, u" gig7\n"_s, QString(5000, u'x')}) {
        enable(password);
        EXPECT_TRUE(unlockWithFinger()) << password.toStdString();
        ASSERT_EQ(lock->disableLock(password), std::nullopt);
    }
}

TEST_F(LockManagerBiometricsTest, aRefusedOrCancelledFingerChangesNothing) {
    enable();
    keychain.finger = Finger::Refused;
    EXPECT_FALSE(unlockWithFinger());
    EXPECT_EQ(authenticate(), std::nullopt);
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_EQ(state(), u"locked"_s);
    EXPECT_EQ(biometricItem(), kPassword.toUtf8());
}

TEST_F(LockManagerBiometricsTest, nobodyIsAskedWhereThereIsNothingToUnlock) {
    EXPECT_TRUE(unlockWithFinger()) << "the lock is off";
    enableAndUnlock();
    EXPECT_TRUE(unlockWithFinger());
    EXPECT_EQ(keychain.reasons, QStringList());
    EXPECT_EQ(takeTrace(), QStringList());
}

TEST_F(LockManagerBiometricsTest, anItemOfAnOlderPasswordOpensNothing) {
    enable();
    biometrics.isUsable = false;
    ASSERT_EQ(lock->changePassword(kPassword, kOtherPassword, kOtherPassword), std::nullopt);
    ASSERT_EQ(biometricItem(), kPassword.toUtf8()) << "out of reach with the lid closed";
    biometrics.isUsable = true;
    EXPECT_FALSE(unlockWithFinger());
    EXPECT_EQ(state(), u"locked"_s);
    EXPECT_TRUE(lock->unlockWithPassword(kOtherPassword));
    EXPECT_EQ(biometricItem(), kOtherPassword.toUtf8());
}

TEST_F(LockManagerBiometricsTest, aReleasedItemOpensNothingWithoutTheStoredPassword) {
    enable();
    keychain.items.remove(kPasswordItem);
    EXPECT_FALSE(unlockWithFinger());
    EXPECT_EQ(state(), u"locked"_s);
    EXPECT_EQ(keychain.reasons.size(), 1);
}

TEST_F(LockManagerBiometricsTest, whatIsNoTextOpensNothing) {
    enable(u"gig7\ufffd"_s);
    keychain.items[kBiometricItem].data = "gig7\xff";
    EXPECT_FALSE(unlockWithFinger());
    EXPECT_EQ(authenticate(), std::nullopt);
    keychain.items[kBiometricItem].data = {};
    EXPECT_FALSE(unlockWithFinger());
    EXPECT_EQ(state(), u"locked"_s);
}

TEST_F(LockManagerBiometricsTest, otherFingersOpenNothingUntilThePasswordIsTyped) {
    enable();
    keychain.enrolment = 1;
    EXPECT_FALSE(unlockWithFinger());
    EXPECT_EQ(state(), u"locked"_s);
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
    lock->lockIfEnabled();
    EXPECT_TRUE(unlockWithFinger()) << "the item was made anew for the fingers of now";
}

TEST_F(LockManagerBiometricsTest, withOtherFingersThePasscodeStillOpens) {
    enable();
    keychain.enrolment = 1;
    keychain.finger = MemoryKeychain::Finger::PasscodeInstead;
    EXPECT_TRUE(unlockWithFinger());
    keychain.finger = MemoryKeychain::Finger::Accepted;
    lock->lockIfEnabled();
    EXPECT_TRUE(unlockWithFinger()) << "the item was made anew for the fingers of now";
}

TEST_F(LockManagerBiometricsTest, aLostItemComesBackWithTheNextTypedPasswordAlone) {
    enable();
    keychain.items.remove(kBiometricItem);
    EXPECT_FALSE(lock->unlockWithPassword(kOtherPassword));
    EXPECT_EQ(biometricItem(), std::nullopt);
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
    EXPECT_EQ(biometricItem(), kPassword.toUtf8());
}

TEST_F(LockManagerBiometricsTest, withoutTheMeansNoItemIsWritten) {
    biometrics.isUsable = false;
    enableAndUnlock();
    ASSERT_EQ(lock->changePassword(kPassword, kOtherPassword, kOtherPassword), std::nullopt);
    EXPECT_EQ(biometricItem(), std::nullopt);
}

TEST_F(LockManagerBiometricsTest, aChangedPasswordIsTheOneThatTheFingerReleases) {
    enableAndUnlock();
    ASSERT_EQ(lock->changePassword(kPassword, kOtherPassword, kOtherPassword), std::nullopt);
    EXPECT_EQ(biometricItem(), kOtherPassword.toUtf8());
    lock->lockIfEnabled();
    EXPECT_TRUE(unlockWithFinger());
}

TEST_F(LockManagerBiometricsTest, aFingerStandsInForTheCurrentPassword) {
    enableAndUnlock();
    EXPECT_EQ(authenticate(u"Verify your identity to remove app lock"_s), kPassword);
    EXPECT_EQ(keychain.reasons, QStringList(u"Verify your identity to remove app lock"_s));
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_EQ(state(), u"unlocked"_s);
}

TEST_F(LockManagerBiometricsTest, authenticatingDoesNotUnlock) {
    enable();
    EXPECT_EQ(authenticate(), kPassword);
    EXPECT_EQ(state(), u"locked"_s);
}

TEST_F(LockManagerBiometricsTest, nobodyIsAskedToAuthenticateWithoutAnItemTheMeansOrALock) {
    EXPECT_EQ(authenticate(), std::nullopt) << "off";
    enableAndUnlock();
    biometrics.isUsable = false;
    EXPECT_EQ(authenticate(), std::nullopt) << "the lid is closed";
    biometrics.isUsable = true;
    keychain.items.remove(kBiometricItem);
    EXPECT_EQ(authenticate(), std::nullopt) << "no item";
    keychain.items.insert(kBiometricItem, {kPassword.toUtf8(), true, 0});
    defaults.values.insert(kEnabledKey, false);
    start();
    EXPECT_EQ(authenticate(), std::nullopt) << "an item that was left behind";
    EXPECT_EQ(keychain.reasons, QStringList());
}

TEST_F(LockManagerBiometricsTest, aFingerAfterTheLockWasTakenOffLeavesNothingBehind) {
    QCoro::Task<bool> unlock = openUnlockPrompt();
    ASSERT_EQ(lock->disableLock(kPassword), std::nullopt);
    trace.clear();
    keychain.answerHeld(true);
    EXPECT_TRUE(QCoro::waitFor(unlock)) << "off is unlocked";
    EXPECT_TRUE(keychain.items.isEmpty());
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_EQ(state(), u"off"_s);
}

TEST_F(LockManagerBiometricsTest, aFingerReleasesNothingOfALockThatWasTakenOff) {
    enableAndUnlock();
    keychain.finger = Finger::Held;
    auto authentication = lock->authenticateWithBiometrics(u"Verify"_s);
    ASSERT_EQ(lock->disableLock(kPassword), std::nullopt);
    keychain.answerHeld(true);
    EXPECT_EQ(QCoro::waitFor(authentication), std::nullopt);
}

TEST_F(LockManagerBiometricsTest, aFingerForAPasswordThatWasChangedMeanwhileOpensNothing) {
    QCoro::Task<bool> unlock = openUnlockPrompt();
    ASSERT_EQ(lock->changePassword(kPassword, kOtherPassword, kOtherPassword), std::nullopt);
    keychain.answerHeld(true);
    EXPECT_FALSE(QCoro::waitFor(unlock));
    EXPECT_EQ(state(), u"locked"_s);
    EXPECT_EQ(biometricItem(), kOtherPassword.toUtf8());
}

TEST_F(LockManagerBiometricsTest, aFingerForAnEarlierLockOpensNoNewOne) {
    QCoro::Task<bool> unlock = openUnlockPrompt();
    ASSERT_EQ(lock->disableLock(kPassword), std::nullopt);
    enable(kOtherPassword);
    keychain.answerHeld(true);
    EXPECT_FALSE(QCoro::waitFor(unlock));
    EXPECT_EQ(state(), u"locked"_s);
}

TEST_F(LockManagerBiometricsTest, typingGoesAheadOfAnOpenPrompt) {
    for (const bool isAccepted : {false, true}) {
        QCoro::Task<bool> unlock = openUnlockPrompt();
        ASSERT_TRUE(lock->unlockWithPassword(kPassword));
        EXPECT_EQ(takeTrace(), QStringList(u"isUnlocked: unlocked"_s));
        keychain.answerHeld(isAccepted);
        EXPECT_TRUE(QCoro::waitFor(unlock));
        EXPECT_EQ(takeTrace(), QStringList());
        ASSERT_EQ(lock->disableLock(kPassword), std::nullopt);
    }
}

TEST_F(LockManagerBiometricsTest, aRefusedFingerDoesNotUndoALockThatCameMeanwhile) {
    QCoro::Task<bool> unlock = openUnlockPrompt();
    ASSERT_TRUE(lock->unlockWithPassword(kPassword));
    lock->applicationWillResignActive();
    keychain.answerHeld(false);
    EXPECT_FALSE(QCoro::waitFor(unlock));
    EXPECT_EQ(state(), u"locked"_s);
}

TEST_F(LockManagerBiometricsTest, theGateStaysClosedWhileThePromptStandsOpen) {
    QCoro::Task<bool> unlock = openUnlockPrompt();
    EXPECT_FALSE(isAllowed(u"switch profiles"_s));
    keychain.answerHeld(true);
    EXPECT_TRUE(QCoro::waitFor(unlock));
    EXPECT_TRUE(isAllowed(u"switch profiles"_s));
}

TEST_F(LockManagerBiometricsTest, twoUnlocksAtOnceUnlockOnce) {
    QCoro::Task<bool> first = openUnlockPrompt();
    QCoro::Task<bool> second = lock->unlockWithBiometrics();
    keychain.answerHeld(true);
    EXPECT_TRUE(QCoro::waitFor(first));
    EXPECT_TRUE(QCoro::waitFor(second));
    EXPECT_EQ(takeTrace(), QStringList(u"isUnlocked: unlocked"_s));
    EXPECT_EQ(state(), u"unlocked"_s);
}

TEST_F(LockManagerBiometricsTest, twoRefusedFingersLeaveTheProgramLocked) {
    QCoro::Task<bool> first = openUnlockPrompt();
    QCoro::Task<bool> second = lock->unlockWithBiometrics();
    keychain.answerHeld(false);
    EXPECT_FALSE(QCoro::waitFor(first));
    EXPECT_FALSE(QCoro::waitFor(second));
    EXPECT_EQ(state(), u"locked"_s);
}

TEST_F(LockManagerBiometricsTest, aQuitEndsTheOpenPromptAndUnlocksNothing) {
    QCoro::Task<bool> unlock = openUnlockPrompt();
    keychain.shutDown();
    EXPECT_FALSE(QCoro::waitFor(unlock));
    EXPECT_FALSE(unlockWithFinger());
    EXPECT_EQ(keychain.reasons.size(), 1) << "nobody is asked any more";
    EXPECT_EQ(state(), u"locked"_s);
}

} // namespace quorvane
