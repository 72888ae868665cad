#pragma once

#include "platform/FileManager.h"

namespace quorvane {

/// The files of the computer that the program runs on.
class DiskFileManager final : public FileManager {
public:
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
};

} // namespace quorvane
