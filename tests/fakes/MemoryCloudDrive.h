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
    bool isReplacingLater = false;          ///< when the event loop has come round, as the system does
    QMap<QString, QDateTime> modified;      ///< by path; what isn't named here has kSomeDate
    mutable QMap<QString, Waiting> waiting; ///< by path
    mutable QStringList
        calls; ///< "containerFolder", "isCurrent {path}", "startDownloading …", "create …", "replace …",
               ///< "remove …"

    std::function<void()> whenWritten; ///< called after a file was written

    inline static const QDateTime kSomeDate{QDate(2026, 1, 1), QTime(12, 0), Qt::UTC};

    bool hasAccount() const override { return account; }

    QFuture<std::optional<QString>> containerFolder() override {
        calls.append(QStringLiteral("containerFolder"));
        if (!hasContainer())
            return QtFuture::makeReadyFuture(std::optional<QString>());
        m_files.addFolders(*container);
        return QtFuture::makeReadyFuture(container);
    }

    QStringList list(const QString& folder) const override {
        QStringList names = m_files.list(folder);
        for (auto file = waiting.cbegin(); file != waiting.cend(); ++file) {
            const QString name = file.key().mid(file.key().lastIndexOf(u'/') + 1);
            if (file.key() == folder + u'/' + name && !names.contains(name))
                names.append(name);
        }
        return names;
    }

    std::optional<QDateTime> modificationDate(const QString& path) const override {
        if (!isUbiquitous(path))
            return std::nullopt;
        if (const auto file = waiting.constFind(path); file != waiting.cend() && file->modified)
            return file->modified;
        return m_files.exists(path) ? std::optional(modified.value(path, kSomeDate)) : std::nullopt;
    }

    bool isUbiquitous(const QString& path) const override {
        const bool isInContainer = hasContainer() && path.startsWith(*container + u'/');
        return isInContainer && (m_files.exists(path) || waiting.contains(path));
    }

    void startDownloading(const QString& path) override {
        calls.append(QStringLiteral("startDownloading ") + path);
        if (waiting.contains(path))
            waiting[path].isRequested = true;
    }

    bool isCurrent(const QString& path) const override {
        calls.append(QStringLiteral("isCurrent ") + path);
        if (!isUbiquitous(path))
            return false;
        const auto file = waiting.find(path);
        if (file == waiting.end())
            return true;
        if (!file->isRequested || !file->looks || (*file->looks)-- > 0)
            return false;
        m_files.addFile(path, file->bytes);
        waiting.erase(file);
        return true;
    }

    bool create(const QString& path, const QByteArray& bytes) override {
        calls.append(QStringLiteral("create ") + path);
        return !write(path, bytes);
    }

    QFuture<std::optional<QString>> replace(const QString& path, const QByteArray& bytes) override {
        calls.append(QStringLiteral("replace ") + path);
        if (!isReplacingLater)
            return QtFuture::makeReadyFuture(write(path, bytes));
        const auto promise = std::make_shared<QPromise<std::optional<QString>>>();
        promise->start();
        QTimer::singleShot(0, [this, promise, path, bytes] {
            promise->addResult(write(path, bytes));
            promise->finish();
        });
        return promise->future();
    }

    std::optional<QString> remove(const QString& path) override {
        calls.append(QStringLiteral("remove ") + path);
        if (const auto refused = refusal(path))
            return refused;
        const bool wasWaiting = waiting.remove(path) > 0;
        if (!m_files.exists(path) && wasWaiting)
            return std::nullopt;
        try {
            m_files.remove(path);
        } catch (const FileError& error) {
            return error.message();
        }
        return std::nullopt;
    }

    void shutDown() override { m_isShutDown = true; }

private:
    bool hasContainer() const { return account && container && !m_isShutDown; }

    std::optional<QString> refusal(const QString& path) const {
        if (m_isShutDown)
            return QStringLiteral("The program is quitting.");
        if (writeError)
            return writeError;
        const bool isInContainer = hasContainer() && path.startsWith(*container + u'/');
        return isInContainer ? std::nullopt : std::optional(QStringLiteral("The container is gone."));
    }

    std::optional<QString> write(const QString& path, const QByteArray& bytes) {
        if (const auto refused = refusal(path))
            return refused;
        try {
            m_files.writeAtomically(path, bytes);
        } catch (const FileError& error) {
            return error.message();
        }
        waiting.remove(path);
        if (whenWritten)
            whenWritten();
        return std::nullopt;
    }

    MemoryFileManager& m_files;
    bool m_isShutDown = false;
};

} // namespace quorvane
