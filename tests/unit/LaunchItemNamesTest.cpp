#include "startup/launchd/LaunchItemNames.h"

#include "fakes/MemoryBundles.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

const QString kPlist = u"/Library/LaunchAgents/com.vendor.FileName.plist"_s;

class LaunchItemNamesTest : public ::testing::Test {
protected:
    QString nameOf(const QVariantMap& plist) {
        propertyLists.lists[kPlist] = plist;
        return launchItemDisplayName(kPlist, u"com.vendor.FileName.plist"_s, propertyLists, bundles);
    }

    QString friendlyName(const QVariantMap& information) {
        bundles.byPath[u"/Applications/MyBundle.app"_s] = information;
        return friendlyBundleName(u"/Applications/MyBundle.app"_s, bundles).value_or(u"none"_s);
    }

    MemoryPropertyLists propertyLists;
    MemoryBundles bundles;
};

const QString kFromFileName = u"Vendor File Name"_s;

// ---- The sources of a name, in their order

TEST_F(LaunchItemNamesTest, theProgramsApplicationNamesTheItem) {
    bundles.byPath[u"/Applications/Foo.app"_s] = {{u"CFBundleDisplayName"_s, u"Foo Display"_s}};
    EXPECT_EQ(nameOf({{u"Program"_s, u"/Applications/Foo.app/Contents/MacOS/foo"_s}, {u"Label"_s, u"com.a.label"_s}}),
              u"Foo Display"_s);
}

TEST_F(LaunchItemNamesTest, theApplicationsAmongTheArgumentsNameItWhenTheProgramDoesNot) {
    bundles.byPath[u"/Applications/Second.app"_s] = {};
    bundles.byPath[u"/Applications/Third.app"_s] = {};
    EXPECT_EQ(
        nameOf({{u"Program"_s, u"/usr/bin/open"_s},
                {u"ProgramArguments"_s, QVariantList{u"Applications/Second.app"_s, 7, u"/Applications/Gone.app/x"_s,
                                                     u"/Applications/Third.app/x"_s, u"/Applications/Second.app/x"_s}},
                {u"Label"_s, u"com.a.label"_s}}),
        u"Third"_s);
}

TEST_F(LaunchItemNamesTest, theProgramGoesBeforeTheArguments) {
    bundles.byPath[u"/Applications/First.app"_s] = {};
    bundles.byPath[u"/Applications/Second.app"_s] = {};
    EXPECT_EQ(nameOf({{u"Program"_s, u"/Applications/First.app/x"_s},
                      {u"ProgramArguments"_s, QVariantList{u"/Applications/Second.app/x"_s}}}),
              u"First"_s);
}

TEST_F(LaunchItemNamesTest, anAssociatedBundleNamesItAfterThePrograms) {
    bundles.byIdentifier[u"com.a"_s] = {{u"CFBundleDisplayName"_s, u" "_s}};
    bundles.byIdentifier[u"com.b"_s] = {{u"CFBundleName"_s, u"TheOwner"_s}};
    EXPECT_EQ(nameOf({{u"AssociatedBundleIdentifiers"_s, QVariantList{u"com.gone"_s, u"com.a"_s, u"com.b"_s}},
                      {u"Program"_s, u"/usr/bin/true"_s},
                      {u"Label"_s, u"com.a.label"_s}}),
              u"The Owner"_s);
    EXPECT_EQ(nameOf({{u"AssociatedBundleIdentifiers"_s, u"com.b"_s}}), u"The Owner"_s);
}

TEST_F(LaunchItemNamesTest, theProgramsApplicationGoesBeforeAnAssociatedBundle) {
    bundles.byPath[u"/Applications/Foo.app"_s] = {{u"CFBundleName"_s, u"Started"_s}};
    bundles.byIdentifier[u"com.b"_s] = {{u"CFBundleName"_s, u"Owner"_s}};
    for (const QVariantMap& program :
         {QVariantMap{{u"Program"_s, u"/Applications/Foo.app/x"_s}},
          QVariantMap{{u"ProgramArguments"_s, QVariantList{u"/Applications/Foo.app/x"_s}}}}) {
        QVariantMap plist = program;
        plist.insert(u"AssociatedBundleIdentifiers"_s, QVariantList{u"com.b"_s});
        EXPECT_EQ(nameOf(plist), u"Started"_s);
    }
}

TEST_F(LaunchItemNamesTest, theBundleIdentifierComesAfterTheAssociatedOnes) {
    bundles.byIdentifier[u"com.a"_s] = {{u"CFBundleName"_s, u"Associated"_s}};
    bundles.byIdentifier[u"com.b"_s] = {{u"CFBundleName"_s, u"Own"_s}};
    EXPECT_EQ(
        nameOf({{u"BundleIdentifier"_s, u"com.b"_s}, {u"AssociatedBundleIdentifiers"_s, QVariantList{u"com.a"_s}}}),
        u"Associated"_s);
    EXPECT_EQ(nameOf({{u"BundleIdentifier"_s, u"com.b"_s}, {u"Label"_s, u"com.a.label"_s}}), u"Own"_s);
}

TEST_F(LaunchItemNamesTest, theLabelInWordsNamesItWhenNoBundleDoes) {
    EXPECT_EQ(nameOf({{u"Label"_s, u"com.example.MyHelperTool"_s},
                      {u"BundleIdentifier"_s, u"com.gone"_s},
                      {u"Program"_s, u"/opt/tool"_s}}),
              u"Example My Helper Tool"_s);
    EXPECT_EQ(nameOf({{u"Label"_s, u"com.apple.foo.bar"_s}}), u"Foo Bar"_s);
}

TEST_F(LaunchItemNamesTest, theFileNameInWordsIsTheLastResort) {
    EXPECT_EQ(nameOf({}), kFromFileName);
    EXPECT_EQ(nameOf({{u"Label"_s, u""_s}}), kFromFileName);
    propertyLists.lists.clear(); // damaged, empty, or no dictionary
    EXPECT_EQ(launchItemDisplayName(kPlist, u"com.vendor.FileName.plist"_s, propertyLists, bundles), kFromFileName);
    EXPECT_EQ(launchItemDisplayName(u"/x/com.vendor.tool.agent.plist"_s, u"com.vendor.tool.agent.plist"_s,
                                    propertyLists, bundles),
              u"Vendor Tool"_s);
}

TEST_F(LaunchItemNamesTest, valuesOfAnotherTypeSayNothing) {
    bundles.byPath[u"/Applications/Foo.app"_s] = {{u"CFBundleDisplayName"_s, 5}, {u"CFBundleName"_s, QVariantList{}}};
    EXPECT_EQ(nameOf({{u"Program"_s, 3},
                      {u"ProgramArguments"_s, u"/Applications/Foo.app/x"_s},
                      {u"AssociatedBundleIdentifiers"_s, QVariantMap{}},
                      {u"BundleIdentifier"_s, QVariantList{u"com.b"_s}},
                      {u"Label"_s, true}}),
              kFromFileName);
    EXPECT_EQ(nameOf({{u"Program"_s, u"/Applications/Foo.app/x"_s}}), u"Foo"_s);
}

// ---- The application that holds a path

TEST(LaunchItemNames, theEnclosingApplicationIsTheShortestInApplicationsElseTheOutermost) {
    struct Row {
        QString path;
        std::optional<QString> application;
    };
    const QList<Row> rows{
        {u"/Applications/Foo.app/Contents/MacOS/foo"_s, u"/Applications/Foo.app"_s},
        {u"/Applications/Foo.app/Contents/Library/LoginItems/Bar.app/Contents/MacOS/bar"_s, u"/Applications/Foo.app"_s},
        {u"/Applications/Sub/Foo.app/x/Bar.app/y"_s, u"/Applications/Sub/Foo.app"_s},
        {u"/Library/Vendor/Outer.app/Contents/Inner.app/x"_s, u"/Library/Vendor/Outer.app"_s},
        {u"/Volumes/Disk/Applications/Foo.app/x"_s, u"/Volumes/Disk/Applications/Foo.app"_s},
        {u"/Applications/Foo.app"_s, u"/Applications/Foo.app"_s},
        {u"/Applications/Foo.app/"_s, u"/Applications/Foo.app"_s},
        {u"/Applications/My Foo.app/x y"_s, u"/Applications/My Foo.app"_s},
        {u"/Applications/Foo.application/x"_s, std::nullopt},
        {u"/Applications/Foo/x"_s, std::nullopt},
        {u"/usr/bin/true"_s, std::nullopt},
        {u"/"_s, std::nullopt},
        {u"//"_s, std::nullopt},
        {u""_s, std::nullopt},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.path.toStdString());
        EXPECT_EQ(enclosingApplication(row.path), row.application);
    }
}

// ---- Friendly names

TEST_F(LaunchItemNamesTest, aBundleShowsItsDisplayNameElseItsNameElseItsFileName) {
    EXPECT_EQ(friendlyName({{u"CFBundleDisplayName"_s, u"Display"_s}, {u"CFBundleName"_s, u"Name"_s}}), u"Display"_s);
    EXPECT_EQ(friendlyName({{u"CFBundleDisplayName"_s, u" \n\t"_s}, {u"CFBundleName"_s, u"Name"_s}}), u"Name"_s);
    EXPECT_EQ(friendlyName({{u"CFBundleDisplayName"_s, u""_s}, {u"CFBundleName"_s, u""_s}}), u"My Bundle"_s);
    EXPECT_EQ(friendlyName({}), u"My Bundle"_s);
}

TEST_F(LaunchItemNamesTest, aNameOfOneWordIsSplitAndOneOfSeveralStays) {
    EXPECT_EQ(friendlyName({{u"CFBundleName"_s, u"  MyHelperTool\n"_s}}), u"My Helper Tool"_s);
    EXPECT_EQ(friendlyName({{u"CFBundleName"_s, u" theApp by DJ "_s}}), u"theApp by DJ"_s);
}

TEST_F(LaunchItemNamesTest, withoutABundleThereIsNoFriendlyName) {
    EXPECT_EQ(friendlyBundleName(u"/Applications/Gone.app"_s, bundles), std::nullopt);
    EXPECT_EQ(friendlyBundleName({}, bundles), std::nullopt);
}

TEST_F(LaunchItemNamesTest, aBundleThatIsNoApplicationKeepsItsExtension) {
    bundles.byPath[u"/x/Tool.bundle"_s] = {};
    EXPECT_EQ(friendlyBundleName(u"/x/Tool.bundle"_s, bundles), u"Tool.bundle"_s);
}

// ---- Labels in words

TEST(LaunchItemNames, aLabelInWordsHasNoDomainAndNoEnding) {
    struct Row {
        QString label;
        QString words;
    };
    const QList<Row> rows{
        {u"com.example.MyHelperTool"_s, u"Example My Helper Tool"_s},
        {u"com.apple.foo.bar"_s, u"Foo Bar"_s},
        {u"com.apple"_s, u"Apple"_s},
        {u"COM.Apple.x"_s, u"X"_s},
        {u"org.apple.x"_s, u"X"_s},
        {u"net.vendor.x"_s, u"Vendor X"_s},
        {u"io.vendor"_s, u"Vendor"_s},
        {u"app.vendor"_s, u"Vendor"_s},
        {u"de.vendor.x"_s, u"De Vendor X"_s},
        {u"apple.foo"_s, u"Apple Foo"_s},
        {u"com.com.x"_s, u"Com X"_s},
        {u"com"_s, u"Com"_s},
        {u"com.x.agent.plist"_s, u"X"_s},
        {u"com.x.plist.y.agent"_s, u"X Y"_s},
        {u"com..x.."_s, u"X"_s},
        {u".x"_s, u"X"_s},
        {u"single"_s, u"Single"_s},
        {u"local.back-up_2"_s, u"Local Back-up_2"_s},
        {u"..."_s, u"..."_s},
        {u".plist"_s, u""_s},
        {u""_s, u""_s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.label.toStdString());
        EXPECT_EQ(humanizedLabel(row.label), row.words);
    }
}

TEST_F(LaunchItemNamesTest, aJobIsKnownByALabelThatLaunchctlCanBeTold) {
    EXPECT_EQ(launchJobLabel(kPlist, propertyLists), QString()) << "no property list";
    const QList<QPair<QVariant, QString>> rows{{u"com.vendor.job"_s, u"com.vendor.job"_s},
                                               {u"My Job's \"$(x)\""_s, u"My Job's \"$(x)\""_s},
                                               {u""_s, {}},
                                               {u".."_s, {}},
                                               {u"-x"_s, {}},
                                               {u"a/b"_s, {}},
                                               {u"a\nb"_s, {}},
                                               {7, {}},
                                               {QVariantList{u"com.vendor.job"_s}, {}},
                                               {QVariant(), {}}};
    for (const auto& [value, label] : rows) {
        propertyLists.lists[kPlist] = {{u"Label"_s, value}};
        EXPECT_EQ(launchJobLabel(kPlist, propertyLists), label);
    }
}

TEST(LaunchItemNames, camelCaseIsSplitBeforeAnUpperCaseLetterThatFollowsNone) {
    struct Row {
        QString text;
        QString words;
    };
    const QList<Row> rows{
        {u"MyHelperTool"_s, u"My Helper Tool"_s},
        {u"DJ"_s, u"Dj"_s},
        {u"DJTool"_s, u"Djtool"_s},
        {u"myDJ"_s, u"My Dj"_s},
        {u"helper"_s, u"Helper"_s},
        {u"helper2Go"_s, u"Helper2 Go"_s},
        {u"x-Ray"_s, u"X- Ray"_s},
        {u"  two  Words "_s, u"Two Words"_s},
        {u"éclairÜber"_s, u"Éclair Über"_s},
        {u"🎧Sound"_s, u"🎧 Sound"_s},
        {u"123"_s, u"123"_s},
        {u" "_s, u""_s},
        {u""_s, u""_s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.text.toStdString());
        EXPECT_EQ(splitCamelCaseWords(row.text), row.words);
    }
}

} // namespace
} // namespace quorvane
