#pragma once

#include "platform/FileManager.h"

#include <functional>

namespace quorvane {

/// Files of a program that dies: from a change on, nothing is changed any more.
class MortalFileManager final : public FileManager {
public:
    explicit MortalFileManager(FileManager& files)
        : m_files(files) {}

    int changesLeft = 0;            ///< until the program dies
    std::function<void()> whenDead; ///< called at the first change that doesn't happen any more

    bool isDead() const { return m_isDead; }

    bool exists(const QString& path) const override;
    FileStatus status(const QString& path) const override;
    bool isWritable(const QString& path) const override;
    QString resolved(const QString& path) const override;
    QStringList list(const QString& folder) const override;
    std::unique_ptr<FolderEntries> entries(const QString& folder) const override;
    QByteArray read(const QString& path) const override;
    void writeAtomically(const QString& path, const QByteArray& bytes) override;
    bool writeNew(const QString& path, const QByteArray& bytes) override;
    void append(const QString& path, const QByteArray& bytes, Flush flush) override;
    void move(const QString& from, const QString& to) override;
    void remove(const QString& path) override;
    void createFolders(const QString& folder) override;

private:
    void live(const QString& path);

    FileManager& m_files;
    bool m_isDead = false;
};

} // namespace quorvane
