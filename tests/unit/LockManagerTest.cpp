// The app lock with typed passwords: turning it on, changing it, taking it off, and the gate.

#include "fakes/AppLock.h"
#include "fakes/EventLoop.h"

namespace quorvane {

namespace {

class LockManagerTest : public AppLock {
protected:
    static bool isTrue(const QVariant& value) { return value.typeId() == QMetaType::Bool && value.toBool(); }
};

const QString kTooShort = u"Password must be at least 4 characters."_s;
const QString kNewTooShort = u"New password must be at least 4 characters."_s;

} // namespace

TEST_F(LockManagerTest, withNothingStoredTheLockIsOff) {
    EXPECT_EQ(state(), u"off"_s);
    EXPECT_FALSE(lock->isAutoLockSuppressed());
    EXPECT_EQ(defaults.writtenKeys, QStringList()) << "reading writes nothing";
}

TEST_F(LockManagerTest, onlyATruePreferenceTurnsTheLockOnAtTheStart) {
    for (const QVariant& value : {QVariant(false), QVariant(u"true"_s), QVariant(1), QVariant(QStringList(u"1"_s))}) {
        defaults.values.insert(kEnabledKey, value);
        start();
        EXPECT_EQ(state(), u"off"_s) << value.typeName();
    }
    defaults.values.insert(kEnabledKey, true);
    start();
    EXPECT_EQ(state(), u"locked"_s);
}

TEST_F(LockManagerTest, aProgramThatIsQuitWhileUnlockedStartsLocked) {
    enableAndUnlock();
    EXPECT_EQ(state(), u"unlocked"_s);
    start();
    EXPECT_EQ(state(), u"locked"_s);
}

TEST_F(LockManagerTest, aPasswordIsRefusedForItsLengthBeforeItsConfirmation) {
    EXPECT_EQ(lock->enableLock({}, {}), kTooShort);
    EXPECT_EQ(lock->enableLock(u"abc"_s, u"abc"_s), kTooShort);
    EXPECT_EQ(lock->enableLock(u"abc"_s, u"xyz"_s), kTooShort);
    EXPECT_EQ(lock->enableLock(u"🎛🎚🎙"_s, u"🎛🎚🎙"_s), kTooShort) << "twelve bytes, six code units";
    EXPECT_EQ(lock->enableLock(u"abcd"_s, u"abcD"_s), u"Passwords do not match."_s);
    EXPECT_EQ(lock->enableLock(u"abcd"_s, {}), u"Passwords do not match."_s);
    EXPECT_EQ(lock->enableLock(u"caf\u00e9"_s, u"cafe\u0301"_s), u"Passwords do not match."_s)
        << "it could not be typed again with certainty";
    EXPECT_TRUE(keychain.items.isEmpty());
    EXPECT_EQ(defaults.writtenKeys, QStringList());
    EXPECT_EQ(takeTrace(), QStringList());
}

TEST_F(LockManagerTest, fourCharactersAreEnoughWhateverTheyAreMadeOf) {
    for (const QString& password :
         {u"abcd"_s, u"🎛🎚🎙🎧"_s, u"🇩🇪🇫🇷🇯🇵🇧🇷"_s, u"e\u0301a\u0301o\u0301u\u0301"_s}) {
        enable(password);
        EXPECT_TRUE(lock->unlockWithPassword(password)) << password.toStdString();
        EXPECT_EQ(lock->disableLock(password), std::nullopt);
    }
}

TEST_F(LockManagerTest, enablingLocksAtOnceAndTheGateRefuses) {
    EXPECT_EQ(lock->enableLock(kPassword, kPassword), std::nullopt);
    EXPECT_EQ(takeTrace(), QStringList({u"isLockEnabled: locked"_s, u"isUnlocked: locked"_s}))
        << "who hears of the first change finds the second one made";
    EXPECT_TRUE(isTrue(defaults.values.value(kEnabledKey)));
    EXPECT_FALSE(isAllowed(u"switch profiles"_s));
    EXPECT_EQ(takeTrace(), QStringList({u"activate"_s, u"windows to the front"_s,
                                        u"! Quorvane is Locked | "
                                        "Enter your app password in the Quorvane window to switch profiles. | OK"_s}));
}

TEST_F(LockManagerTest, aLockThatIsOnIsNotEnabledAnew) {
    const QString refusal = u"The app lock is already on."_s;
    enable();
    const QByteArray item = passwordItem().value();
    for (const bool isUnlocked : {false, true}) {
        if (isUnlocked) {
            ASSERT_TRUE(lock->unlockWithPassword(kPassword));
        }
        trace.clear();
        EXPECT_EQ(lock->enableLock(kOtherPassword, kOtherPassword), refusal);
        EXPECT_EQ(lock->enableLock(u"abc"_s, u"x"_s), refusal);
        EXPECT_EQ(passwordItem(), item) << "whoever finds the program must not choose a password of their own";
        EXPECT_EQ(takeTrace(), QStringList());
        EXPECT_EQ(lock->isUnlocked(), isUnlocked);
    }
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
}

TEST_F(LockManagerTest, theKeychainGetsTheSaltedDigestAlone) {
    enable();
    EXPECT_EQ(passwordItem(), R"({"salt":"AQIDBAUGBwgJCgsMDQ4PEBESExQVFhcYGRobHB0eHyA=",)"
                              R"("hash":"ac543a7e096d848fca6fa94950a32fe6f65a8e1e84b3d520b478b1e2ddd0118e"})");
    EXPECT_EQ(keychain.items.size(), 1) << "no finger, no item for one";
    EXPECT_FALSE(keychain.items.value(kPasswordItem).isBiometric);
}

TEST_F(LockManagerTest, theSamePasswordStoredTwiceHasTwoHashesAndBothVerify) {
    enable();
    const QByteArray first = passwordItem().value();
    ASSERT_EQ(lock->changePassword(kPassword, kPassword, kPassword), std::nullopt);
    const QByteArray second = passwordItem().value();
    EXPECT_NE(first.mid(first.indexOf("hash")), second.mid(second.indexOf("hash")));
    for (const QByteArray& item : {first, second}) {
        keychain.items[kPasswordItem].data = item;
        EXPECT_TRUE(lock->unlockWithPassword(kPassword)) << item.toStdString();
    }
}

TEST_F(LockManagerTest, whatTheKeychainRefusesToKeepLeavesTheLockOff) {
    keychain.refusesPasswords = true;
    EXPECT_EQ(lock->enableLock(kPassword, kPassword), u"Could not save the password securely."_s);
    keychain.refusesPasswords = false;
    keychain.generatorFails = true;
    EXPECT_EQ(lock->enableLock(kPassword, kPassword), u"Could not save the password securely."_s);
    EXPECT_TRUE(keychain.items.isEmpty());
    EXPECT_EQ(defaults.writtenKeys, QStringList());
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_EQ(state(), u"off"_s);
}

TEST_F(LockManagerTest, theRightPasswordUnlocksAndTellsItOnce) {
    enable();
    EXPECT_FALSE(lock->unlockWithPassword(u"gig8"_s));
    EXPECT_FALSE(lock->unlockWithPassword({}));
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
    EXPECT_EQ(takeTrace(), QStringList(u"isUnlocked: unlocked"_s));
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
    EXPECT_FALSE(lock->unlockWithPassword(u"gig8"_s));
    EXPECT_EQ(takeTrace(), QStringList()) << "a wrong password doesn't lock";
    EXPECT_TRUE(isAllowed(u"switch profiles"_s));
    EXPECT_EQ(takeTrace(), QStringList());
}

TEST_F(LockManagerTest, withTheLockOffTheGateIsOpenAndNobodyIsTold) {
    EXPECT_TRUE(isAllowed(u"switch profiles"_s));
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_EQ(workspace.activations, 0);
    EXPECT_FALSE(lock->unlockWithPassword(kPassword)) << "there is no password";
    EXPECT_EQ(state(), u"off"_s);
}

TEST_F(LockManagerTest, theGateAnswersWhenTheAlertIsClosed) {
    enable();
    alerts.hold();
    auto gate = lock->requireUnlock(u"restore %1 profiles"_s);
    EXPECT_EQ(alerts.openCount(), 1);
    EXPECT_FALSE(gate.isReady());
    EXPECT_TRUE(trace.last().contains(u" to restore %1 profiles. | "_s)) << trace.last().toStdString();
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
    alerts.answer(0);
    EXPECT_FALSE(QCoro::waitFor(gate)) << "it was locked when the action was asked for";
}

TEST_F(LockManagerTest, theRightPasswordTakesTheLockOff) {
    makeBiometricsUsable();
    enable();
    EXPECT_EQ(lock->disableLock(u"gig8"_s), u"Incorrect password."_s);
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_EQ(keychain.items.size(), 2);
    EXPECT_TRUE(isTrue(defaults.values.value(kEnabledKey)));

    EXPECT_EQ(lock->disableLock(kPassword), std::nullopt);
    EXPECT_EQ(takeTrace(), QStringList({u"isLockEnabled: off"_s, u"isUnlocked: off"_s}));
    EXPECT_TRUE(keychain.items.isEmpty());
    EXPECT_FALSE(defaults.values.value(kEnabledKey, true).toBool());
    start();
    EXPECT_EQ(state(), u"off"_s);
}

TEST_F(LockManagerTest, takingTheLockOffWhileUnlockedChangesOneFieldOnly) {
    enableAndUnlock();
    EXPECT_EQ(lock->disableLock(kPassword), std::nullopt);
    EXPECT_EQ(takeTrace(), QStringList(u"isLockEnabled: off"_s));
}

TEST_F(LockManagerTest, thePreferenceIsOffBeforeTheFirstItemGoes) {
    enable();
    int deletions = 0;
    keychain.onDelete = [&] {
        ++deletions;
        EXPECT_FALSE(defaults.boolean(kEnabledKey)) << "a program that dies here would stay locked for good";
    };
    EXPECT_EQ(lock->disableLock(kPassword), std::nullopt);
    EXPECT_EQ(deletions, 2);
}

TEST_F(LockManagerTest, preferencesThatCannotBeWrittenShutNobodyOut) {
    makeBiometricsUsable();
    enable();
    defaults.refusesWrites = true;
    EXPECT_EQ(lock->disableLock(kPassword), std::nullopt);
    EXPECT_EQ(state(), u"off"_s);
    EXPECT_EQ(keychain.items.size(), 2);
    keychain.items.remove(kBiometricItem);
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
    EXPECT_EQ(biometricItem(), std::nullopt) << "the lock is off";

    start();
    EXPECT_EQ(state(), u"locked"_s) << "as the preferences still say";
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
}

TEST_F(LockManagerTest, aQuitTakesTheAlertAwayAndTheGateStaysClosed) {
    enable();
    alerts.hold();
    std::optional<bool> answer;
    const auto ask = [](LockManager& gate, std::optional<bool>& result) -> QCoro::Task<void> {
        result = co_await gate.requireUnlock(u"switch profiles"_s);
    };
    const QCoro::Task<void> task = ask(*lock, answer);
    EXPECT_EQ(answer, std::nullopt);
    alerts.shutDown();
    processEventsUntil([&answer] { return answer.has_value(); });
    EXPECT_EQ(answer, false);
}

TEST_F(LockManagerTest, aChangeIsCheckedStepByStep) {
    enableAndUnlock();
    const QString wrong = u"Current password is incorrect."_s;
    EXPECT_EQ(lock->changePassword({}, u"abc"_s, u"x"_s), wrong);
    EXPECT_EQ(lock->changePassword(u"gig8"_s, kOtherPassword, kOtherPassword), wrong);
    EXPECT_EQ(lock->changePassword(kPassword, u"abc"_s, u"x"_s), kNewTooShort);
    EXPECT_EQ(lock->changePassword(kPassword, u"🎛🎚🎙"_s, u"🎛🎚🎙"_s), kNewTooShort);
    EXPECT_EQ(lock->changePassword(kPassword, kOtherPassword, u"stage Door"_s), u"New passwords do not match."_s);
    keychain.refusesPasswords = true;
    EXPECT_EQ(lock->changePassword(kPassword, kOtherPassword, kOtherPassword), u"Could not save the new password."_s);
    keychain.refusesPasswords = false;
    keychain.generatorFails = true;
    EXPECT_EQ(lock->changePassword(kPassword, kOtherPassword, kOtherPassword), u"Could not save the new password."_s);
    EXPECT_TRUE(lock->unlockWithPassword(kPassword)) << "the old one is still the one";
    EXPECT_FALSE(lock->unlockWithPassword(kOtherPassword));
    EXPECT_EQ(takeTrace(), QStringList());
}

TEST_F(LockManagerTest, aChangedPasswordIsTheOnlyOne) {
    enableAndUnlock();
    EXPECT_EQ(lock->changePassword(kPassword, kOtherPassword, kOtherPassword), std::nullopt);
    EXPECT_EQ(takeTrace(), QStringList()) << "a change neither locks nor unlocks";
    EXPECT_EQ(state(), u"unlocked"_s);
    lock->lockIfEnabled();
    EXPECT_FALSE(lock->unlockWithPassword(kPassword));
    EXPECT_TRUE(lock->unlockWithPassword(kOtherPassword));
}

TEST_F(LockManagerTest, aKeychainThatLostItsItemKeepsTheProgramLocked) {
    enable();
    keychain.items.clear();
    EXPECT_FALSE(lock->unlockWithPassword(kPassword));
    EXPECT_FALSE(lock->unlockWithPassword({}));
    EXPECT_EQ(lock->disableLock(kPassword), u"Incorrect password."_s);
    EXPECT_EQ(lock->changePassword(kPassword, kOtherPassword, kOtherPassword), u"Current password is incorrect."_s);
    EXPECT_EQ(state(), u"locked"_s);
    EXPECT_TRUE(isTrue(defaults.values.value(kEnabledKey)));
}

TEST_F(LockManagerTest, aKeychainThatIsNotReadableNowOpensLater) {
    enable();
    keychain.refusesReading = true;
    EXPECT_FALSE(lock->unlockWithPassword(kPassword));
    EXPECT_EQ(lock->disableLock(kPassword), u"Incorrect password."_s);
    EXPECT_EQ(keychain.items.size(), 1);
    keychain.refusesReading = false;
    EXPECT_TRUE(lock->unlockWithPassword(kPassword));
}

TEST_F(LockManagerTest, noPasswordOpensADamagedItem) {
    enable();
    const QByteArray whole = passwordItem().value();
    const QByteArray emptyPair = R"({"salt":"*","hash":""})";
    for (const QByteArray& damaged : {QByteArray(), QByteArray("garbage"), whole.chopped(1), emptyPair,
                                      QByteArray(whole).replace("hash", "Hash"), QByteArray("\xff\xfe\0", 3)}) {
        keychain.items[kPasswordItem].data = damaged;
        for (const QString& password : {kPassword, u""_s}) {
            EXPECT_FALSE(lock->unlockWithPassword(password)) << damaged.toStdString();
            EXPECT_EQ(lock->disableLock(password), u"Incorrect password."_s);
            EXPECT_EQ(lock->changePassword(password, kOtherPassword, kOtherPassword),
                      u"Current password is incorrect."_s);
        }
        EXPECT_EQ(passwordItem(), damaged);
    }
    EXPECT_EQ(state(), u"locked"_s);
}

TEST_F(LockManagerTest, losingTheActiveStateLocksUnlessADialogOfItsOwnTookIt) {
    enableAndUnlock();
    {
        const auto prompt = lock->suppressAutoLock();
        EXPECT_TRUE(lock->isAutoLockSuppressed());
        lock->applicationWillResignActive();
    }
    EXPECT_FALSE(lock->isAutoLockSuppressed());
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_EQ(state(), u"unlocked"_s);
    lock->applicationWillResignActive();
    EXPECT_EQ(takeTrace(), QStringList(u"isUnlocked: locked"_s));
    lock->applicationWillResignActive();
    EXPECT_EQ(takeTrace(), QStringList());
}

TEST_F(LockManagerTest, aSuppressionThatEndsWhileAnotherProgramIsActiveLocks) {
    enableAndUnlock();
    {
        const auto apply = lock->suppressAutoLock();
        {
            auto prompt = lock->suppressAutoLock();
            const auto moved = std::move(prompt);
            lock->applicationWillResignActive();
            workspace.isActiveNow = false; // the user has gone on to another program meanwhile
        }
        EXPECT_TRUE(lock->isAutoLockSuppressed()) << "the outer one goes on";
        EXPECT_EQ(takeTrace(), QStringList());
    }
    EXPECT_EQ(takeTrace(), QStringList(u"isUnlocked: locked"_s));
}

TEST_F(LockManagerTest, aSuppressionThatEndsWhileNothingIsLockableLocksNothing) {
    workspace.isActiveNow = false;
    { const auto apply = lock->suppressAutoLock(); }
    EXPECT_EQ(state(), u"off"_s);
    EXPECT_EQ(takeTrace(), QStringList());
}

TEST_F(LockManagerTest, aSuppressionEndsHoweverItsScopeIsLeft) {
    enableAndUnlock();
    try {
        [[maybe_unused]] const auto apply = lock->suppressAutoLock();
        throw std::runtime_error("left");
    } catch (const std::runtime_error&) {
    }
    EXPECT_FALSE(lock->isAutoLockSuppressed());
}

TEST_F(LockManagerTest, lockingByHandIsNotSuppressed) {
    enableAndUnlock();
    const auto apply = lock->suppressAutoLock();
    lock->lockIfEnabled();
    EXPECT_EQ(state(), u"locked"_s);
}

TEST_F(LockManagerTest, withTheLockOffNothingLocks) {
    lock->lockIfEnabled();
    lock->applicationWillResignActive();
    EXPECT_EQ(state(), u"off"_s);
    EXPECT_EQ(takeTrace(), QStringList());
    EXPECT_EQ(defaults.writtenKeys, QStringList());
}

} // namespace quorvane
