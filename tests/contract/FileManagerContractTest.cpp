// What every file manager promises, whichever files it works on.

#include "fakes/SimulatedMacFolder.h"
#include "platform/portable/DiskFileManager.h"
#include "platform/simulated/SimulatedFileManager.h"

#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

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
};

class DiskSubject final : public Subject {
public:
    FileManager& files() override { return m_files; }
    QString folder() const override { return m_folder.path(); }
    void link(const QString& path, const QString& target) override { QFile::link(target, path); }

private:
    QTemporaryDir m_folder;
    DiskFileManager m_files;
};

class SimulatedSubject final : public Subject {
public:
    FileManager& files() override { return m_files; }
    QString folder() const override { return u"/Users/alex/Documents"_s; }
    void link(const QString& path, const QString& target) override {
        m_mac.mac.volume(macsim::Actor::User).createLink(path, target);
    }

private:
    macsim::SimulatedMacFolder m_mac;
    SimulatedFileManager m_files{m_mac.mac.volume(macsim::Actor::User)};
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

INSTANTIATE_TEST_SUITE_P(Disk, FileManagerContract, ::testing::Values(+[]() -> std::unique_ptr<Subject> {
                             return std::make_unique<DiskSubject>();
                         }));
INSTANTIATE_TEST_SUITE_P(Simulated, FileManagerContract, ::testing::Values(+[]() -> std::unique_ptr<Subject> {
                             return std::make_unique<SimulatedSubject>();
                         }));

} // namespace quorvane
