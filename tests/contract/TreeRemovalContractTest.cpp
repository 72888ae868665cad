// A tree goes from every file manager.

#include "contract/FileContract.h"
#include "platform/TreeRemoval.h"

namespace quorvane {

TEST_P(TreeRemovalContract, removesAFileALinkAndADeepFolder) {
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

TEST_P(TreeRemovalContract, doesNotFollowTheLinksInside) {
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

TEST_P(TreeRemovalContract, ofWhatIsMissingIsAFileError) {
    files.writeAtomically(path(u"file"_s), "1");
    for (const QString& name : {u"gone"_s, u"gone/x"_s, u"file/x"_s}) {
        EXPECT_THROW(removeTree(files, path(name)), FileError) << name.toStdString();
    }
    EXPECT_EQ(sortedNames(), QStringList(u"file"_s));
}

TEST_P(TreeRemovalContract, aTreeWithAPartThatStaysIsAFileError) {
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

TEST_P(TreeRemovalContract, whatGoesByItselfMeanwhileIsNoFailure) {
    for (const QString& name : {u"tree/a"_s, u"tree/folder/inside"_s, u"tree/z"_s}) {
        files.createFolders(path(name).left(path(name).lastIndexOf(u'/')));
        files.writeAtomically(path(name), "1");
    }
    TreeRemoval removal(files, path(u"tree"_s));
    ASSERT_TRUE(removal.step());
    ASSERT_TRUE(removal.step()); // the folder is open, and something of it is known already
    for (const QString& name : {u"tree/a"_s, u"tree/folder/inside"_s, u"tree/folder"_s, u"tree/z"_s}) {
        if (files.exists(path(name))) {
            files.remove(path(name));
        }
    }
    while (removal.step()) {
    }
    EXPECT_EQ(sortedNames(), QStringList());
}

} // namespace quorvane
