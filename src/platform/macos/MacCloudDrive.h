#pragma once

#include "platform/CloudDrive.h"
#include "platform/macos/CloudFileRules.h"
#include "platform/macos/OpenAnswers.h"

namespace quorvane {

/// iCloud Drive by NSFileManager. What is written to a file that others may have open is agreed on by NSFileCoordinator, on a
/// thread of the system's, where it may wait for as long as somebody else holds the file.
///
/// A build without the entitlement, and a user who has turned iCloud Drive off, have an account and no container.
class MacCloudDrive final : public CloudDrive {
public:
    MacCloudDrive();
    ~MacCloudDrive() override;

    bool hasAccount() const override;
    QFuture<std::optional<QString>> containerFolder() override;
    QStringList list(const QString& folder) const override;
    std::optional<QDateTime> modificationDate(const QString& path) const override;
    bool isUbiquitous(const QString& path) const override;
    void startDownloading(const QString& path) override;
    bool isCurrent(const QString& path) const override;
    bool create(const QString& path, const QByteArray& bytes) override;
    QFuture<std::optional<QString>> replace(const QString& path, const QByteArray& bytes) override;
    QFuture<std::optional<QString>> remove(const QString& path) override;
    void shutDown() override;

private:
    struct Change;
    struct Coordinators;

    QFuture<std::optional<QString>> coordinated(const Change& change);

    OpenAnswers<std::optional<QString>> m_folders{std::nullopt};
    OpenAnswers<std::optional<QString>> m_changes{cloudEndText()};
    std::unique_ptr<Coordinators> m_coordinators;
};

} // namespace quorvane
