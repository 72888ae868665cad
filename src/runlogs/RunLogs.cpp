#include "runlogs/RunLogs.h"

#include "platform/FileManager.h"
#include "platform/Machine.h"

namespace quorvane {

using namespace Qt::StringLiterals;

RunLogs::RunLogs(FileManager& files, const Machine& machine)
    : m_files(files)
    , m_machine(machine)
    , m_folder(machine.homeFolder() + u"/Library/Logs/Quorvane"_s) {}

/// Through a link files of the same names would go, or come to be, where nobody looks for a log.
void RunLogs::requireFolder() const {
    if (m_files.status(m_folder).kind == FileStatus::Kind::Link) {
        throw FileError(m_folder, u"A link stands in the place of the folder"_s);
    }
}

QList<RunLogName> RunLogs::kept() const {
    if (m_files.status(m_folder).kind == FileStatus::Kind::Missing) {
        return {};
    }
    requireFolder();
    QList<RunLogName> runs = runLogsIn(m_files.list(m_folder));
    runs.removeIf(
        [this](const RunLogName& run) { return m_files.status(pathOf(run.file)).kind != FileStatus::Kind::File; });
    return runs;
}

QByteArray RunLogs::read(const QString& file) const {
    requireFolder();
    const QString path = pathOf(file);
    if (m_files.status(path).kind == FileStatus::Kind::Link) {
        throw FileError(path, u"A link stands in the place of the file"_s);
    }
    return m_files.read(path);
}

RunLogName RunLogs::nameForNew(const QDateTime& now) const {
    requireFolder();
    m_files.createFolders(m_folder);
    return freeRunLogName(now, m_machine.processName(), m_files.list(m_folder));
}

void RunLogs::append(const QString& file, const QByteArray& bytes) {
    m_files.append(pathOf(file), bytes, FileManager::Flush::No);
}

void RunLogs::forgetOldBeside(const QString& newest) {
    QList<RunLogName> others = kept();
    others.removeIf([&newest](const RunLogName& run) { return run.file == newest; });
    for (const RunLogName& run : runsToForget(others)) {
        try {
            m_files.remove(pathOf(run.file));
        } catch (const FileError& error) {
            if (error.cause() != FileError::Cause::Missing) {
                throw;
            }
        }
    }
}

} // namespace quorvane
