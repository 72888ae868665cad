#include "fakes/MemoryCloudDrive.h"

namespace quorvane {

QFuture<std::optional<QString>> MemoryCloudDrive::containerFolder() {
    calls.append(QStringLiteral("containerFolder"));
    if (!hasContainer()) {
        return QtFuture::makeReadyFuture(std::optional<QString>());
    }
    m_files.addFolders(*container);
    return QtFuture::makeReadyFuture(container);
}

QStringList MemoryCloudDrive::list(const QString& folder) const {
    QStringList names = m_files.list(folder);
    for (auto file = waiting.cbegin(); file != waiting.cend(); ++file) {
        const QString name = file.key().mid(file.key().lastIndexOf(u'/') + 1);
        if (file.key() == folder + u'/' + name && !names.contains(name)) {
            names.append(name);
        }
    }
    return names;
}

std::optional<QDateTime> MemoryCloudDrive::modificationDate(const QString& path) const {
    if (!isUbiquitous(path)) {
        return std::nullopt;
    }
    if (const auto file = waiting.constFind(path); file != waiting.cend() && file->modified) {
        return file->modified;
    }
    return m_files.exists(path) ? std::optional(modified.value(path, kSomeDate)) : std::nullopt;
}

bool MemoryCloudDrive::isUbiquitous(const QString& path) const {
    const bool isInContainer = hasContainer() && path.startsWith(*container + u'/');
    return isInContainer && (m_files.exists(path) || waiting.contains(path));
}

void MemoryCloudDrive::startDownloading(const QString& path) {
    calls.append(QStringLiteral("startDownloading ") + path);
    if (waiting.contains(path)) {
        waiting[path].isRequested = true;
    }
}

bool MemoryCloudDrive::isCurrent(const QString& path) const {
    calls.append(QStringLiteral("isCurrent ") + path);
    if (!isUbiquitous(path)) {
        return false;
    }
    const auto file = waiting.find(path);
    if (file == waiting.end()) {
        return true;
    }
    if (!file->isRequested || !file->looks || (*file->looks)-- > 0) {
        return false;
    }
    m_files.addFile(path, file->bytes);
    waiting.erase(file);
    return true;
}

bool MemoryCloudDrive::create(const QString& path, const QByteArray& bytes) {
    calls.append(QStringLiteral("create ") + path);
    return !write(path, bytes);
}

QFuture<std::optional<QString>> MemoryCloudDrive::replace(const QString& path, const QByteArray& bytes) {
    calls.append(QStringLiteral("replace ") + path);
    return outcomeOf([this, path, bytes] { return write(path, bytes); });
}

QFuture<std::optional<QString>> MemoryCloudDrive::remove(const QString& path) {
    calls.append(QStringLiteral("remove ") + path);
    return outcomeOf([this, path] { return erase(path); });
}

QFuture<std::optional<QString>> MemoryCloudDrive::outcomeOf(std::function<std::optional<QString>()> step) const {
    if (!isWritingLater) {
        return QtFuture::makeReadyFuture(step());
    }
    const auto promise = std::make_shared<QPromise<std::optional<QString>>>();
    promise->start();
    QTimer::singleShot(0, [promise, step = std::move(step)] {
        promise->addResult(step());
        promise->finish();
    });
    return promise->future();
}

std::optional<QString> MemoryCloudDrive::erase(const QString& path) {
    if (const auto refused = refusal(path)) {
        return refused;
    }
    const bool wasWaiting = waiting.remove(path) > 0;
    if (!m_files.exists(path) && wasWaiting) {
        return std::nullopt;
    }
    try {
        m_files.remove(path);
    } catch (const FileError& error) {
        return error.message();
    }
    return std::nullopt;
}

std::optional<QString> MemoryCloudDrive::refusal(const QString& path) const {
    if (m_isShutDown) {
        return QStringLiteral("The program is quitting.");
    }
    if (writeError) {
        return writeError;
    }
    const bool isInContainer = hasContainer() && path.startsWith(*container + u'/');
    return isInContainer ? std::nullopt : std::optional(QStringLiteral("The container is gone."));
}

std::optional<QString> MemoryCloudDrive::write(const QString& path, const QByteArray& bytes) {
    if (const auto refused = refusal(path)) {
        return refused;
    }
    try {
        m_files.writeAtomically(path, bytes);
    } catch (const FileError& error) {
        return error.message();
    }
    waiting.remove(path);
    if (whenWritten) {
        whenWritten();
    }
    return std::nullopt;
}

} // namespace quorvane
