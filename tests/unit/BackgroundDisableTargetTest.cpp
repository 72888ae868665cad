#include "startup/background/BackgroundDisableTarget.h"

#include "fakes/MemoryFileManager.h"
#include "platform/TreeRemoval.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Operation = MemoryFileManager::Operation;

const QString kApp = u"/Applications/Drop Box.app"_s;
const QString kLoginItems = kApp + u"/Contents/Library/LoginItems/"_s;
const QString kLaunchAgents = kApp + u"/Contents/Library/LaunchAgents/"_s;

BackgroundTaskItem record(const QString& name, const QString& label, const std::optional<QString>& parent,
                          const std::optional<QString>& url = std::nullopt) {
    return {name, std::nullopt, u"4."_s + label, u"login item (0x4)"_s, u"[enabled]"_s, parent, std::nullopt, url};
}

BackgroundTaskItem application(const QString& label, const std::optional<QString>& url) {
    return {u"App "_s + label, label, u"2."_s + label, u"app (0x2)"_s, u"[enabled]"_s, std::nullopt, std::nullopt, url};
}

class BackgroundDisableTargetTest : public ::testing::Test {
protected:
    void addBundle(const QString& path) { files.addFile(path + u"/Contents/Info.plist"_s, {}); }

    QStringList resources(const QString& app = kApp) const {
        QStringList paths;
        for (const QUrl& url : bundledStartupResources(QUrl::fromLocalFile(app), files)) {
            paths.append(url.toLocalFile());
        }
        return paths;
    }

    /// Each target as "{label} of {application}, record {name}, {resource}".
    QStringList targets(const QList<BackgroundTaskItem>& records, const QList<BackgroundTaskItem>& list,
                        const QSet<QString>& labels = {}) const {
        QStringList lines;
        for (const BackgroundDisableTarget& target :
             backgroundDisableTargets(records, labels, BackgroundTaskList(list), files)) {
            const QString resource = target.bundledResourceURL ? target.bundledResourceURL->toLocalFile() : u"-"_s;
            lines.append(u"%1 of %2, record %3, %4"_s.arg(target.label, target.parentAppURL.toLocalFile(),
                                                          target.item ? target.item->name : u"-"_s, resource));
        }
        return lines;
    }

    MemoryFileManager files;
};

// ---- Resources

TEST_F(BackgroundDisableTargetTest, theResourcesAreEmbeddedLoginItemsAndThenLaunchAgents) {
    files.addFile(kLaunchAgents + u"com.b.plist"_s, {});
    files.addFile(kLaunchAgents + u"com.a.plist"_s, {});
    files.addFile(kLaunchAgents + u"readme.txt"_s, {});
    addBundle(kLaunchAgents + u"Not Here.app"_s);
    addBundle(kLoginItems + u"Helper.app"_s);
    files.addFile(kLoginItems + u"com.c.plist"_s, {});
    files.addFile(kApp + u"/Contents/Library/LaunchDaemons/com.d.plist"_s, {});
    files.addFile(kApp + u"/Contents/MacOS/main.app"_s, {});
    EXPECT_EQ(resources(), (QStringList{kLoginItems + u"Helper.app"_s, kLaunchAgents + u"com.a.plist"_s,
                                        kLaunchAgents + u"com.b.plist"_s}));
}

TEST_F(BackgroundDisableTargetTest, anApplicationWithoutThoseFoldersHasNoResources) {
    addBundle(kApp);
    EXPECT_EQ(resources(), QStringList());
    EXPECT_EQ(resources(u"/Applications/Gone.app"_s), QStringList());
    EXPECT_EQ(bundledStartupResources(QUrl(), files), QList<QUrl>());
}

TEST_F(BackgroundDisableTargetTest, aFolderThatCantBeListedGivesNothing) {
    addBundle(kLoginItems + u"Helper.app"_s);
    files.addFile(kLaunchAgents + u"com.a.plist"_s, {});
    files.failOn(Operation::List, kApp + u"/Contents/Library/LoginItems"_s);
    EXPECT_EQ(resources(), QStringList(kLaunchAgents + u"com.a.plist"_s));
}

TEST_F(BackgroundDisableTargetTest, aFileInTheFoldersPlaceGivesNothing) {
    files.addFile(kApp + u"/Contents/Library/LoginItems"_s, {});
    EXPECT_EQ(resources(), QStringList());
}

TEST_F(BackgroundDisableTargetTest, aLinkThatLeadsOutsideIsNoResource) {
    addBundle(u"/Applications/Other.app"_s);
    files.addFile(u"/Library/LaunchAgents/com.x.plist"_s, {});
    files.addLink(kLoginItems + u"Other.app"_s, u"/Applications/Other.app"_s);
    files.addLink(kLoginItems + u"Up.app"_s, u"../../../../Other.app"_s);
    files.addLink(kLoginItems + u"Gone.app"_s, u"/Applications/Gone.app"_s);
    files.addLink(kLoginItems + u"Circle.app"_s, u"Circle.app"_s);
    files.addLink(kLoginItems + u"Self.app"_s, kApp);
    files.addLink(kLaunchAgents + u"com.x.plist"_s, u"/Library/LaunchAgents/com.x.plist"_s);
    EXPECT_EQ(resources(), QStringList());
}

TEST_F(BackgroundDisableTargetTest, aFolderThatLeadsOutsideHoldsNoResources) {
    addBundle(u"/Users/alex/Things/Helper.app"_s);
    files.addFile(u"/Library/LaunchAgents/com.x.plist"_s, {});
    files.addLink(kApp + u"/Contents/Library/LoginItems"_s, u"/Users/alex/Things"_s);
    files.addLink(kApp + u"/Contents/Library/LaunchAgents"_s, u"/Library/LaunchAgents"_s);
    EXPECT_EQ(resources(), QStringList());
}

TEST_F(BackgroundDisableTargetTest, anotherApplicationsLibraryIsOutsideThoughItsNameBeginsAlike) {
    addBundle(u"/Applications/Drop Box.app2/Contents/Library/LoginItems/Helper.app"_s);
    files.addLink(kLoginItems + u"Helper.app"_s,
                  u"/Applications/Drop Box.app2/Contents/Library/LoginItems/Helper.app"_s);
    files.addLink(kLaunchAgents + u"com.x.plist"_s, kApp + u"/Contents/Library2/com.x.plist"_s);
    files.addFile(kApp + u"/Contents/Library2/com.x.plist"_s, {});
    EXPECT_EQ(resources(), QStringList());
}

TEST_F(BackgroundDisableTargetTest, anApplicationReachedThroughALinkKeepsItsResources) {
    addBundle(kLoginItems + u"Helper.app"_s);
    files.addLink(u"/Users/alex/Box.app"_s, kApp);
    EXPECT_EQ(resources(u"/Users/alex/Box.app"_s),
              QStringList(u"/Users/alex/Box.app/Contents/Library/LoginItems/Helper.app"_s));
}

TEST_F(BackgroundDisableTargetTest, theApplicationsPathIsTakenInItsStandardForm) {
    addBundle(kLoginItems + u"Helper.app"_s);
    EXPECT_EQ(resources(u"/Applications/../Applications/./Drop Box.app/"_s),
              QStringList(kLoginItems + u"Helper.app"_s));
}

// ---- Targets

TEST_F(BackgroundDisableTargetTest, theParentIsFoundThroughTheListOfRecords) {
    addBundle(kLoginItems + u"com.x.helper.app"_s);
    const BackgroundTaskItem helper = record(u"Helper"_s, u"com.x.helper"_s, u"2.COM.X.app"_s);
    EXPECT_EQ(targets({helper}, {helper, application(u"com.x.app"_s, u"file:///Applications/Drop%20Box.app/"_s)}),
              QStringList(u"com.x.helper of /Applications/Drop Box.app, record Helper, "_s + kLoginItems +
                          u"com.x.helper.app"_s));
}

TEST_F(BackgroundDisableTargetTest, anApplicationIsItsOwnParent) {
    addBundle(kApp);
    const BackgroundTaskItem app = application(u"com.x.app"_s, u"file:///Applications/Drop%20Box.app/"_s);
    EXPECT_EQ(targets({app}, {app}),
              QStringList(u"com.x.app of /Applications/Drop Box.app, record App com.x.app, -"_s));
}

TEST_F(BackgroundDisableTargetTest, aRecordWithoutAKnownApplicationIsNoTarget) {
    const BackgroundTaskItem app = application(u"com.x.app"_s, u"file:///Applications/X.app/"_s);
    for (const std::optional<QString>& parent :
         {std::optional<QString>(), std::optional(u""_s), std::optional(u"2.com.y"_s), std::optional(u"Vendor"_s)}) {
        SCOPED_TRACE(parent.value_or(u"none"_s).toStdString());
        EXPECT_EQ(targets({record(u"Helper"_s, u"com.h"_s, parent, u"file:///Applications/X.app/"_s)}, {app}),
                  QStringList());
    }
}

TEST_F(BackgroundDisableTargetTest, aRecordWithoutALabelIsNoTarget) {
    BackgroundTaskItem nobody = record(u"Helper"_s, u""_s, u"2.com.x.app"_s);
    EXPECT_EQ(targets({nobody}, {application(u"com.x.app"_s, u"/Applications/X.app"_s)}), QStringList());
}

TEST_F(BackgroundDisableTargetTest, anApplicationIsKnownByAFileUrlOrAnAbsolutePath) {
    struct Row {
        std::optional<QString> url;
        QString path; ///< empty where it isn't known
    };
    const QList<Row> rows{
        {u"file:///Applications/My%20App.app/"_s, u"/Applications/My App.app"_s},
        {u"file:///Applications/X.app"_s, u"/Applications/X.app"_s},
        {u"/Applications/My App.app"_s, u"/Applications/My App.app"_s},
        {u"/Applications/100% #1?.app/"_s, u"/Applications/100% #1?.app"_s},
        {u"/Applications/../Applications//X.app"_s, u"/Applications/X.app"_s},
        {u"Contents/Library/LoginItems/X.app"_s, u""_s},
        {u"https://example.com/X.app"_s, u""_s},
        {u"file:X.app"_s, u""_s},
        {u"file://"_s, u""_s},
        {u"(null)"_s, u""_s},
        {u""_s, u""_s},
        {std::nullopt, u""_s},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.url.value_or(u"none"_s).toStdString());
        const BackgroundTaskItem helper = record(u"H"_s, u"com.h"_s, u"2.com.x"_s);
        const QStringList expected =
            row.path.isEmpty() ? QStringList() : QStringList(u"com.h of %1, record H, -"_s.arg(row.path));
        EXPECT_EQ(targets({helper}, {application(u"com.x"_s, row.url)}), expected);
    }
}

TEST_F(BackgroundDisableTargetTest, aHelpersFileIsFoundByTheRecordsPathOrByALooseMatchOfTheLabel) {
    struct Row {
        QString label;
        std::optional<QString> url;
        QString file;
        bool matches;
    };
    const QList<Row> rows{
        {u"com.getdropbox.dropbox.helper"_s, {}, u"com.getdropbox.dropbox.helper.app"_s, true},
        {u"com.getdropbox.dropbox.helper"_s, {}, u"Dropbox Helper.app"_s, true},
        {u"com.getdropbox.dropbox.helper"_s, {}, u"DropboxHelper.app"_s, true},
        {u"com.getdropbox.dropbox.helper"_s, {}, u"HELPER.app"_s, true},
        {u"com.getdropbox.dropbox-helper"_s, {}, u"Dropbox_Helper.app"_s, true},
        {u"com.getdropbox.dropbox.helper"_s, {}, u"Dropbox.app"_s, false},
        {u"com.getdropbox.dropbox.helper"_s, {}, u"Updater.app"_s, false},
        {u"com.getdropbox.dropbox.helper"_s, {}, u"box helper.app"_s, false},
        {u"com.x.helper"_s, {}, u"My com.x.helper.app"_s, false},
        {u"com.x.helper"_s, {}, u"---.app"_s, false},
        {u"com.y"_s, u"Contents/Library/LoginItems/My Agent.app"_s, u"My Agent.app"_s, true},
        {u"com.y"_s, u"Contents/Library/LoginItems/My%20Agent.app/"_s, u"My Agent.app"_s, true},
        {u"com.y"_s, u"file:///Applications/Drop%20Box.app/Contents/Library/LoginItems/A.app"_s, u"A.app"_s, true},
        {u"com.y"_s, u"Contents/Library/LoginItems/BA.app"_s, u"A.app"_s, false},
        {u"com.y"_s, u""_s, u"A.app"_s, false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE((row.label + u" "_s + row.file).toStdString());
        addBundle(kLoginItems + row.file);
        EXPECT_EQ(targets({record(u"H"_s, row.label, u"2.com.x"_s, row.url)}, {application(u"com.x"_s, kApp)}),
                  QStringList(u"%1 of %2, record H, "_s.arg(row.label, kApp) +
                              (row.matches ? kLoginItems + row.file : u"-"_s)));
        removeTree(files, kApp);
    }
}

TEST_F(BackgroundDisableTargetTest, aResourceBelongsToOneTarget) {
    addBundle(kLoginItems + u"Helper.app"_s);
    const BackgroundTaskItem app = application(u"com.x"_s, kApp);
    EXPECT_EQ(
        targets({record(u"first"_s, u"a.helper"_s, u"2.com.x"_s), record(u"second"_s, u"b.helper"_s, u"2.com.x"_s)},
                {app}),
        (QStringList{u"a.helper of %1, record first, %2Helper.app"_s.arg(kApp, kLoginItems),
                     u"b.helper of %1, record second, -"_s.arg(kApp)}));
}

TEST_F(BackgroundDisableTargetTest, aLaunchAgentInTheApplicationNamedAfterALabelIsATargetOfItsOwn) {
    files.addFile(kLaunchAgents + u"com.x.updater.plist"_s, {});
    files.addFile(kLaunchAgents + u"com.x.other.plist"_s, {});
    addBundle(kLoginItems + u"com.x.updater.app"_s);
    const BackgroundTaskItem helper = record(u"H"_s, u"com.x.none"_s, u"2.com.x"_s);
    EXPECT_EQ(targets({helper}, {application(u"com.x"_s, kApp)}, {u"com.x.updater"_s, u"other"_s, u"com.x"_s}),
              (QStringList{u"com.x.none of %1, record H, -"_s.arg(kApp),
                           u"com.x.updater of %1, record -, %2com.x.updater.plist"_s.arg(kApp, kLaunchAgents)}));
}

TEST_F(BackgroundDisableTargetTest, aRecordWithBothAHelperAndALaunchAgentGivesTwoTargets) {
    addBundle(kLoginItems + u"com.x.h.app"_s);
    files.addFile(kLaunchAgents + u"com.x.h.plist"_s, {});
    const BackgroundTaskItem helper = record(u"H"_s, u"com.x.h"_s, u"2.com.x"_s);
    EXPECT_EQ(targets({helper}, {application(u"com.x"_s, kApp)}),
              (QStringList{u"com.x.h of %1, record H, %2com.x.h.app"_s.arg(kApp, kLoginItems),
                           u"com.x.h of %1, record -, %2com.x.h.plist"_s.arg(kApp, kLaunchAgents)}));
}

TEST_F(BackgroundDisableTargetTest, labelsWithoutARecordInTheApplicationGiveNoTarget) {
    files.addFile(kLaunchAgents + u"com.x.updater.plist"_s, {});
    EXPECT_EQ(targets({}, {application(u"com.x"_s, kApp)}, {u"com.x.updater"_s}), QStringList());
}

TEST_F(BackgroundDisableTargetTest, aLinkThatLeadsOutsideNeverBecomesATargetsResource) {
    files.addFile(u"/Library/LaunchAgents/com.x.h.plist"_s, {});
    files.addLink(kLaunchAgents + u"com.x.h.plist"_s, u"/Library/LaunchAgents/com.x.h.plist"_s);
    const BackgroundTaskItem helper = record(u"H"_s, u"com.x.h"_s, u"2.com.x"_s);
    EXPECT_EQ(targets({helper}, {application(u"com.x"_s, kApp)}, {u"com.x.h"_s}),
              QStringList(u"com.x.h of %1, record H, -"_s.arg(kApp)));
}

// ---- Protection

TEST(BackgroundDisableTarget, audioSoftwareIsProtectedByAnythingThatNamesIt) {
    const BackgroundDisableTarget plain{u"com.x"_s, QUrl::fromLocalFile(u"/Applications/X.app"_s),
                                        record(u"H"_s, u"com.x"_s, {}),
                                        QUrl::fromLocalFile(u"/Applications/X.app/Contents/H.app"_s)};
    EXPECT_FALSE(isProtectedTarget(plain));

    BackgroundDisableTarget byLabel = plain;
    byLabel.label = u"com.ableton.x"_s;
    BackgroundDisableTarget byApplication = plain;
    byApplication.parentAppURL = QUrl::fromLocalFile(u"/Applications/Native Instruments/X.app"_s);
    BackgroundDisableTarget byResource = plain;
    byResource.bundledResourceURL = QUrl::fromLocalFile(u"/Applications/X.app/Contents/Plug-In Scan.app"_s);
    BackgroundDisableTarget byRecord = plain;
    byRecord.item->parentIdentifier = u"2.com.serato"_s;
    for (const BackgroundDisableTarget& target : {byLabel, byApplication, byResource, byRecord}) {
        EXPECT_TRUE(isProtectedTarget(target));
    }
    EXPECT_FALSE(isProtectedTarget({u"com.x"_s, plain.parentAppURL, std::nullopt, std::nullopt}));
}

// ---- Quarantine

TEST(BackgroundDisableTarget, theQuarantineLiesInTheBackupFolder) {
    EXPECT_EQ(quarantineFolder(u"/Users/alex"_s), u"/Users/alex/.quorvane_backup/bundled-login-items"_s);
}

TEST_F(BackgroundDisableTargetTest, theFileThatARecordNamesIsItsHelperWhateverItsLabelSays) {
    addBundle(kLoginItems + u"Helper.app"_s);
    addBundle(kLoginItems + u"Sync.app"_s);
    const BackgroundTaskItem app = application(u"com.acme"_s, kApp);
    const BackgroundTaskItem sync =
        record(u"Sync"_s, u"com.acme.sync.helper"_s, u"2.com.acme"_s, u"Contents/Library/LoginItems/Sync.app"_s);
    EXPECT_EQ(targets({sync}, {app, sync}),
              QStringList(u"com.acme.sync.helper of "_s + kApp + u", record Sync, "_s + kLoginItems + u"Sync.app"_s));
}

TEST_F(BackgroundDisableTargetTest, aFileThatAStayingRecordNamesIsNotTaken) {
    addBundle(kLoginItems + u"Helper.app"_s);
    const BackgroundTaskItem app = application(u"com.acme"_s, kApp);
    const BackgroundTaskItem going = record(u"Sync"_s, u"com.acme.sync.helper"_s, u"2.com.acme"_s);
    const BackgroundTaskItem staying =
        record(u"Serato Link"_s, u"com.acme.link"_s, u"2.com.acme"_s, u"Contents/Library/LoginItems/Helper.app"_s);
    EXPECT_EQ(targets({going}, {app, going, staying}),
              QStringList(u"com.acme.sync.helper of "_s + kApp + u", record Sync, -"_s));
}

} // namespace
} // namespace quorvane
