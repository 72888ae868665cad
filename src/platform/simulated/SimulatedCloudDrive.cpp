#include "platform/simulated/SimulatedCloudDrive.h"

#include "platform/FileManager.h"
#include "simulator/MacPaths.h"

#include <stdexcept>
#include <string>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using macsim::Json;

constexpr const char* kCloudSubject = "cloud";

bool isOn(const Json& cloud, const char* key) {
    return cloud.is_object() && cloud.value(key, false);
}

Json waitingFiles(const Json& cloud) {
    return cloud.is_object() ? cloud.value("files", Json::object()) : Json::object();
}

/// The file that waits to be downloaded to a path; null when none does.
Json waitingFile(const Json& cloud, const QString& path) {
    return waitingFiles(cloud).value(path.toStdString(), Json());
}

bool isRequested(const Json& file) {
    return file.is_object() && file.value("isRequested", false);
}

/// How often it is still to be looked for in vain; none when it never comes.
std::optional<int> looksLeft(const Json& file) {
    const Json looks = file.value("looks", Json());
    return looks.is_number_integer() ? std::optional(looks.get<int>()) : std::nullopt;
}

} // namespace

QString SimulatedCloudDrive::folderOfContainer() const {
    return m_mac.homeFolder(macsim::Actor::User) + u"/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app"_s;
}

bool SimulatedCloudDrive::hasContainer() const {
    const Json cloud = m_mac.state().read(kCloudSubject);
    return isOn(cloud, "account") && isOn(cloud, "container");
}

bool SimulatedCloudDrive::isInContainer(const QString& path) const {
    return path.startsWith(folderOfContainer() + u'/') && hasContainer();
}

bool SimulatedCloudDrive::hasAccount() const {
    return isOn(m_mac.state().read(kCloudSubject), "account");
}

QFuture<std::optional<QString>> SimulatedCloudDrive::containerFolder() {
    std::optional<QString> folder;
    if (!m_isShutDown && hasContainer()) {
        try {
            m_mac.volume(macsim::Actor::User).createFolders(folderOfContainer());
            folder = folderOfContainer();
        } catch (const macsim::FileError&) {
            folder.reset(); // there is no container without its folder
        }
    }
    return QtFuture::makeReadyFuture(folder);
}

QStringList SimulatedCloudDrive::list(const QString& folder) const {
    QStringList names = m_files.list(folder);
    if (!isInContainer(folder + u'/')) {
        return names;
    }
    const Json waiting = waitingFiles(m_mac.state().read(kCloudSubject));
    for (const auto& [key, file] : waiting.items()) {
        const QString path = QString::fromStdString(key);
        const QString name = macsim::lastPathComponent(path);
        if (macsim::parentFolder(path) == folder && !names.contains(name)) {
            names.append(name);
        }
    }
    return names;
}

std::optional<QDateTime> SimulatedCloudDrive::modificationDate(const QString& path) const {
    if (!isUbiquitous(path)) {
        return std::nullopt;
    }
    const Json file = waitingFile(m_mac.state().read(kCloudSubject), path);
    if (file.contains("modified")) {
        const QDateTime date =
            QDateTime::fromString(QString::fromStdString(file.at("modified").get<std::string>()), Qt::ISODate);
        return date.isValid() ? std::optional(date) : std::nullopt;
    }
    try {
        return m_mac.volume(macsim::Actor::User).modificationTime(path).toUTC();
    } catch (const macsim::FileError&) {
        return std::nullopt; // only iCloud has it, and doesn't say
    }
}

bool SimulatedCloudDrive::isUbiquitous(const QString& path) const {
    return isInContainer(path) &&
           (m_files.exists(path) || !waitingFile(m_mac.state().read(kCloudSubject), path).is_null());
}

void SimulatedCloudDrive::startDownloading(const QString& path) {
    change([&](Json& cloud) {
        if (!waitingFile(cloud, path).is_null()) {
            cloud["files"][path.toStdString()]["isRequested"] = true;
        }
    });
}

bool SimulatedCloudDrive::isCurrent(const QString& path) const {
    if (!isUbiquitous(path)) {
        return false;
    }
    bool isOnDisk = true;
    const bool isRemembered = change([&](Json& cloud) {
        const Json file = waitingFile(cloud, path);
        if (file.is_null()) {
            return;
        }
        const std::optional<int> looks = isRequested(file) ? looksLeft(file) : std::nullopt;
        const QByteArray bytes = QByteArray::fromStdString(file.at("text").get<std::string>());
        isOnDisk = looks && *looks <= 0 && putOnDisk(path, bytes);
        if (isOnDisk) {
            cloud["files"].erase(path.toStdString());
        } else if (looks && *looks > 0) {
            cloud["files"][path.toStdString()]["looks"] = *looks - 1;
        }
    });
    return isOnDisk && isRemembered;
}

/// False where the state can't be written.
bool SimulatedCloudDrive::change(const std::function<void(Json&)>& change) const {
    try {
        m_mac.state().update(kCloudSubject, change);
        return true;
    } catch (const std::runtime_error&) {
        return false;
    }
}

/// Why nothing can be written or removed there now; none when it can.
std::optional<QString> SimulatedCloudDrive::refusal(const QString& path) const {
    if (m_isShutDown) {
        return u"The program is quitting."_s;
    }
    const Json cloud = m_mac.state().read(kCloudSubject);
    if (cloud.is_object() && cloud.contains("writesFail")) {
        return QString::fromStdString(cloud.at("writesFail").get<std::string>());
    }
    return isInContainer(path) ? std::nullopt : std::optional(u"The iCloud container isn’t there any more."_s);
}

/// What was still to come at a path comes no more. Gives words for a failure.
std::optional<QString> SimulatedCloudDrive::forgetWaiting(const QString& path) {
    if (waitingFile(m_mac.state().read(kCloudSubject), path).is_null()) {
        return std::nullopt;
    }
    const bool isForgotten = change([&](Json& state) { state["files"].erase(path.toStdString()); });
    return isForgotten ? std::nullopt : std::optional(u"iCloud couldn’t take note of the file."_s);
}

/// False for a file that the disk doesn't take: it is still to come.
bool SimulatedCloudDrive::putOnDisk(const QString& path, const QByteArray& bytes) const {
    const macsim::Volume volume = m_mac.volume(macsim::Actor::User);
    try {
        volume.createFolders(macsim::parentFolder(path));
        volume.writeAtomically(path, bytes);
        return true;
    } catch (const macsim::FileError&) {
        return false;
    }
}

bool SimulatedCloudDrive::create(const QString& path, const QByteArray& bytes) {
    return !write(path, bytes);
}

QFuture<std::optional<QString>> SimulatedCloudDrive::replace(const QString& path, const QByteArray& bytes) {
    return QtFuture::makeReadyFuture(write(path, bytes));
}

/// The newest content is then what was written, whatever was still to come.
std::optional<QString> SimulatedCloudDrive::write(const QString& path, const QByteArray& bytes) {
    if (const std::optional<QString> refused = refusal(path)) {
        return refused;
    }
    try {
        m_files.writeAtomically(path, bytes);
    } catch (const FileError& error) {
        return error.message();
    }
    return forgetWaiting(path);
}

QFuture<std::optional<QString>> SimulatedCloudDrive::remove(const QString& path) {
    return QtFuture::makeReadyFuture(erase(path));
}

std::optional<QString> SimulatedCloudDrive::erase(const QString& path) {
    if (const std::optional<QString> refused = refusal(path)) {
        return refused;
    }
    const bool isWaiting = !waitingFile(m_mac.state().read(kCloudSubject), path).is_null();
    if (m_files.exists(path) || !isWaiting) {
        try {
            m_files.remove(path);
        } catch (const FileError& error) {
            return error.message();
        }
    }
    return forgetWaiting(path);
}

} // namespace quorvane
