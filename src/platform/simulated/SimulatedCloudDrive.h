#pragma once

#include "platform/CloudDrive.h"
#include "simulator/Mac.h"

#include <functional>

namespace quorvane {

class FileManager;

/// iCloud Drive of a simulated Mac. What it has is said in the state subject "cloud"; without it nobody is signed in:
///
///     {"account": true, "container": true, "writesFail": "You don’t have permission to save the file.",
///      "files": {"/Users/alex/Library/Mobile Documents/…/profile.json":
///                    {"text": "…", "looks": 2, "modified": "2026-03-14T20:30:00Z", "isRequested": false}}}
///
/// "account"     the user is signed in
/// "container"   the program has one, if the user is signed in
/// "writesFail"  why nothing can be written there; without it everything can
/// "files"       those that aren't downloaded in their newest content, which is "text". Once it is requested, `isCurrent`
///               answers so many "looks" with no, and at the next the file is on the disk and no longer here; with null,
///               or without the key, it never comes. "modified" may be left out: the date is then that of an older
///               content on the disk.
///
/// What the program writes goes through the file manager, with its faults; what iCloud does is the system's.
class SimulatedCloudDrive final : public CloudDrive {
public:
    SimulatedCloudDrive(const macsim::Mac& mac, FileManager& files)
        : m_mac(mac)
        , m_files(files) {}

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
    void shutDown() override { m_isShutDown = true; }

private:
    bool hasContainer() const;
    QString folderOfContainer() const;
    bool isInContainer(const QString& path) const;
    bool putOnDisk(const QString& path, const QByteArray& bytes) const;
    bool change(const std::function<void(macsim::Json&)>& change) const;
    std::optional<QString> refusal(const QString& path) const;
    std::optional<QString> forgetWaiting(const QString& path);
    std::optional<QString> write(const QString& path, const QByteArray& bytes);
    std::optional<QString> erase(const QString& path);

    const macsim::Mac& m_mac;
    FileManager& m_files;
    bool m_isShutDown = false;
};

} // namespace quorvane
