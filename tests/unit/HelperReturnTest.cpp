#include "startup/background/HelperReturn.h"

#include "fakes/MemoryBundles.h"
#include "fakes/MemoryFileManager.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kQuarantined = u"/Users/alex/.quorvane_backup/bundled-login-items"_s;
const QString kChatApplication = u"/Applications/Chat.app"_s;
const QString kChatHelpers = kChatApplication + u"/Contents/Library/LoginItems"_s;

class HelperReturns : public ::testing::Test {
protected:
    HelperReturns() {
        files.addFile(kQuarantined + u"/com.chat.helper/Helper.app/Contents/MacOS/Helper"_s, "helper");
        files.addFolders(kChatHelpers);
        setVersion(u"com.chat"_s, u"10"_s);
    }
    void setVersion(const QString& identifier, const QString& version) {
        bundles.byPath.insert(kChatApplication,
                              {{u"CFBundleIdentifier"_s, identifier}, {u"CFBundleVersion"_s, version}});
    }
    HelperReturn result() const { return helperReturn(helper, helperCopy(helper, kQuarantined), files, bundles); }

    MemoryFileManager files;
    MemoryBundles bundles;
    TakenHelper helper{
        u"com.chat.helper"_s, kChatHelpers + u"/Helper.app"_s, kChatApplication, {u"com.chat"_s, u"10"_s, {}}};
};

} // namespace

TEST_F(HelperReturns, goBackIntoTheSameVersionOfTheirApplication) {
    EXPECT_EQ(helperCopy(helper, kQuarantined), kQuarantined + u"/com.chat.helper/Helper.app"_s);
    EXPECT_EQ(result(), HelperReturn::GoesBack);
}

TEST_F(HelperReturns, stayAsideWhereTheApplicationIsWholeAgain) {
    files.addFolders(helper.place);
    setVersion(u"com.chat"_s, u"11"_s);
    EXPECT_EQ(result(), HelperReturn::IsWhole);
}

TEST_F(HelperReturns, stayAsideOfAnotherVersionAndOfAnotherApplicationOfTheSameName) {
    setVersion(u"com.chat"_s, u"11"_s);
    EXPECT_EQ(result(), HelperReturn::IsAnotherVersion);
    setVersion(u"org.other"_s, u"10"_s);
    EXPECT_EQ(result(), HelperReturn::IsAnotherVersion);
    bundles.byPath.clear();
    EXPECT_EQ(result(), HelperReturn::IsAnotherVersion) << "the application is gone";
}

TEST_F(HelperReturns, stayAsideWhereNoVersionIsRecorded) {
    bundles.byPath.insert(kChatApplication, {{u"CFBundleIdentifier"_s, u"com.chat"_s}});
    helper.version.version.clear();
    EXPECT_EQ(result(), HelperReturn::IsAnotherVersion);
}

TEST_F(HelperReturns, goNowhereButIntoTheirOwnApplication) {
    const QList<std::pair<QString, QString>> planted{
        {u"/System/Library/LoginItems/Helper.app"_s, kChatApplication},
        {kChatApplication + u"/Contents/MacOS/Helper.app"_s, kChatApplication},
        {kChatHelpers + u"/../../../../Other.app"_s, kChatApplication},
        {kChatHelpers + u"/Deep/Helper.app"_s, kChatApplication},
        {u"/Applications/../Applications/Chat.app/Contents/Library/LoginItems/Helper.app"_s,
         u"/Applications/../Applications/Chat.app"_s},
        {u"/Users/mia/Chat.app/Contents/Library/LoginItems/Helper.app"_s, kChatApplication},
        {u"Chat.app/Contents/Library/LoginItems/Helper.app"_s, u"Chat.app"_s},
        {kChatHelpers + u"/Helper.plist"_s, kChatApplication},
        {kChatHelpers + u"/.."_s, kChatApplication},
    };
    for (const auto& [place, application] : planted) {
        helper.place = place;
        helper.application = application;
        EXPECT_EQ(helperCopy(helper, kQuarantined), QString()) << place.toStdString();
        EXPECT_EQ(result(), HelperReturn::IsNotSafe) << place.toStdString();
    }
}

TEST_F(HelperReturns, comeFromNowhereButTheQuarantine) {
    for (const QString& label : {u"../../Downloads"_s, u".."_s, u"a/b"_s, QString()}) {
        helper.label = label;
        EXPECT_EQ(helperCopy(helper, kQuarantined), QString()) << label.toStdString();
    }
}

TEST_F(HelperReturns, ofApplesLabelsAndOfAudioSoftwareStay) {
    for (const QString& label : {u"com.apple.helper"_s, u"com.quorvane.helper"_s, u"com.native-instruments.helper"_s}) {
        helper.label = label;
        files.addFile(kQuarantined + u'/' + label + u"/Helper.app/x"_s, "helper");
        EXPECT_EQ(result(), HelperReturn::IsNotSafe) << label.toStdString();
    }
}

TEST_F(HelperReturns, goThroughNoLink) {
    files.removeAsRoot(kChatHelpers);
    files.addFolders(u"/Users/alex/Elsewhere"_s);
    files.addLink(kChatHelpers, u"/Users/alex/Elsewhere"_s);
    EXPECT_EQ(result(), HelperReturn::IsNotSafe);
}

TEST_F(HelperReturns, areNoLinksThemselves) {
    const QString copy = helperCopy(helper, kQuarantined);
    files.removeAsRoot(copy);
    files.addFolders(u"/Users/alex/Elsewhere.app"_s);
    files.addLink(copy, u"/Users/alex/Elsewhere.app"_s);
    EXPECT_EQ(result(), HelperReturn::IsNotSafe);
    files.removeAsRoot(kQuarantined + u"/com.chat.helper"_s);
    files.addFolders(u"/Users/alex/Elsewhere/Helper.app"_s);
    files.addLink(kQuarantined + u"/com.chat.helper"_s, u"/Users/alex/Elsewhere"_s);
    EXPECT_EQ(result(), HelperReturn::IsNotSafe) << "nor is their folder";
}

TEST_F(HelperReturns, stayWhereTheUserMayNotWrite) {
    files.makeUnwritable(kChatHelpers);
    EXPECT_EQ(result(), HelperReturn::IsNotSafe);
}

TEST_F(HelperReturns, stayAsAFileWhereAFolderIsExpected) {
    const QString copy = helperCopy(helper, kQuarantined);
    files.removeAsRoot(copy);
    files.addFile(copy, "no bundle");
    EXPECT_EQ(result(), HelperReturn::IsNotSafe);
}

TEST_F(HelperReturns, thatNoRecordTellsOfAreFound) {
    files.addFile(kQuarantined + u"/com.old/Old.plist"_s, "plist");
    files.addFile(kQuarantined + u"/com.old/notes.txt"_s, "no helper");
    EXPECT_EQ(unrecordedHelpers(kQuarantined, {helperCopy(helper, kQuarantined)}, files),
              QStringList(kQuarantined + u"/com.old/Old.plist"_s));
}

} // namespace quorvane
