#include "fakes/MemoryKeychain.h"

namespace quorvane {

bool MemoryKeychain::setPasswordItem(const QString& service, const QString& account, const QByteArray& data) {
    if (refusesPasswords) {
        return false;
    }
    items.insert({service, account}, {data, false, 0});
    return true;
}

std::optional<QByteArray> MemoryKeychain::readPasswordItem(const QString& service, const QString& account) const {
    const auto item = items.constFind({service, account});
    return !refusesReading && item != items.cend() && !item->isBiometric ? std::optional(item->data) : std::nullopt;
}

void MemoryKeychain::deleteKeychainItem(const QString& service, const QString& account) {
    if (onDelete) {
        onDelete();
    }
    items.remove({service, account});
}

bool MemoryKeychain::setBiometricItem(const QString& service, const QString& account, const QByteArray& data) {
    items.remove({service, account});
    if (refusesBiometricItems) {
        return false;
    }
    items.insert({service, account}, {data, true, enrolment});
    return true;
}

bool MemoryKeychain::keychainItemExists(const QString& service, const QString& account) const {
    return !refusesReading && items.contains({service, account});
}

QFuture<std::optional<QByteArray>>
MemoryKeychain::readBiometricProtected(const QString& service, const QString& account, const QString& reason) {
    const auto item = items.constFind({service, account});
    if (m_isShutDown || refusesReading || item == items.cend()) {
        return QtFuture::makeReadyFuture(std::optional<QByteArray>());
    }
    if (!item->isBiometric) {
        return QtFuture::makeReadyFuture(std::optional(item->data));
    }
    reasons.append(reason);
    if (finger == Finger::Held) {
        return heldBack(*item);
    }
    return QtFuture::makeReadyFuture(released(*item, finger));
}

/// No other fingers than those of the time when it was made open an item; the passcode always does.
std::optional<QByteArray> MemoryKeychain::released(const Item& item, Finger answer) const {
    const bool isFingerOfThen = answer == Finger::Accepted && item.enrolment == enrolment;
    return isFingerOfThen || answer == Finger::PasscodeInstead ? std::optional(item.data) : std::nullopt;
}

std::optional<QByteArray> MemoryKeychain::randomBytes(int count) const {
    if (generatorFails) {
        return std::nullopt;
    }
    QByteArray bytes(count, '\0');
    for (char& byte : bytes) {
        byte = static_cast<char>(m_nextByte++);
    }
    return bytes;
}

void MemoryKeychain::shutDown() {
    m_isShutDown = true;
    answerHeld(false);
}

void MemoryKeychain::answerHeld(Finger answer) {
    for (auto& [promise, item] : std::exchange(m_held, {})) {
        promise.addResult(released(item, answer));
        promise.finish();
    }
}

QFuture<std::optional<QByteArray>> MemoryKeychain::heldBack(const Item& item) {
    auto& [promise, kept] = m_held.emplace_back(QPromise<std::optional<QByteArray>>(), item);
    promise.start();
    return promise.future();
}

} // namespace quorvane
