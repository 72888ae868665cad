#pragma once

#include "platform/FileManager.h"
#include "platform/simulated/AtomicWriteStep.h"

#include <optional>

namespace quorvane {

/// What goes wrong with the program's own files on purpose. Changes (writes, moves, removals, new folders) are counted
/// from 1; of a tree that is removed each entry is one. What keeps the log counts as none, because it comes when the event loop
/// comes round and not at a step of a flow; where changes fail, it fails as well.
struct FileFaults {
    std::optional<int> failingChange; ///< this change and every later one fails
    QString reason;                   ///< the system's words: "No space left on device"
    std::optional<int> killingChange; ///< the process dies when it is about to make this change
    /// Of a change that is a write: dies at this step of it instead. Another change is then made.
    std::optional<AtomicWriteStep> killingStep = {};
};

/// Reads the rules for files from a file of faults, in which they stand beside those for tools:
///
///     {"adapter": "files", "change": 2, "error": "No space left on device"}
///     {"adapter": "files", "change": 1, "kill": true}
///     {"adapter": "files", "change": 1, "kill": true, "at": "write" | "flush" | "rename" | "end"}
///
/// No file is no faults. Throws std::invalid_argument.
FileFaults fileFaultsFromFile(const QString& hostPath);

/// Any file manager, with faults on request. What is to happen at a step of a write needs one that tells of its steps.
class FaultyFileManager final : public FileManager {
public:
    FaultyFileManager(FileManager& files, FileFaults faults);

    bool exists(const QString& path) const override { return m_files.exists(path); }
    FileStatus status(const QString& path) const override { return m_files.status(path); }
    bool isWritable(const QString& path) const override { return m_files.isWritable(path); }
    QString resolved(const QString& path) const override { return m_files.resolved(path); }
    QStringList list(const QString& folder) const override { return m_files.list(folder); }
    std::unique_ptr<FolderEntries> entries(const QString& folder) const override { return m_files.entries(folder); }
    QByteArray read(const QString& path) const override { return m_files.read(path); }
    void writeAtomically(const QString& path, const QByteArray& bytes) override;
    bool writeNew(const QString& path, const QByteArray& bytes) override;
    void append(const QString& path, const QByteArray& bytes, Flush flush) override;
    void move(const QString& from, const QString& to) override;
    void remove(const QString& path) override;
    void createFolders(const QString& folder) override;

    /// Called by the file manager beneath while it writes.
    void beforeStep(AtomicWriteStep step);

private:
    void beforeChange(const QString& path);

    FileManager& m_files;
    FileFaults m_faults;
    int m_changes = 0;
};

} // namespace quorvane
