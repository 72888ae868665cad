#include "core/Paths.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(Paths, theLastComponentStandsBehindTheLastSlash) {
    EXPECT_EQ(lastPathComponent(u"/Library/LaunchAgents/a.plist"_s), u"a.plist"_s);
    EXPECT_EQ(lastPathComponent(u"/Library/"_s), u""_s);
    EXPECT_EQ(lastPathComponent(u"a.plist"_s), u"a.plist"_s);
    EXPECT_EQ(lastPathComponent({}), u""_s);
}

TEST(Paths, theParentFolderStandsBeforeTheLastSlash) {
    EXPECT_EQ(parentFolder(u"/Library/LaunchAgents/a.plist"_s), u"/Library/LaunchAgents"_s);
    EXPECT_EQ(parentFolder(u"/Library"_s), u""_s);
    EXPECT_EQ(parentFolder(u"/Library/"_s), u"/Library"_s);
}

TEST(Paths, theFoldersAboveComeFromTheOutermostInwards) {
    EXPECT_EQ(foldersAbove(u"/a/b c/d"_s), QStringList({u"/a"_s, u"/a/b c"_s}));
    EXPECT_EQ(foldersAbove(u"/a"_s), QStringList());
    EXPECT_EQ(foldersAbove(u"/"_s), QStringList());
    EXPECT_EQ(foldersAbove({}), QStringList());
}

TEST(Paths, aNameHasNeitherTheExtensionNorASlashAtTheEnd) {
    EXPECT_EQ(nameInPath(u"/Applications/Traktor Pro 3.app"_s), u"Traktor Pro 3"_s);
    EXPECT_EQ(nameInPath(u"/Applications/Traktor Pro 3.app//"_s), u"Traktor Pro 3"_s);
    EXPECT_EQ(nameInPath(u"/usr/local/bin/tool"_s), u"tool"_s);
    EXPECT_EQ(nameInPath(u"/Users/alex/.hidden"_s), u".hidden"_s);
    EXPECT_EQ(nameInPath(u"/"_s), u""_s);
}

} // namespace quorvane
