// A tree goes entry by entry, whatever stands in its way.

#include "platform/TreeRemoval.h"

#include "contract/subjects/DiskFileSubject.h"
#include "fakes/MemoryFileManager.h"
#include "platform/simulated/FaultyFileManager.h"

#include <algorithm>
#include <utility>

namespace quorvane {

namespace {

using Operation = MemoryFileManager::Operation;

/// Counts how many folders are open.
class CountedFiles final : public MemoryFileManager {
public:
    std::unique_ptr<FolderEntries> entries(const QString& folder) const override {
        ++opened;
        ++open;
        most = std::max(most, open);
        return std::make_unique<Counted>(MemoryFileManager::entries(folder), open);
    }

    mutable int opened = 0;
    mutable int open = 0;
    mutable int most = 0;

private:
    class Counted final : public FolderEntries {
    public:
        Counted(std::unique_ptr<FolderEntries> entries, int& open)
            : m_entries(std::move(entries))
            , m_open(open) {}
        ~Counted() override { --m_open; }
        std::optional<QString> next() override { return m_entries->next(); }

    private:
        std::unique_ptr<FolderEntries> m_entries;
        int& m_open;
    };
};

/// "{top}/d/d/…", each folder with a file before and one behind the next folder, in the order in which they are made.
template <typename AddFile>
void makeDeepTree(FileManager& files, QString folder, int levels, AddFile addFile) {
    for (int level = 0; level < levels; ++level) {
        files.createFolders(folder);
        addFile(folder + u"/a"_s);
        files.createFolders(folder + u"/d"_s);
        addFile(folder + u"/z"_s);
        folder += u"/d"_s;
    }
}

void makeDeepTree(MemoryFileManager& files, const QString& folder, int levels) {
    makeDeepTree(files, folder, levels, [&files](const QString& path) { files.addFile(path, {}); });
}

} // namespace

TEST(TreeRemoval, aStepRemovesAtMostOneEntryAndTheLastSaysSo) {
    MemoryFileManager files;
    makeDeepTree(files, u"/top/tree"_s, 5);
    const int before = files.changes();
    TreeRemoval removal(files, u"/top/tree"_s);
    bool isLeft = true;
    int removed = 0;
    while (isLeft) {
        isLeft = removal.step();
        EXPECT_LE(files.changes() - before - removed, 1);
        removed = files.changes() - before;
        EXPECT_EQ(isLeft, files.exists(u"/top/tree"_s));
    }
    EXPECT_EQ(removed, 5 * 2 + 6) << "the files and the folders, the innermost empty one included";
    EXPECT_FALSE(removal.step());
    EXPECT_EQ(files.list(u"/top"_s), QStringList());
}

TEST(TreeRemoval, onlySoManyFoldersAreOpenHoweverDeepTheTree) {
    CountedFiles files;
    makeDeepTree(files, u"/tree"_s, 80);
    removeTree(files, u"/tree"_s);
    EXPECT_EQ(files.most, 64);
    EXPECT_EQ(files.open, 0);
    EXPECT_EQ(files.opened, 81 + 17) << "those that were closed on the way down are opened once more on the way up";
    EXPECT_FALSE(files.exists(u"/tree"_s));
}

TEST(TreeRemoval, aTreeOfTwoHundredLevelsGoesFromADisk) {
    DiskFileSubject disk;
    makeDeepTree(disk.files(), disk.folder() + u"/tree"_s, 200, addEmptyHostFile);
    disk.addEmptyFile(disk.folder() + u"/kept"_s);
    removeTree(disk.files(), disk.folder() + u"/tree"_s);
    EXPECT_EQ(disk.files().list(disk.folder()), QStringList(u"kept"_s));
}

TEST(TreeRemoval, anEntryThatStaysEndsItAndNothingFurtherGoes) {
    MemoryFileManager files;
    for (const QString& name : {u"first"_s, u"stuck"_s, u"last"_s}) {
        files.addFile(u"/tree/inner/"_s + name, "1");
    }
    files.failOn(Operation::Remove, u"/tree/inner/stuck"_s);
    try {
        removeTree(files, u"/tree"_s);
        FAIL() << "nothing was thrown";
    } catch (const FileError& error) {
        EXPECT_EQ(error.message(), u"/tree/inner/stuck: Operation not permitted"_s);
    }
    EXPECT_EQ(files.list(u"/tree/inner"_s), QStringList({u"stuck"_s, u"last"_s}));
}

TEST(TreeRemoval, aFolderThatCannotBeListedEndsIt) {
    MemoryFileManager files;
    files.addFile(u"/tree/closed/file"_s, "1");
    files.failOn(Operation::List, u"/tree/closed"_s);
    EXPECT_THROW(removeTree(files, u"/tree"_s), FileError);
    EXPECT_TRUE(files.exists(u"/tree/closed/file"_s));
}

TEST(TreeRemoval, whatIsMissingIsSaidInTheWordsOfTheSystem) {
    MemoryFileManager files;
    try {
        removeTree(files, u"/gone"_s);
        FAIL() << "nothing was thrown";
    } catch (const FileError& error) {
        EXPECT_EQ(error.message(), u"/gone: No such file or directory"_s);
    }
}

TEST(FaultyFileManager, eachRemovalOfATreeIsAChange) {
    MemoryFileManager files;
    files.addFile(u"/one/a/b"_s, "1");
    files.addFile(u"/two"_s, "2");
    FaultyFileManager faulty(files, {3, u"No space left on device"_s, std::nullopt});
    EXPECT_THROW(removeTree(faulty, u"/one"_s), FileError);
    EXPECT_EQ(files.list(u"/one"_s), QStringList()) << "the two removals before the failing one are made";
    EXPECT_THROW(removeTree(faulty, u"/two"_s), FileError);
    EXPECT_TRUE(files.exists(u"/two"_s));
}

} // namespace quorvane
