#include "maintenance/FolderEmptying.h"

#include "fakes/MemoryFileManager.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Operation = MemoryFileManager::Operation;
using Kind = FileStatus::Kind;

const QString kFolder = u"/Users/alex/Downloads"_s;

class FolderEmptyingTest : public ::testing::Test {
protected:
    QString in(const QString& name) const { return kFolder + u'/' + name; }

    /// What was reported, one line for each entry. No step removes more than one thing.
    QString emptied(const QSet<QString>& spared = {}) {
        QString reports;
        const auto report = [&reports](const QString& name, const std::optional<QString>& error) {
            reports += name + u": "_s + error.value_or(u"gone"_s) + u'\n';
        };
        FolderEmptying emptying(
            files, kFolder, [&spared](const QString& name) { return spared.contains(name); }, report);
        bool goesOn = true;
        while (goesOn) {
            const int changes = files.changes();
            goesOn = emptying.step();
            EXPECT_LE(files.changes(), changes + 1);
        }
        return reports;
    }

    MemoryFileManager files;
};

} // namespace

TEST_F(FolderEmptyingTest, everythingGoesInTheOrderOfTheSystem) {
    files.addFile(in(u"set.zip"_s), "1");
    files.addFile(in(u"Album/CD 1/one.wav"_s), "2");
    files.addFile(in(u"Album/two.wav"_s), "3");
    files.addFolders(in(u"Empty"_s));
    files.addFile(in(u".hidden"_s), "4");
    EXPECT_EQ(emptied(), u"set.zip: gone\nAlbum: gone\nEmpty: gone\n.hidden: gone\n"_s);
    EXPECT_EQ(files.list(kFolder), QStringList());
    EXPECT_EQ(files.status(kFolder).kind, Kind::Folder);
}

TEST_F(FolderEmptyingTest, anEmptyFolderIsDoneAtOnce) {
    files.addFolders(kFolder);
    EXPECT_EQ(emptied(), QString());
}

TEST_F(FolderEmptyingTest, aLinkGoesItselfAlsoOneThatLeadsNowhere) {
    files.addFile(u"/Users/alex/Documents/thesis"_s, "years");
    files.addLink(in(u"Documents"_s), u"/Users/alex/Documents"_s);
    files.addLink(in(u"Folder/inside"_s), u"/Users/alex/Documents"_s);
    files.addLink(in(u"dangling"_s), u"/nowhere"_s);
    EXPECT_EQ(emptied(), u"Documents: gone\nFolder: gone\ndangling: gone\n"_s);
    EXPECT_EQ(files.list(kFolder), QStringList());
    EXPECT_EQ(files.read(u"/Users/alex/Documents/thesis"_s), "years");
}

TEST_F(FolderEmptyingTest, whatIsSparedStaysAndIsNotReported) {
    files.addFile(in(u"a"_s), "1");
    files.addFile(in(u"b/c"_s), "2");
    files.addFile(in(u"d"_s), "3");
    EXPECT_EQ(emptied({u"b"_s}), u"a: gone\nd: gone\n"_s);
    EXPECT_EQ(files.list(kFolder), QStringList(u"b"_s));
    EXPECT_EQ(files.read(in(u"b/c"_s)), "2");
}

TEST_F(FolderEmptyingTest, anEntryThatStaysDoesNotKeepTheNext) {
    files.addFile(in(u"a/kept"_s), "1");
    files.addFile(in(u"b"_s), "2");
    files.failOn(Operation::Remove, in(u"a/kept"_s));
    EXPECT_EQ(emptied(), u"a: /Users/alex/Downloads/a/kept: Operation not permitted\nb: gone\n"_s);
    EXPECT_EQ(files.list(kFolder), QStringList(u"a"_s));
}

TEST_F(FolderEmptyingTest, aFolderThatCannotBeReadIsAnError) {
    EXPECT_THROW(emptied(), FileError);
    files.addFile(kFolder, "no folder");
    EXPECT_THROW(emptied(), FileError);
}

} // namespace quorvane
