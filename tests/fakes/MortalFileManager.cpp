#include "fakes/MortalFileManager.h"

namespace quorvane {

bool MortalFileManager::exists(const QString& path) const {
    return m_files.exists(path);
}

FileStatus MortalFileManager::status(const QString& path) const {
    return m_files.status(path);
}

bool MortalFileManager::isWritable(const QString& path) const {
    return m_files.isWritable(path);
}

QString MortalFileManager::resolved(const QString& path) const {
    return m_files.resolved(path);
}

QStringList MortalFileManager::list(const QString& folder) const {
    return m_files.list(folder);
}

std::unique_ptr<FolderEntries> MortalFileManager::entries(const QString& folder) const {
    return m_files.entries(folder);
}

QByteArray MortalFileManager::read(const QString& path) const {
    return m_files.read(path);
}

void MortalFileManager::writeAtomically(const QString& path, const QByteArray& bytes) {
    live(path);
    m_files.writeAtomically(path, bytes);
}

bool MortalFileManager::writeNew(const QString& path, const QByteArray& bytes) {
    live(path);
    return m_files.writeNew(path, bytes);
}

void MortalFileManager::append(const QString& path, const QByteArray& bytes, Flush flush) {
    live(path);
    m_files.append(path, bytes, flush);
}

void MortalFileManager::move(const QString& from, const QString& to) {
    live(from);
    m_files.move(from, to);
}

void MortalFileManager::remove(const QString& path) {
    live(path);
    m_files.remove(path);
}

void MortalFileManager::createFolders(const QString& folder) {
    if (m_files.exists(folder)) {
        return;
    }
    live(folder);
    m_files.createFolders(folder);
}

void MortalFileManager::live(const QString& path) {
    if (!m_isDead && changesLeft-- > 0) {
        return;
    }
    if (!m_isDead && whenDead) {
        whenDead();
    }
    m_isDead = true;
    throw FileError(path, QStringLiteral("The program is dead"));
}

} // namespace quorvane
