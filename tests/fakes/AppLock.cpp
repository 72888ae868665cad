#include "fakes/AppLock.h"

namespace quorvane {

AppLock::AppLock() {
    start();
}

AppLock::~AppLock() = default;

void AppLock::start() {
    lock = std::make_unique<LockManager>(keychain, biometrics, alerts, workspace, defaults);
    QObject::connect(lock.get(), &LockManager::isLockEnabledChanged, [this] { changed(u"isLockEnabled"_s); });
    QObject::connect(lock.get(), &LockManager::isUnlockedChanged, [this] { changed(u"isUnlocked"_s); });
    trace.clear();
}

void AppLock::enable(const QString& password) {
    ASSERT_EQ(lock->enableLock(password, password), std::nullopt);
    trace.clear();
}

void AppLock::enableAndUnlock(const QString& password) {
    enable(password);
    ASSERT_TRUE(lock->unlockWithPassword(password));
    trace.clear();
}

void AppLock::makeBiometricsUsable() {
    biometrics.isUsable = true;
    biometrics.kind = BiometryType::TouchId;
}

QString AppLock::state() const {
    if (!lock->isLockEnabled()) {
        return lock->isUnlocked() ? u"off"_s : u"off and locked"_s;
    }
    return lock->isUnlocked() ? u"unlocked"_s : u"locked"_s;
}

QStringList AppLock::takeTrace() {
    return std::exchange(trace, {});
}

bool AppLock::unlockWithFinger() {
    return QCoro::waitFor(lock->unlockWithBiometrics());
}

std::optional<QString> AppLock::authenticate(const QString& reason) {
    return QCoro::waitFor(lock->authenticateWithBiometrics(reason));
}

bool AppLock::isAllowed(const QString& action) {
    return QCoro::waitFor(lock->requireUnlock(action));
}

std::optional<QByteArray> AppLock::passwordItem() const {
    return itemData(kPasswordItem);
}

std::optional<QByteArray> AppLock::biometricItem() const {
    return itemData(kBiometricItem);
}

void AppLock::changed(const QString& field) {
    trace.append(field + u": "_s + state());
}

std::optional<QByteArray> AppLock::itemData(const QPair<QString, QString>& name) const {
    const auto item = keychain.items.constFind(name);
    return item != keychain.items.cend() ? std::optional(item->data) : std::nullopt;
}

} // namespace quorvane
