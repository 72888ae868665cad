#include "core/CloudFiles.h"

#include "platform/Clock.h"
#include "platform/CloudDrive.h"
#include "platform/FileManager.h"

#include <QCoroFuture>
#include <QCoroTask>
#include <QSet>

#include <chrono>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

constexpr auto kWait = 250ms;
constexpr int kLooks = 20; // about five seconds

} // namespace

CloudFiles::CloudFiles(FileManager& files, CloudDrive& cloud, Clock& clock, QString folderName, QString creationFailure)
    : m_files(files)
    , m_cloud(cloud)
    , m_clock(clock)
    , m_folderName(std::move(folderName))
    , m_creationFailure(std::move(creationFailure)) {}

QCoro::Task<std::optional<QString>> CloudFiles::folder() {
    if (!m_cloud.hasAccount()) {
        co_return std::nullopt;
    }
    const std::optional<QString> container = co_await m_cloud.containerFolder();
    if (!container) {
        co_return std::nullopt;
    }
    const QString folder = *container + u"/Documents/Quorvane/"_s + m_folderName;
    try {
        m_files.createFolders(folder);
    } catch (const FileError&) {
        // The read or the write that follows tells of it.
    }
    co_return folder;
}

bool CloudFiles::exists(const QString& path) const {
    return m_files.exists(path) || m_cloud.isUbiquitous(path);
}

QCoro::Task<bool> CloudFiles::download(QString path) {
    const QStringList arrived = co_await downloadAll(QStringList(path));
    co_return !arrived.isEmpty();
}

QCoro::Task<QStringList> CloudFiles::downloadAll(QStringList paths,
                                                 std::function<void(const QStringList& here)> whileOthersCome) {
    QSet<QString> missing;
    for (const QString& path : paths) {
        if (m_cloud.isUbiquitous(path)) {
            m_cloud.startDownloading(path);
            missing.insert(path);
        }
    }
    const auto isHere = [this](const QString& path) { return m_cloud.isCurrent(path); };
    const auto here = [&paths, &missing] {
        QStringList found = paths;
        found.removeIf([&missing](const QString& path) { return missing.contains(path); });
        return found;
    };
    for (int look = 0; look < kLooks && !missing.isEmpty(); ++look) {
        missing.removeIf(isHere);
        if (look == 0 && !missing.isEmpty() && whileOthersCome) {
            whileOthersCome(here());
        }
        if (!missing.isEmpty()) {
            co_await m_clock.sleepFor(kWait);
        }
    }
    co_return here();
}

QCoro::Task<std::optional<QString>> CloudFiles::write(QByteArray bytes, QString path) {
    if (exists(path)) {
        co_return co_await m_cloud.replace(path, bytes);
    }
    co_return m_cloud.create(path, bytes) ? std::nullopt : std::optional(m_creationFailure);
}

} // namespace quorvane
