#include "snapshots/MasterSystemBaselineManager.h"

#include "core/JsonErrors.h"
#include "platform/Clock.h"
#include "platform/CloudDrive.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "snapshots/HomeBaselines.h"

#include <QCoroFuture>
#include <QCoroTask>

#include <chrono>

namespace quorvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kWaitForBaseline = 250ms;
constexpr int kLooksForFile = 12; // about three seconds

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

MasterSystemBaselineManager::MasterSystemBaselineManager(FileManager& files, CloudDrive& cloud, Clock& clock,
                                                         const Machine& machine)
    : m_files(files)
    , m_cloud(cloud)
    , m_clock(clock)
    , m_machine(machine)
    , m_cloudFiles(files, cloud, clock, kCloudBaselinesFolder, u"Could not create the iCloud baseline file."_s) {}

QString MasterSystemBaselineManager::localFolder() const {
    const QString folder = baselineFolderAtHome(m_machine);
    try {
        m_files.createFolders(folder);
    } catch (const FileError&) {
        // The read or the write that follows tells of it.
    }
    return folder;
}

QCoro::Task<bool> MasterSystemBaselineManager::currentFileExists() {
    if (m_files.exists(currentBaselineFile(localFolder()))) {
        co_return true;
    }
    const std::optional<QString> cloud = co_await m_cloudFiles.folder();
    const bool existsInCloud = cloud && m_cloudFiles.exists(currentBaselineFile(*cloud));
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
        co_await writeToCloud(bytes, currentBaselineFile(*folder));
    }
    co_return archiveName;
}

void MasterSystemBaselineManager::writeToHome(const QByteArray& bytes, const QString& archiveName) {
    const QString folder = localFolder();
    try {
        m_files.writeAtomically(folder + u'/' + archiveName, bytes);
        m_files.writeAtomically(currentBaselineFile(folder), bytes);
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
        co_await m_cloudFiles.download(
            currentBaselineFile(*cloud)); // an older content will do where the newest doesn't come
        inCloud = baselineAt(currentBaselineFile(*cloud), m_files);
    }
    co_return latestBaseline(inCloud, baselineAt(currentBaselineFile(localFolder()), m_files), identityOf(m_machine));
}

} // namespace quorvane
