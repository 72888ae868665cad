#include "snapshots/MasterSystemBaselineManager.h"

#include "platform/Clock.h"
#include "platform/CloudDrive.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <chrono>

namespace quorvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kWait = 250ms;
constexpr int kLooksForFile = 12;    // about three seconds
constexpr int kLooksAtDownload = 20; // about five seconds

const QString kCurrentName = u"master-baseline-current.json"_s;

QString currentFile(const QString& folder) {
    return folder + u'/' + kCurrentName;
}

MasterSystemBaselineError writeFailed(const QString& text) {
    return MasterSystemBaselineError(MasterSystemBaselineError::Code::writeFailed, text);
}

QByteArray encoded(const MasterSystemBaseline& baseline) {
    try {
        return encodeMasterBaseline(baseline);
    } catch (const EncodingError& error) {
        throw writeFailed(error.message());
    }
}

} // namespace

MasterSystemBaselineManager::MasterSystemBaselineManager(const Host& host)
    : m_host(host) {}

QString MasterSystemBaselineManager::localFolder() const {
    const QString folder = m_host.machine.homeFolder() + u"/.quorvane"_s;
    try {
        m_host.files.createFolders(folder);
    } catch (const FileError&) {
        // The read or the write that follows tells of it.
    }
    return folder;
}

QCoro::Task<std::optional<QString>> MasterSystemBaselineManager::cloudFolder() {
    if (!m_host.cloud.hasAccount()) {
        co_return std::nullopt;
    }
    const std::optional<QString> container = co_await m_host.cloud.containerFolder();
    if (!container) {
        co_return std::nullopt;
    }
    const QString folder = *container + u"/Documents/Quorvane/SystemBaselines"_s;
    try {
        m_host.files.createFolders(folder);
    } catch (const FileError&) {
        // As above.
    }
    co_return folder;
}

QCoro::Task<bool> MasterSystemBaselineManager::currentFileExists() {
    if (m_host.files.exists(currentFile(localFolder()))) {
        co_return true;
    }
    const std::optional<QString> cloud = co_await cloudFolder();
    const bool existsInCloud = cloud && m_host.files.exists(currentFile(*cloud));
    co_return existsInCloud;
}

QCoro::Task<bool> MasterSystemBaselineManager::hasMasterBaseline() {
    bool exists = co_await currentFileExists();
    for (int look = 0; look < kLooksForFile && !exists; ++look) {
        co_await m_host.clock.sleepFor(kWait);
        exists = co_await currentFileExists();
    }
    co_return exists;
}

QCoro::Task<QString> MasterSystemBaselineManager::archiveMasterBaseline(SystemSnapshot snapshot,
                                                                        std::optional<QString> label) {
    const QString deviceName = baselineDeviceName(m_host.machine.computerName());
    const MasterSystemBaseline baseline = masterBaselineOf(snapshot, deviceName, label);
    const QByteArray bytes = encoded(baseline);
    const QString archiveName = masterBaselineArchiveName(baseline);
    writeToHome(bytes, archiveName);
    if (m_host.cloud.hasAccount()) {
        const std::optional<QString> folder = co_await cloudFolder();
        if (!folder) {
            throw writeFailed(u"iCloud Drive is not available."_s);
        }
        co_await writeToCloud(bytes, *folder + u'/' + archiveName);
        co_await writeToCloud(bytes, currentFile(*folder));
    }
    co_return archiveName;
}

void MasterSystemBaselineManager::writeToHome(const QByteArray& bytes, const QString& archiveName) {
    const QString folder = localFolder();
    try {
        m_host.files.writeAtomically(folder + u'/' + archiveName, bytes);
        m_host.files.writeAtomically(currentFile(folder), bytes);
    } catch (const FileError& error) {
        throw writeFailed(error.message());
    }
}

QCoro::Task<void> MasterSystemBaselineManager::writeToCloud(QByteArray bytes, QString path) {
    if (m_host.files.exists(path)) {
        const std::optional<QString> error = co_await m_host.cloud.replace(path, bytes);
        if (error) {
            throw writeFailed(*error);
        }
    } else if (!m_host.cloud.create(path, bytes)) {
        throw writeFailed(u"Could not create the iCloud baseline file."_s);
    }
}

QCoro::Task<std::optional<MasterSystemBaselineManager::Latest>>
MasterSystemBaselineManager::loadLatestMasterBaseline() {
    const std::optional<QString> cloud = co_await cloudFolder();
    if (cloud) {
        co_await download(currentFile(*cloud));
        if (const auto baseline = baselineIn(*cloud)) {
            co_return Latest{*baseline, BaselinePlace::ICloud};
        }
    }
    if (const auto baseline = baselineIn(localFolder())) {
        co_return Latest{*baseline, BaselinePlace::HomeFolder};
    }
    co_return std::nullopt;
}

/// A file that doesn't arrive in time is no failure: whether it can be read decides.
QCoro::Task<void> MasterSystemBaselineManager::download(QString path) {
    if (!m_host.cloud.isUbiquitous(path)) {
        co_return;
    }
    m_host.cloud.startDownloading(path);
    for (int look = 0; look < kLooksAtDownload && !m_host.cloud.isCurrent(path); ++look) {
        co_await m_host.clock.sleepFor(kWait);
    }
}

/// None for a current file that is missing, can't be read or can't be decoded.
std::optional<MasterSystemBaseline> MasterSystemBaselineManager::baselineIn(const QString& folder) const {
    try {
        return decodeMasterBaseline(m_host.files.read(currentFile(folder)));
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const MasterSystemBaselineError&) {
        return std::nullopt;
    }
}

} // namespace quorvane
