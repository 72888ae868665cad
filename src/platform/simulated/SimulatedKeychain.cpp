#include "platform/simulated/SimulatedKeychain.h"

#include "platform/simulated/SimulatedBiometrics.h"
#include "simulator/MacPaths.h"

#include <QFile>
#include <QRandomGenerator>

#include <cstdio>
#include <fcntl.h>
#include <string>
#include <unistd.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using macsim::Json;

constexpr int kBiometryOrPasscode = 0x4018;

Json newItem(const QString& service, const QString& account, const QByteArray& data) {
    return {{"service", service.toStdString()},
            {"account", account.toStdString()},
            {"data", data.toBase64().toStdString()}};
}

bool isSameItem(const Json& one, const Json& other) {
    return one.is_object() && one.value("service", Json()) == other.value("service", Json()) &&
           one.value("account", Json()) == other.value("account", Json());
}

/// The items but for one.
Json itemsWithout(const Json& items, const Json& dropped) {
    Json kept = Json::array();
    for (const Json& item : items) {
        if (!isSameItem(item, dropped)) {
            kept.push_back(item);
        }
    }
    return kept;
}

std::optional<QByteArray> dataOf(const Json& item) {
    const Json data = item.value("data", Json());
    return data.is_string() ? std::optional(QByteArray::fromBase64(QByteArray::fromStdString(data.get<std::string>())))
                            : std::nullopt;
}

bool isBiometric(const Json& item) {
    return item.contains("accessControl");
}

/// @param enrolment  the fingers of now
bool opens(BiometricAnswer answer, const Json& item, const QString& enrolment) {
    const bool isOfTheseFingers = item.value("enrolment", Json()) == enrolment.toStdString();
    return answer == BiometricAnswer::Passcode || (answer == BiometricAnswer::Accept && isOfTheseFingers);
}

/// A new file that is its owner's alone from the moment that it is made.
bool writePrivately(const QByteArray& hostPath, const QByteArray& bytes) {
    const int descriptor = ::open(hostPath.constData(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0600);
    QFile file;
    return descriptor >= 0 && file.open(descriptor, QIODevice::WriteOnly, QFile::AutoCloseHandle) &&
           file.write(bytes) == bytes.size() && file.flush();
}

/// What a write that was cut off has left is gone with the next one: passwords are in it.
bool replacePrivately(const QString& hostPath, const QByteArray& bytes) {
    const QByteArray place = QFile::encodeName(hostPath);
    const QByteArray beside = place + ".new";
    ::unlink(beside.constData());
    const bool isReplaced = writePrivately(beside, bytes) && std::rename(beside.constData(), place.constData()) == 0;
    if (!isReplaced) {
        ::unlink(beside.constData());
    }
    return isReplaced;
}

} // namespace

QString SimulatedKeychain::path() const {
    return m_mac.homeFolder(macsim::Actor::User) + u"/Library/Keychains/login.keychain-db"_s;
}

bool SimulatedKeychain::isOn(const char* fault) const {
    const Json state = m_mac.state().read("keychain");
    return state.is_object() && state.value(fault, false);
}

/// The whole keychain; an empty one where there is none yet; none for a file that can't be read or isn't a keychain.
std::optional<Json> SimulatedKeychain::read() const {
    const macsim::Volume disk = m_mac.volume(macsim::Actor::User);
    if (disk.kind(path()) == macsim::Volume::Kind::Missing) {
        return Json{{"items", Json::array()}};
    }
    try {
        const QByteArray bytes = disk.read(path());
        const Json keychain = Json::parse(bytes.cbegin(), bytes.cend(), nullptr, false);
        const bool isKeychain = keychain.is_object() && keychain.value("items", Json()).is_array();
        return isKeychain ? std::optional(keychain) : std::nullopt;
    } catch (const macsim::FileError&) {
        return std::nullopt;
    }
}

bool SimulatedKeychain::write(const Json& keychain) {
    try {
        const macsim::Volume disk = m_mac.volume(macsim::Actor::User);
        disk.createFolders(macsim::parentFolder(path()));
        return replacePrivately(m_mac.hostFolder() + disk.canonicalPath(path()),
                                QByteArray::fromStdString(keychain.dump(1) + '\n'));
    } catch (const macsim::FileError&) {
        return false;
    }
}

std::optional<Json> SimulatedKeychain::item(const QString& service, const QString& account) const {
    const std::optional<Json> keychain = isOn("refusesReading") ? std::nullopt : read();
    const Json wanted = newItem(service, account, {});
    for (const Json& item : keychain ? keychain->at("items") : Json::array()) {
        if (isSameItem(item, wanted)) {
            return item;
        }
    }
    return std::nullopt;
}

bool SimulatedKeychain::put(const Json& item) {
    std::optional<Json> keychain = isOn("refusesWriting") ? std::nullopt : read();
    if (!keychain) {
        return false;
    }
    Json items = itemsWithout(keychain->at("items"), item);
    items.push_back(item);
    (*keychain)["items"] = items;
    return write(*keychain);
}

bool SimulatedKeychain::setPasswordItem(const QString& service, const QString& account, const QByteArray& data) {
    Json item = newItem(service, account, data);
    item["accessible"] = "WhenUnlocked";
    return put(item);
}

std::optional<QByteArray> SimulatedKeychain::readPasswordItem(const QString& service, const QString& account) const {
    const std::optional<Json> found = item(service, account);
    return found && !isBiometric(*found) ? dataOf(*found) : std::nullopt;
}

void SimulatedKeychain::deleteKeychainItem(const QString& service, const QString& account) {
    std::optional<Json> keychain = isOn("refusesWriting") ? std::nullopt : read();
    if (keychain) {
        const Json items = keychain->at("items");
        (*keychain)["items"] = itemsWithout(items, newItem(service, account, {}));
        if (keychain->at("items") != items) {
            write(*keychain);
        }
    }
}

bool SimulatedKeychain::setBiometricItem(const QString& service, const QString& account, const QByteArray& data) {
    deleteKeychainItem(service, account);
    Json item = newItem(service, account, data);
    item["accessible"] = "WhenUnlockedThisDeviceOnly";
    item["accessControl"] = kBiometryOrPasscode;
    item["enrolment"] = simulatedEnrolment(m_mac).toStdString();
    return put(item);
}

bool SimulatedKeychain::keychainItemExists(const QString& service, const QString& account) const {
    return item(service, account).has_value();
}

QFuture<std::optional<QByteArray>>
SimulatedKeychain::readBiometricProtected(const QString& service, const QString& account, const QString& reason) {
    const std::optional<Json> found = m_isShutDown ? std::nullopt : item(service, account);
    if (!found) {
        return QtFuture::makeReadyFuture(std::optional<QByteArray>());
    }
    if (!isBiometric(*found)) {
        return QtFuture::makeReadyFuture(dataOf(*found));
    }
    return m_prompt.ask(reason).then([&mac = m_mac, item = *found](BiometricAnswer answer) {
        return opens(answer, item, simulatedEnrolment(mac)) ? dataOf(item) : std::nullopt;
    });
}

std::optional<QByteArray> SimulatedKeychain::randomBytes(int count) const {
    if (isOn("generatorFails")) {
        return std::nullopt;
    }
    QByteArray bytes(count, Qt::Uninitialized);
    for (char& byte : bytes) {
        byte = static_cast<char>(QRandomGenerator::system()->bounded(256));
    }
    return bytes;
}

void SimulatedKeychain::shutDown() {
    m_isShutDown = true;
    m_prompt.shutDown();
}

} // namespace quorvane
