// What every file manager promises, whichever files it works on.

#include "contract/FileContract.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QStringList allOf(FolderEntries& entries) {
    QStringList names;
    while (const std::optional<QString> name = entries.next()) {
        names.append(*name);
    }
    return names;
}

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

TEST_P(FileManagerContract, whatIsNewTakesNothingsPlace) {
    EXPECT_TRUE(files.writeNew(path(u"new"_s), "first"));
    EXPECT_FALSE(files.writeNew(path(u"new"_s), "second"));
    EXPECT_EQ(files.read(path(u"new"_s)), "first");
    files.createFolders(path(u"folder"_s));
    EXPECT_FALSE(files.writeNew(path(u"folder"_s), "bytes"));
    subject->link(path(u"link"_s), path(u"nowhere"_s));
    EXPECT_FALSE(files.writeNew(path(u"link"_s), "bytes"));
    EXPECT_FALSE(files.exists(path(u"nowhere"_s)));
    EXPECT_EQ(sortedNames(), (QStringList{u"folder"_s, u"link"_s, u"new"_s})) << "nothing is left beside it";
    EXPECT_THROW(files.writeNew(path(u"missing/new"_s), "bytes"), FileError);
}

TEST_P(FileManagerContract, whatIsAddedStandsAtTheEnd) {
    files.append(path(u"log"_s), "one\n", FileManager::Flush::No);
    files.append(path(u"log"_s), "two\n", FileManager::Flush::Yes);
    EXPECT_EQ(files.read(path(u"log"_s)), "one\ntwo\n");
    EXPECT_EQ(sortedNames(), QStringList(u"log"_s));
}

TEST_P(FileManagerContract, nothingIsAddedThroughALinkOrToAFolder) {
    files.writeAtomically(path(u"target"_s), "old");
    subject->link(path(u"link"_s), path(u"target"_s));
    EXPECT_THROW(files.append(path(u"link"_s), "new", FileManager::Flush::No), FileError);
    EXPECT_EQ(files.read(path(u"target"_s)), "old");
    files.createFolders(path(u"folder"_s));
    EXPECT_THROW(files.append(path(u"folder"_s), "new", FileManager::Flush::No), FileError);
    EXPECT_THROW(files.append(path(u"missing/log"_s), "new", FileManager::Flush::No), FileError);
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

TEST_P(FileManagerContract, aFolderGivesTheSameNamesInTheSameOrderOneByOne) {
    for (const QString& name : {u"b"_s, u"a"_s, u".hidden"_s, u"Ü"_s, u"c d"_s}) {
        files.writeAtomically(path(name), "1");
    }
    files.createFolders(path(u"folder"_s));
    subject->link(path(u"dangling"_s), path(u"gone"_s));
    EXPECT_EQ(allOf(*files.entries(subject->folder())), files.list(subject->folder()));
    EXPECT_EQ(allOf(*files.entries(path(u"folder"_s))), QStringList());
}

TEST_P(FileManagerContract, anEndedListingStaysEnded) {
    files.writeAtomically(path(u"one"_s), "1");
    const auto entries = files.entries(subject->folder());
    EXPECT_EQ(entries->next(), u"one"_s);
    EXPECT_EQ(entries->next(), std::nullopt);
    EXPECT_EQ(entries->next(), std::nullopt);
}

TEST_P(FileManagerContract, whatHasBeenGivenMayBeRemovedAndTheRestStillComes) {
    QStringList made;
    for (int number = 0; number < 3000; ++number) {
        made.append(u"entry %1"_s.arg(number));
        subject->addEmptyFile(path(made.last()));
    }
    QStringList given;
    const auto entries = files.entries(subject->folder());
    while (const std::optional<QString> name = entries->next()) {
        given.append(*name);
        files.remove(path(*name));
    }
    made.sort();
    given.sort();
    EXPECT_EQ(given, made);
    EXPECT_EQ(sortedNames(), QStringList());
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
    EXPECT_THROW(files.entries(path(u"missing"_s)), FileError);
    EXPECT_THROW(files.entries(path(u"file"_s)), FileError);
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

TEST_P(FileManagerContract, anErrorTellsWhatIsMissingFromWhatMayNotBeRead) {
    const auto causeOfReading = [this](const QString& file) {
        try {
            files.read(file);
        } catch (const FileError& error) {
            return std::optional(error.cause());
        }
        return std::optional<FileError::Cause>();
    };
    files.writeAtomically(path(u"file"_s), "1");
    subject->link(path(u"dangling"_s), path(u"gone"_s));
    EXPECT_EQ(causeOfReading(path(u"file"_s)), std::nullopt);
    for (const QString& missing : {u"gone"_s, u"gone/x"_s, u"file/x"_s, u"dangling"_s}) {
        EXPECT_EQ(causeOfReading(path(missing)), FileError::Cause::Missing) << missing.toStdString();
    }
    EXPECT_EQ(causeOfReading(subject->folder()), FileError::Cause::Other);
    if (const QString closed = subject->unreadableFile(); !closed.isEmpty()) {
        EXPECT_EQ(causeOfReading(closed), FileError::Cause::NotPermitted);
        EXPECT_TRUE(files.exists(closed));
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
    const auto expectKind = [&](const QString& name, Kind kind) {
        const FileStatus status = files.status(path(name));
        EXPECT_EQ(status, (FileStatus{kind, user, status.fileNumber})) << name.toStdString();
        EXPECT_NE(status.fileNumber, 0) << name.toStdString();
    };
    expectKind(u"file"_s, Kind::File);
    expectKind(u"folder"_s, Kind::Folder);
    for (const QString& link : {u"to file"_s, u"to folder"_s, u"dangling"_s, u"circle"_s}) {
        expectKind(link, Kind::Link);
    }
    for (const QString& missing : {u"gone"_s, u"file/x"_s, u"gone/x"_s, u"circle/x"_s}) {
        EXPECT_EQ(files.status(path(missing)), (FileStatus{Kind::Missing, 0})) << missing.toStdString();
    }
}

TEST_P(FileManagerContract, theFileNumberTellsAThingFromWhatTakesItsPlace) {
    files.createFolders(path(u"folder/inside"_s));
    files.writeAtomically(path(u"file"_s), "1");
    files.writeAtomically(path(u"other"_s), "1");
    const quint64 folder = files.status(path(u"folder"_s)).fileNumber;
    const quint64 file = files.status(path(u"file"_s)).fileNumber;
    EXPECT_NE(file, files.status(path(u"other"_s)).fileNumber);
    files.remove(path(u"folder/inside"_s));
    EXPECT_EQ(files.status(path(u"folder"_s)).fileNumber, folder);
    files.writeAtomically(path(u"file"_s), "2");
    EXPECT_NE(files.status(path(u"file"_s)).fileNumber, file);
    files.move(path(u"folder"_s), path(u"moved"_s));
    EXPECT_EQ(files.status(path(u"moved"_s)).fileNumber, folder);
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
    EXPECT_EQ(allOf(*files.entries(path(u"to folder"_s))), QStringList(u"inside"_s));
    EXPECT_TRUE(files.exists(path(u"to folder"_s)));
    for (const QString& nowhere : {u"dangling"_s, u"circle"_s}) {
        EXPECT_FALSE(files.exists(path(nowhere))) << nowhere.toStdString();
        EXPECT_THROW(files.read(path(nowhere)), FileError) << nowhere.toStdString();
        EXPECT_THROW(files.list(path(nowhere)), FileError) << nowhere.toStdString();
        EXPECT_THROW(files.entries(path(nowhere)), FileError) << nowhere.toStdString();
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

TEST_P(FileManagerContract, aMovedFolderTakesItsContentsAlong) {
    files.createFolders(path(u"tree/inner"_s));
    files.writeAtomically(path(u"tree/inner/file"_s), "1");
    files.move(path(u"tree"_s), path(u"moved"_s));
    EXPECT_EQ(sortedNames(), QStringList(u"moved"_s));
    EXPECT_EQ(files.read(path(u"moved/inner/file"_s)), "1");
}

} // namespace quorvane
