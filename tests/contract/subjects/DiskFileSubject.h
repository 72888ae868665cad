#pragma once

#include "contract/FileContract.h"
#include "platform/portable/DiskFileManager.h"

#include <QTemporaryDir>

#include <unistd.h>

namespace quorvane {

/// A folder of the disk on which the test runs.
class DiskFileSubject final : public FileSubject {
public:
    FileManager& files() override { return m_files; }
    QString folder() const override { return m_folder.path(); }
    ~DiskFileSubject() override {
        for (const QString& folder : m_locked) {
            QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
    }
    void link(const QString& path, const QString& target) override { QFile::link(target, path); }
    void addEmptyFile(const QString& path) override { addEmptyHostFile(path); }
    bool lock(const QString& folder) override {
        m_locked.append(folder);
        return ::geteuid() != 0 && QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    }
    QString unreadableFile() override {
        const QString file = folder() + u"/closed"_s;
        addEmptyFile(file);
        return ::geteuid() != 0 && QFile::setPermissions(file, QFile::WriteOwner) ? file : QString();
    }
    quint32 userId() const override { return ::geteuid(); }

private:
    QTemporaryDir m_folder;
    QStringList m_locked;
    DiskFileManager m_files;
};

} // namespace quorvane
