#pragma once

#include "fakes/MemoryFileManager.h"
#include "platform/CloudDrive.h"

#include <QMap>
#include <QPromise>
#include <QTimer>

#include <functional>
#include <memory>
#include <optional>

namespace quorvane {

/// iCloud Drive over files in memory. Nobody is signed in until a test says so.
class MemoryCloudDrive final : public CloudDrive {
public:
    /// A file that is not downloaded in its newest content.
    struct Waiting {
        QByteArray bytes;
        std::optional<int> looks; ///< answered with no once it is requested; none when it never comes
        std::optional<QDateTime> modified;
        bool isRequested = false;
    };

    explicit MemoryCloudDrive(MemoryFileManager& files)
        : m_files(files) {}

    bool account = false;
    std::optional<QString> container;       ///< its folder, for a user who is signed in
    std::optional<QString> writeError;      ///< every write fails with it
    bool isWritingLater = false;            ///< also removing: when the event loop has come round, as the system does
    QMap<QString, QDateTime> modified;      ///< by path; what isn't named here has kSomeDate
    mutable QMap<QString, Waiting> waiting; ///< by path
    mutable QStringList
        calls; ///< "containerFolder", "isCurrent {path}", "startDownloading …", "create …", "replace …",
               ///< "remove …"

    std::function<void()> whenWritten; ///< called after a file was written

    inline static const QDateTime kSomeDate{QDate(2026, 1, 1), QTime(12, 0), Qt::UTC};

    bool hasAccount() const override { return account; }

    QFuture<std::optional<QString>> containerFolder() override;
    QStringList list(const QString& folder) const override;
    std::optional<QDateTime> modificationDate(const QString& path) const override;
    bool isUbiquitous(const QString& path) const override;
    void startDownloading(const QString& path) override;
    bool isCurrent(const QString& path) const override;
    bool create(const QString& path, const QByteArray& bytes) override;
    QFuture<std::optional<QString>> replace(const QString& path, const QByteArray& bytes) override;
    QFuture<std::optional<QString>> remove(const QString& path) override;

    void shutDown() override { m_isShutDown = true; }

private:
    bool hasContainer() const { return account && container && !m_isShutDown; }

    std::optional<QString> refusal(const QString& path) const;
    QFuture<std::optional<QString>> outcomeOf(std::function<std::optional<QString>()> step) const;
    std::optional<QString> write(const QString& path, const QByteArray& bytes);
    std::optional<QString> erase(const QString& path);

    MemoryFileManager& m_files;
    bool m_isShutDown = false;
};

} // namespace quorvane
