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
public:
    ~AppLock() override;

protected:
    AppLock();

    /// Starts the program anew with the same keychain and preferences.
    void start();
    void enable(const QString& password = kPassword);
    void enableAndUnlock(const QString& password = kPassword);
    void makeBiometricsUsable();

    /// "off", "locked" or "unlocked"; anything else can't be.
    QString state() const;
    QStringList takeTrace();
    bool unlockWithFinger();
    std::optional<QString> authenticate(const QString& reason = u"Verify"_s);
    bool isAllowed(const QString& action);
    std::optional<QByteArray> passwordItem() const;
    std::optional<QByteArray> biometricItem() const;

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
    void changed(const QString& field);
    std::optional<QByteArray> itemData(const QPair<QString, QString>& name) const;
};

} // namespace quorvane
