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

    bool exists(const QString& path) const override { return m_files.exists(path); }
    FileStatus status(const QString& path) const override { return m_files.status(path); }
    bool isWritable(const QString& path) const override { return m_files.isWritable(path); }
    QString resolved(const QString& path) const override { return m_files.resolved(path); }
    QStringList list(const QString& folder) const override { return m_files.list(folder); }
    std::unique_ptr<FolderEntries> entries(const QString& folder) const override { return m_files.entries(folder); }
    QByteArray read(const QString& path) const override { return m_files.read(path); }
    void writeAtomically(const QString& path, const QByteArray& bytes) override {
        live(path);
        m_files.writeAtomically(path, bytes);
    }
    void move(const QString& from, const QString& to) override {
        live(from);
        m_files.move(from, to);
    }
    void remove(const QString& path) override {
        live(path);
        m_files.remove(path);
    }
    void createFolders(const QString& folder) override {
        if (m_files.exists(folder))
            return;
        live(folder);
        m_files.createFolders(folder);
    }

private:
    void live(const QString& path) {
        if (!m_isDead && changesLeft-- > 0)
            return;
        if (!m_isDead && whenDead)
            whenDead();
        m_isDead = true;
        throw FileError(path, QStringLiteral("The program is dead"));
    }

    FileManager& m_files;
    bool m_isDead = false;
};

} // namespace quorvane
