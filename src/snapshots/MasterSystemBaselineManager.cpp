#include "snapshots/MasterSystemBaselineManager.h"

#include "core/DeviceName.h"
#include "core/JsonErrors.h"
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

constexpr auto kWaitForBaseline = 250ms;
constexpr int kLooksForFile = 12; // about three seconds

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

QString folderAtHome(const Machine& machine) {
    return machine.homeFolder() + u"/.quorvane"_s;
}

MacIdentity identityOf(const Machine& machine) {
    const QString id = machine.hardwareId();
    return {deviceNameOf(machine.computerName()), id.isEmpty() ? std::nullopt : std::optional(id)};
}

/// None for a current file that is missing, can't be read or can't be decoded.
std::optional<MasterSystemBaseline> baselineIn(const QString& folder, const FileManager& files) {
    try {
        return decodeMasterBaseline(files.read(currentFile(folder)));
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const MasterSystemBaselineError&) {
        return std::nullopt;
    }
}

} // namespace

std::optional<MasterSystemBaseline> ownBaselineAtHome(const FileManager& files, const Machine& machine) {
    std::optional<MasterSystemBaseline> baseline = baselineIn(folderAtHome(machine), files);
    if (baseline && originOf(*baseline, identityOf(machine)) == BaselineOrigin::AnotherMac) {
        baseline.reset();
    }
    return baseline;
}

MasterSystemBaselineManager::MasterSystemBaselineManager(FileManager& files, CloudDrive& cloud, Clock& clock,
                                                         const Machine& machine)
    : m_files(files)
    , m_cloud(cloud)
    , m_clock(clock)
    , m_machine(machine)
    , m_cloudFiles(files, cloud, clock, u"SystemBaselines"_s, u"Could not create the iCloud baseline file."_s) {}

QString MasterSystemBaselineManager::localFolder() const {
    const QString folder = folderAtHome(m_machine);
    try {
        m_files.createFolders(folder);
    } catch (const FileError&) {
        // The read or the write that follows tells of it.
    }
    return folder;
}

QCoro::Task<bool> MasterSystemBaselineManager::currentFileExists() {
    if (m_files.exists(currentFile(localFolder()))) {
        co_return true;
    }
    const std::optional<QString> cloud = co_await m_cloudFiles.folder();
    const bool existsInCloud = cloud && m_cloudFiles.exists(currentFile(*cloud));
    co_return existsInCloud;
}

QCoro::Task<bool> MasterSystemBaselineManager::hasMasterBaseline() {
    bool exists = co_await currentFileExists();
    for (int look = 0; look < kLooksForFile && !exists; ++look) {
        co_await m_clock.sleepFor(kWaitForBaseline);
        exists = co_await currentFileExists();
    }
    co_return exists;
}

QCoro::Task<QString> MasterSystemBaselineManager::archiveMasterBaseline(SystemSnapshot snapshot,
                                                                        std::optional<QString> label) {
    const MasterSystemBaseline baseline = masterBaselineOf(snapshot, identityOf(m_machine), label);
    const QByteArray bytes = encoded(baseline);
    const QString archiveName = masterBaselineArchiveName(baseline);
    writeToHome(bytes, archiveName);
    if (m_cloud.hasAccount()) {
        const std::optional<QString> folder = co_await m_cloudFiles.folder();
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
        m_files.writeAtomically(folder + u'/' + archiveName, bytes);
        m_files.writeAtomically(currentFile(folder), bytes);
    } catch (const FileError& error) {
        throw writeFailed(error.message());
    }
}

QCoro::Task<void> MasterSystemBaselineManager::writeToCloud(QByteArray bytes, QString path) {
    const std::optional<QString> error = co_await m_cloudFiles.write(bytes, path);
    if (error) {
        throw writeFailed(*error);
    }
}

QCoro::Task<std::optional<LatestBaseline>> MasterSystemBaselineManager::loadLatestMasterBaseline() {
    std::optional<MasterSystemBaseline> inCloud;
    const std::optional<QString> cloud = co_await m_cloudFiles.folder();
    if (cloud) {
        co_await m_cloudFiles.download(currentFile(*cloud)); // an older content will do where the newest doesn't come
        inCloud = baselineIn(*cloud, m_files);
    }
    co_return latestBaseline(inCloud, baselineIn(localFolder(), m_files), identityOf(m_machine));
}

} // namespace quorvane
