// The file manager in memory passes the contracts.

#include "fakes/MemoryFileManager.h"
#include "contract/FileContract.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

class MemoryFileSubject final : public FileSubject {
public:
    MemoryFileSubject() { m_files.addFolders(folder()); }
    FileManager& files() override { return m_files; }
    QString folder() const override { return u"/Users/alex/Documents"_s; }
    void link(const QString& path, const QString& target) override { m_files.addLink(path, target); }
    void addEmptyFile(const QString& path) override { m_files.addFile(path, {}); }
    bool lock(const QString& folder) override {
        m_files.makeUnwritable(folder);
        return true;
    }
    QString unreadableFile() override {
        const QString file = folder() + u"/closed"_s;
        m_files.addFile(file, {});
        m_files.failOn(MemoryFileManager::Operation::Read, file);
        return file;
    }
    quint32 userId() const override { return MemoryFileManager::kUser; }

private:
    MemoryFileManager m_files;
};

} // namespace

INSTANTIATE_TEST_SUITE_P(Memory, FileManagerContract, ::testing::Values(&makeSubject<FileSubject, MemoryFileSubject>));
INSTANTIATE_TEST_SUITE_P(Memory, TreeRemovalContract, ::testing::Values(&makeSubject<FileSubject, MemoryFileSubject>));

} // namespace quorvane
