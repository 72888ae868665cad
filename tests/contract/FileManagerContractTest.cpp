// What every file manager promises, whichever files it works on.

#include "fakes/MemoryFileManager.h"
#include "fakes/SimulatedMacFolder.h"
#include "platform/TreeRemoval.h"
#include "platform/portable/DiskFileManager.h"
#include "platform/simulated/FaultyFileManager.h"
#include "platform/simulated/SimulatedFileManager.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>
#include <unistd.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// A file manager and a folder that it may fill.
class Subject {
public:
    virtual ~Subject() = default;
    virtual FileManager& files() = 0;
    virtual QString folder() const = 0;
    /// Makes a link by other means.
    virtual void link(const QString& path, const QString& target) = 0;
    /// Takes the right to change the names in a folder; false where the tests run as root, who has every right.
    virtual bool lock(const QString& folder) = 0;
    virtual quint32 userId() const = 0;
};

class DiskSubject final : public Subject {
public:
    FileManager& files() override { return m_files; }
    QString folder() const override { return m_folder.path(); }
    ~DiskSubject() override {
        for (const QString& folder : m_locked) {
            QFile::setPermissions(folder, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
        }
    }
    void link(const QString& path, const QString& target) override { QFile::link(target, path); }
    bool lock(const QString& folder) override {
        m_locked.append(folder);
        return ::geteuid() != 0 && QFile::setPermissions(folder, QFile::ReadOwner | QFile::ExeOwner);
    }
    quint32 userId() const override { return ::geteuid(); }

private:
    QTemporaryDir m_folder;
    QStringList m_locked;
    DiskFileManager m_files;
};

class SimulatedSubject final : public Subject {
public:
    FileManager& files() override { return m_files; }
    QString folder() const override { return u"/Users/alex/Documents"_s; }
    void link(const QString& path, const QString& target) override {
        m_mac.mac.volume(macsim::Actor::User).createLink(path, target);
    }
    bool lock(const QString& folder) override {
        m_mac.mac.volume(macsim::Actor::Root).setOwner(folder, macsim::Actor::Root);
        return true;
    }
    quint32 userId() const override { return 501; }

private:
    macsim::SimulatedMacFolder m_mac;
    SimulatedFileManager m_files{m_mac.mac.volume(macsim::Actor::User)};
};

class MemorySubject final : public Subject {
public:
    MemorySubject() { m_files.addFolders(folder()); }
    FileManager& files() override { return m_files; }
    QString folder() const override { return u"/Users/alex/Documents"_s; }
    void link(const QString& path, const QString& target) override { m_files.addLink(path, target); }
    bool lock(const QString& folder) override {
        m_files.makeUnwritable(folder);
        return true;
    }
    quint32 userId() const override { return MemoryFileManager::kUser; }

private:
    MemoryFileManager m_files;
};

using MakeSubject = std::unique_ptr<Subject> (*)();

class FileManagerContract : public ::testing::TestWithParam<MakeSubject> {
protected:
    QString path(const QString& name) const { return subject->folder() + u'/' + name; }
    QStringList sortedNames() {
        QStringList names = files.list(subject->folder());
        names.sort();
        return names;
    }

    std::unique_ptr<Subject> subject = GetParam()();
    FileManager& files = subject->files();
};

} // namespace

TEST_P(FileManagerContract, whatWasWrittenIsRead) {
    const QByteArray bytes("a\0b\xff\n", 5);
    files.writeAtomically(path(u"one.json"_s), bytes);
    EXPECT_EQ(files.read(path(u"one.json"_s)), bytes);
    EXPECT_TRUE(files.exists(path(u"one.json"_s)));
    files.writeAtomically(path(u"one.json"_s), {});
    EXPECT_EQ(files.read(path(u"one.json"_s)), QByteArray());
}

TEST_P(FileManagerContract, aWriteLeavesNothingElseBehind) {
    files.writeAtomically(path(u"one"_s), "1");
    files.writeAtomically(path(u"one"_s), "2");
    EXPECT_EQ(sortedNames(), QStringList(u"one"_s));
}

TEST_P(FileManagerContract, hiddenNamesAreListed) {
    files.writeAtomically(path(u".hidden"_s), "1");
    files.createFolders(path(u"folder"_s));
    EXPECT_EQ(sortedNames(), QStringList({u".hidden"_s, u"folder"_s}));
}

TEST_P(FileManagerContract, aLinkAtTheNameIsReplacedAndNotFollowed) {
    files.writeAtomically(path(u"target"_s), "old");
    subject->link(path(u"link"_s), path(u"target"_s));
    files.writeAtomically(path(u"link"_s), "new");
    EXPECT_EQ(files.read(path(u"target"_s)), "old");
    EXPECT_EQ(files.read(path(u"link"_s)), "new");
}

TEST_P(FileManagerContract, moveReplacesAndRemoveRemoves) {
    files.writeAtomically(path(u"a"_s), "1");
    files.writeAtomically(path(u"b"_s), "2");
    files.move(path(u"a"_s), path(u"b"_s));
    EXPECT_FALSE(files.exists(path(u"a"_s)));
    EXPECT_EQ(files.read(path(u"b"_s)), "1");
    files.remove(path(u"b"_s));
    EXPECT_TRUE(sortedNames().isEmpty());
}

TEST_P(FileManagerContract, createFoldersMakesParentsAndAcceptsExistingOnes) {
    files.createFolders(path(u"a/b/c"_s));
    files.createFolders(path(u"a/b/c"_s));
    EXPECT_EQ(files.list(path(u"a/b"_s)), QStringList(u"c"_s));
}

TEST_P(FileManagerContract, everyFailureIsAFileError) {
    files.writeAtomically(path(u"file"_s), "1");
    files.createFolders(path(u"full/inside"_s));
    EXPECT_THROW(files.read(path(u"missing"_s)), FileError);
    EXPECT_THROW(files.read(path(u"full"_s)), FileError);
    EXPECT_THROW(files.list(path(u"missing"_s)), FileError);
    EXPECT_THROW(files.list(path(u"file"_s)), FileError);
    EXPECT_THROW(files.writeAtomically(path(u"missing/x"_s), "1"), FileError);
    EXPECT_THROW(files.writeAtomically(path(u"full"_s), "1"), FileError);
    EXPECT_THROW(files.move(path(u"missing"_s), path(u"x"_s)), FileError);
    EXPECT_THROW(files.remove(path(u"missing"_s)), FileError);
    EXPECT_THROW(files.remove(path(u"full"_s)), FileError);
    EXPECT_THROW(files.createFolders(path(u"file/x"_s)), FileError);
    EXPECT_EQ(sortedNames(), QStringList({u"file"_s, u"full"_s}));
}

TEST_P(FileManagerContract, anErrorNamesThePath) {
    try {
        files.read(path(u"missing"_s));
        FAIL() << "nothing was thrown";
    } catch (const FileError& error) {
        EXPECT_EQ(error.message(), path(u"missing"_s) + u": No such file or directory"_s);
    }
}

TEST_P(FileManagerContract, theStatusTellsWhatStandsAtThePathItself) {
    files.writeAtomically(path(u"file"_s), "1");
    files.createFolders(path(u"folder"_s));
    subject->link(path(u"to file"_s), path(u"file"_s));
    subject->link(path(u"to folder"_s), u"folder"_s);
    subject->link(path(u"dangling"_s), path(u"gone"_s));
    subject->link(path(u"circle"_s), u"circle"_s);
    using Kind = FileStatus::Kind;
    const quint32 user = subject->userId();
    EXPECT_EQ(files.status(path(u"file"_s)), (FileStatus{Kind::File, user}));
    EXPECT_EQ(files.status(path(u"folder"_s)), (FileStatus{Kind::Folder, user}));
    for (const QString& link : {u"to file"_s, u"to folder"_s, u"dangling"_s, u"circle"_s}) {
        EXPECT_EQ(files.status(path(link)), (FileStatus{Kind::Link, user})) << link.toStdString();
    }
    for (const QString& missing : {u"gone"_s, u"file/x"_s, u"gone/x"_s, u"circle/x"_s}) {
        EXPECT_EQ(files.status(path(missing)), (FileStatus{Kind::Missing, 0})) << missing.toStdString();
    }
}

TEST_P(FileManagerContract, linksAreFollowedToWhatCanBeReached) {
    files.writeAtomically(path(u"file"_s), "1");
    files.createFolders(path(u"folder"_s));
    files.writeAtomically(path(u"folder/inside"_s), "2");
    subject->link(path(u"to file"_s), path(u"file"_s));
    subject->link(path(u"to folder"_s), u"folder"_s);
    subject->link(path(u"dangling"_s), path(u"gone"_s));
    subject->link(path(u"circle"_s), u"circle"_s);
    EXPECT_EQ(files.read(path(u"to file"_s)), "1");
    EXPECT_EQ(files.read(path(u"to folder/inside"_s)), "2");
    EXPECT_EQ(files.list(path(u"to folder"_s)), QStringList(u"inside"_s));
    EXPECT_TRUE(files.exists(path(u"to folder"_s)));
    for (const QString& nowhere : {u"dangling"_s, u"circle"_s}) {
        EXPECT_FALSE(files.exists(path(nowhere))) << nowhere.toStdString();
        EXPECT_THROW(files.read(path(nowhere)), FileError) << nowhere.toStdString();
        EXPECT_THROW(files.list(path(nowhere)), FileError) << nowhere.toStdString();
    }
}

TEST_P(FileManagerContract, whatIsWritableGoesByTheRightsBehindALink) {
    files.writeAtomically(path(u"file"_s), "1");
    files.createFolders(path(u"folder"_s));
    files.createFolders(path(u"locked"_s));
    subject->link(path(u"to file"_s), path(u"file"_s));
    subject->link(path(u"to locked"_s), path(u"locked"_s));
    subject->link(path(u"dangling"_s), path(u"gone"_s));
    for (const QString& writable : {u"file"_s, u"folder"_s, u"locked"_s, u"to file"_s, u"to locked"_s}) {
        EXPECT_TRUE(files.isWritable(path(writable))) << writable.toStdString();
    }
    for (const QString& missing : {u"gone"_s, u"dangling"_s, u"file/x"_s}) {
        EXPECT_FALSE(files.isWritable(path(missing))) << missing.toStdString();
    }
    if (!subject->lock(path(u"locked"_s))) {
        EXPECT_TRUE(files.isWritable(path(u"locked"_s))) << "no folder is locked for root";
        return;
    }
    EXPECT_FALSE(files.isWritable(path(u"locked"_s)));
    EXPECT_FALSE(files.isWritable(path(u"to locked"_s)));
    EXPECT_THROW(files.writeAtomically(path(u"locked/new"_s), "1"), FileError);
    EXPECT_THROW(files.createFolders(path(u"locked/new/deep"_s)), FileError);
    EXPECT_EQ(files.list(path(u"locked"_s)), QStringList());
}

TEST_P(FileManagerContract, aResolvedPathHasNoLinksAndNoDots) {
    files.createFolders(path(u"deep/inner"_s));
    files.writeAtomically(path(u"deep/file"_s), "1");
    subject->link(path(u"link"_s), path(u"deep/inner"_s));
    subject->link(path(u"chain"_s), u"./link/"_s);
    const QString folder = files.resolved(subject->folder());
    EXPECT_EQ(files.resolved(path(u"deep/file"_s)), folder + u"/deep/file"_s);
    EXPECT_EQ(files.resolved(path(u"deep/./inner/../file"_s)), folder + u"/deep/file"_s);
    EXPECT_EQ(files.resolved(path(u"chain"_s)), folder + u"/deep/inner"_s);
    EXPECT_EQ(files.resolved(path(u"chain/"_s)), folder + u"/deep/inner"_s);
    EXPECT_EQ(files.resolved(path(u"chain/../file"_s)), folder + u"/deep/file"_s);
    EXPECT_EQ(files.resolved(u"/../.."_s), u"/"_s);
}

TEST_P(FileManagerContract, whatIsNotThereCannotBeResolved) {
    files.writeAtomically(path(u"file"_s), "1");
    subject->link(path(u"dangling"_s), path(u"gone"_s));
    subject->link(path(u"circle"_s), u"circle"_s);
    for (const QString& name : {u"gone"_s, u"gone/x"_s, u"dangling"_s, u"circle"_s, u"file/x"_s}) {
        EXPECT_THROW(files.resolved(path(name)), FileError) << name.toStdString();
    }
}

TEST_P(FileManagerContract, removeTreeRemovesAFileALinkAndADeepFolder) {
    files.createFolders(path(u"target/a/b/c/d"_s));
    files.writeAtomically(path(u"target/a/.hidden"_s), "1");
    files.writeAtomically(path(u"target/a/b/file"_s), "1");
    files.writeAtomically(path(u"file"_s), "1");
    subject->link(path(u"link"_s), path(u"target"_s));
    subject->link(path(u"dangling"_s), path(u"gone"_s));
    removeTree(files, path(u"file"_s));
    removeTree(files, path(u"dangling"_s));
    removeTree(files, path(u"link"_s));
    EXPECT_EQ(sortedNames(), QStringList(u"target"_s));
    EXPECT_EQ(files.read(path(u"target/a/b/file"_s)), "1");
    removeTree(files, path(u"target"_s));
    EXPECT_TRUE(sortedNames().isEmpty());
}

TEST_P(FileManagerContract, removeTreeDoesNotFollowTheLinksInside) {
    files.createFolders(path(u"tree/inner"_s));
    files.createFolders(path(u"kept"_s));
    files.writeAtomically(path(u"kept/file"_s), "1");
    subject->link(path(u"tree/to folder"_s), path(u"kept"_s));
    subject->link(path(u"tree/inner/to file"_s), u"../../kept/file"_s);
    subject->link(path(u"tree/inner/up"_s), u"../.."_s);
    removeTree(files, path(u"tree"_s));
    EXPECT_EQ(sortedNames(), QStringList(u"kept"_s));
    EXPECT_EQ(files.read(path(u"kept/file"_s)), "1");
}

TEST_P(FileManagerContract, removeTreeOfWhatIsMissingIsAFileError) {
    files.writeAtomically(path(u"file"_s), "1");
    for (const QString& name : {u"gone"_s, u"gone/x"_s, u"file/x"_s}) {
        EXPECT_THROW(removeTree(files, path(name)), FileError) << name.toStdString();
    }
    EXPECT_EQ(sortedNames(), QStringList(u"file"_s));
}

TEST_P(FileManagerContract, aTreeWithAPartThatStaysIsAFileError) {
    files.createFolders(path(u"tree/locked"_s));
    files.writeAtomically(path(u"tree/locked/file"_s), "1");
    if (!subject->lock(path(u"tree/locked"_s))) {
        removeTree(files, path(u"tree"_s)); // no part is locked for root
        EXPECT_FALSE(files.exists(path(u"tree"_s)));
        return;
    }
    EXPECT_THROW(removeTree(files, path(u"tree"_s)), FileError);
    EXPECT_EQ(files.read(path(u"tree/locked/file"_s)), "1");
}

TEST_P(FileManagerContract, aMovedFolderTakesItsContentsAlong) {
    files.createFolders(path(u"tree/inner"_s));
    files.writeAtomically(path(u"tree/inner/file"_s), "1");
    files.move(path(u"tree"_s), path(u"moved"_s));
    EXPECT_EQ(sortedNames(), QStringList(u"moved"_s));
    EXPECT_EQ(files.read(path(u"moved/inner/file"_s)), "1");
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

INSTANTIATE_TEST_SUITE_P(Disk, FileManagerContract, ::testing::Values(+[]() -> std::unique_ptr<Subject> {
                             return std::make_unique<DiskSubject>();
                         }));
INSTANTIATE_TEST_SUITE_P(Simulated, FileManagerContract, ::testing::Values(+[]() -> std::unique_ptr<Subject> {
                             return std::make_unique<SimulatedSubject>();
                         }));
INSTANTIATE_TEST_SUITE_P(Memory, FileManagerContract, ::testing::Values(+[]() -> std::unique_ptr<Subject> {
                             return std::make_unique<MemorySubject>();
                         }));

} // namespace quorvane
