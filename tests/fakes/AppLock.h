#pragma once

#include "fakes/CountingWorkspace.h"
#include "fakes/FixedBiometrics.h"
#include "fakes/MemoryKeychain.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/ScriptedAlertPresenter.h"
#include "lock/LockManager.h"

#include <QCoroTask>

#include <gtest/gtest.h>

#include <memory>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

/// The app lock over fakes. `trace` holds alerts, what happens to the windows, and each change of the lock's state with the
/// state that it left.
class AppLock : public ::testing::Test {
protected:
    AppLock() { start(); }

    /// Starts the program anew with the same keychain and preferences.
    void start() {
        lock = std::make_unique<LockManager>(keychain, biometrics, alerts, workspace, defaults);
        QObject::connect(lock.get(), &LockManager::isLockEnabledChanged, [this] { changed(u"isLockEnabled"_s); });
        QObject::connect(lock.get(), &LockManager::isUnlockedChanged, [this] { changed(u"isUnlocked"_s); });
        trace.clear();
    }
    void enable(const QString& password = kPassword) {
        ASSERT_EQ(lock->enableLock(password, password), std::nullopt);
        trace.clear();
    }
    void enableAndUnlock(const QString& password = kPassword) {
        enable(password);
        ASSERT_TRUE(lock->unlockWithPassword(password));
        trace.clear();
    }
    void makeBiometricsUsable() {
        biometrics.isUsable = true;
        biometrics.kind = BiometryType::TouchId;
    }

    /// "off", "locked" or "unlocked"; anything else can't be.
    QString state() const {
        if (!lock->isLockEnabled()) {
            return lock->isUnlocked() ? u"off"_s : u"off and locked"_s;
        }
        return lock->isUnlocked() ? u"unlocked"_s : u"locked"_s;
    }
    QStringList takeTrace() { return std::exchange(trace, {}); }
    bool unlockWithFinger() { return QCoro::waitFor(lock->unlockWithBiometrics()); }
    std::optional<QString> authenticate(const QString& reason = u"Verify"_s) {
        return QCoro::waitFor(lock->authenticateWithBiometrics(reason));
    }
    bool isAllowed(const QString& action) { return QCoro::waitFor(lock->requireUnlock(action)); }

    std::optional<QByteArray> passwordItem() const { return itemData(kPasswordItem); }
    std::optional<QByteArray> biometricItem() const { return itemData(kBiometricItem); }

    static inline const QString kPassword = u"gig7"_s;
    static inline const QString kOtherPassword = u"stage door"_s;
    static inline const QPair<QString, QString> kPasswordItem{u"com.quorvane.app-lock"_s, u"password"_s};
    static inline const QPair<QString, QString> kBiometricItem{u"com.quorvane.app-lock.biometric"_s, u"unlock"_s};
    static inline const QString kEnabledKey = u"QuorvaneAppLockEnabled"_s;

    QStringList trace;
    MemoryKeychain keychain;
    FixedBiometrics biometrics;
    ScriptedAlertPresenter alerts{trace};
    CountingWorkspace workspace{trace};
    MemoryUserDefaults defaults;
    std::unique_ptr<LockManager> lock;

private:
    void changed(const QString& field) { trace.append(field + u": "_s + state()); }
    std::optional<QByteArray> itemData(const QPair<QString, QString>& name) const {
        const auto item = keychain.items.constFind(name);
        return item != keychain.items.cend() ? std::optional(item->data) : std::nullopt;
    }
};

} // namespace quorvane
