#pragma once

#include "platform/Keychain.h"

#include <QList>
#include <QMap>
#include <QPair>
#include <QPromise>
#include <QStringList>

#include <functional>
#include <optional>
#include <utility>
#include <vector>

namespace quorvane {

/// A keychain in memory. Its user puts down his finger at once, unless a test says otherwise.
class MemoryKeychain final : public Keychain {
public:
    struct Item {
        QByteArray data;
        bool isBiometric = false;
        int enrolment = 0; ///< the fingers that it is bound to
    };
    enum class Finger { Accepted, Refused, Held };

    QMap<QPair<QString, QString>, Item> items; ///< by service and account
    bool refusesReading = false;
    bool refusesPasswords = false;
    bool refusesBiometricItems = false;
    bool generatorFails = false;
    int enrolment = 0; ///< another number is another set of fingers
    Finger finger = Finger::Accepted;
    QStringList reasons;            ///< what the user was asked
    std::function<void()> onDelete; ///< called before an item is deleted by itself

    bool setPasswordItem(const QString& service, const QString& account, const QByteArray& data) override {
        if (refusesPasswords)
            return false;
        items.insert({service, account}, {data, false, 0});
        return true;
    }
    std::optional<QByteArray> readPasswordItem(const QString& service, const QString& account) const override {
        const auto item = items.constFind({service, account});
        return !refusesReading && item != items.cend() && !item->isBiometric ? std::optional(item->data) : std::nullopt;
    }
    void deleteKeychainItem(const QString& service, const QString& account) override {
        if (onDelete)
            onDelete();
        items.remove({service, account});
    }
    bool setBiometricItem(const QString& service, const QString& account, const QByteArray& data) override {
        items.remove({service, account});
        if (refusesBiometricItems)
            return false;
        items.insert({service, account}, {data, true, enrolment});
        return true;
    }
    bool keychainItemExists(const QString& service, const QString& account) const override {
        return !refusesReading && items.contains({service, account});
    }
    QFuture<std::optional<QByteArray>> readBiometricProtected(const QString& service, const QString& account,
                                                              const QString& reason) override {
        const auto item = items.constFind({service, account});
        if (m_isShutDown || refusesReading || item == items.cend())
            return QtFuture::makeReadyFuture(std::optional<QByteArray>());
        if (!item->isBiometric)
            return QtFuture::makeReadyFuture(std::optional(item->data));
        if (item->enrolment != enrolment)
            return QtFuture::makeReadyFuture(std::optional<QByteArray>());
        reasons.append(reason);
        if (finger == Finger::Held)
            return heldBack(*item);
        return QtFuture::makeReadyFuture(finger == Finger::Accepted ? std::optional(item->data) : std::nullopt);
    }
    std::optional<QByteArray> randomBytes(int count) const override {
        if (generatorFails)
            return std::nullopt;
        QByteArray bytes(count, '\0');
        for (char& byte : bytes)
            byte = static_cast<char>(m_nextByte++);
        return bytes;
    }
    void shutDown() override {
        m_isShutDown = true;
        answerHeld(false);
    }

    /// Answers the questions that are held back.
    void answerHeld(bool isAccepted) {
        for (auto& [promise, item] : std::exchange(m_held, {})) {
            promise.addResult(isAccepted && item.enrolment == enrolment ? std::optional(item.data) : std::nullopt);
            promise.finish();
        }
    }

private:
    QFuture<std::optional<QByteArray>> heldBack(const Item& item) {
        auto& [promise, kept] = m_held.emplace_back(QPromise<std::optional<QByteArray>>(), item);
        promise.start();
        return promise.future();
    }

    bool m_isShutDown = false;
    mutable unsigned char m_nextByte = 1;
    std::vector<std::pair<QPromise<std::optional<QByteArray>>, Item>> m_held;
};

} // namespace quorvane
