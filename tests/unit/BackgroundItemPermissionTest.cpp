#include "startup/background/BackgroundItemPermission.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Kind = StartupItemKind;

/// An active helper that nothing speaks for.
BackgroundTaskItem helper(const QString& name = u"Foo Helper"_s) {
    return {name,
            u"com.foo.helper"_s,
            u"4.com.foo.helper"_s,
            u"login item (0x4)"_s,
            u"[enabled, allowed, notified] (0xb)"_s,
            std::nullopt,
            u"/Applications/Foo.app/Contents/MacOS/run"_s,
            u"file:///Applications/Foo.app/"_s};
}

StartupItem running(Kind kind, const QString& name, const QString& path = {},
                    const std::optional<QString>& launchIdentifier = std::nullopt) {
    StartupItem item;
    item.id = u"id"_s;
    item.name = name;
    item.path = path;
    item.kind = kind;
    item.launchIdentifier = launchIdentifier;
    return item;
}

StartupItem switchedOff(StartupItem item) {
    item.runsAtStartup = false;
    return item;
}

StartupConfiguration configurationOf(const QList<StartupItem>& items) {
    return {items, false, {}};
}

QStringList namesThatGo(const QList<BackgroundTaskItem>& records, const QSet<QString>& permitted = {},
                        const std::optional<StartupConfiguration>& startup = std::nullopt) {
    QStringList names;
    for (const BackgroundTaskItem& record : nonPermittedBackgroundItems(records, permitted, startup)) {
        names.append(record.name);
    }
    return names;
}

TEST(BackgroundItemPermission, aPermittedNameSpeaksForARecord) {
    struct Row {
        QString permitted;
        bool isPermitted;
    };
    const QList<Row> rows{
        {u"Foo Helper"_s, true},     // the name
        {u"foo helper"_s, true},     // in another case
        {u"HELP"_s, true},           // a part of it
        {u"foo"_s, true},            // likewise
        {u"com.foo.helper"_s, true}, // a part of another text
        {u"Foo.App"_s, true},        // of the path
        {u"com foo . helper"_s, false},
        {u"F o o H e l p e r"_s, true}, // blanks don't count in the search text
        {u"/applications/foo.app"_s, true},
        {u"Foo Helper 2"_s, false},
        {u"Bar"_s, false},
        {u"login item"_s, false}, // the type isn't searched
        {u"enabled"_s, false},    // nor the disposition
        {u""_s, false},           // an empty name would permit everything
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.permitted.toStdString());
        EXPECT_EQ(isPermittedBackgroundItem(helper(), {row.permitted}, std::nullopt), row.isPermitted);
        EXPECT_EQ(isPermittedBackgroundItem(helper(), {u"Other"_s, row.permitted}, std::nullopt), row.isPermitted);
    }
}

TEST(BackgroundItemPermission, anApplicationInWordsPermitsItsHelperInReverseDomainNotation) {
    BackgroundTaskItem item = helper(u"agent"_s);
    item.bundleIdentifier = u"com.vendor.djpro.updater"_s;
    EXPECT_TRUE(isPermittedBackgroundItem(item, {u"DJ Pro"_s}, std::nullopt));
    EXPECT_TRUE(isPermittedBackgroundItem(item, {u"Vendor.DJ Pro"_s}, std::nullopt));
    EXPECT_FALSE(isPermittedBackgroundItem(item, {u"DJ-Pro"_s}, std::nullopt));
}

TEST(BackgroundItemPermission, anAccentCountsHoweverItIsWritten) {
    const QString composed = u"ger\u00e4te"_s;
    const QString decomposed = u"gera\u0308te"_s;
    EXPECT_TRUE(isPermittedBackgroundItem(helper(u"GER\u00c4TE-HELFER"_s), {composed}, std::nullopt));
    EXPECT_TRUE(isPermittedBackgroundItem(helper(u"GER\u00c4TE-HELFER"_s), {decomposed}, std::nullopt));
    EXPECT_TRUE(isPermittedBackgroundItem(helper(u"GERA\u0308TE-HELFER"_s), {composed}, std::nullopt));
    EXPECT_FALSE(isPermittedBackgroundItem(helper(u"Gerate-Helfer"_s), {composed}, std::nullopt));

    BackgroundTaskItem byUrl = helper();
    byUrl.url = u"/Applications/Gera\u0308te.app"_s;
    EXPECT_TRUE(isPermittedBackgroundItem(byUrl, {u"Ger \u00e4te"_s}, std::nullopt));
    EXPECT_TRUE(isPermittedBackgroundItem(
        byUrl, {}, configurationOf({running(Kind::loginApp, u"x"_s, u"/applications/ger\u00e4te.app"_s)})));
    EXPECT_TRUE(
        isPermittedBackgroundItem(helper(decomposed), {}, configurationOf({running(Kind::addedApp, composed)})));
}

TEST(BackgroundItemPermission, nothingIsPermittedByNothing) {
    EXPECT_FALSE(isPermittedBackgroundItem(helper(), {}, std::nullopt));
    EXPECT_FALSE(isPermittedBackgroundItem(helper(), {}, StartupConfiguration()));
}

TEST(BackgroundItemPermission, anItemOfTheConfigurationThatRunsSpeaksForARecord) {
    struct Row {
        const char* what;
        StartupItem item;
        bool isPermitted;
    };
    const QList<Row> rows{
        {"label of a background item", running(Kind::backgroundLoginItem, u"x"_s, {}, u"COM.foo.Helper"_s), true},
        {"part of a label", running(Kind::backgroundLoginItem, u"x"_s, {}, u"com.foo"_s), true},
        {"another label", running(Kind::backgroundLoginItem, u"x"_s, {}, u"com.foo.helper2"_s), false},
        {"name in another case", running(Kind::loginApp, u"FOO HELPER"_s), true},
        {"name of an added app", running(Kind::addedApp, u"foo helper"_s), true},
        {"part of the name", running(Kind::loginApp, u"Foo"_s), false},
        {"path in another case", running(Kind::loginApp, u"x"_s, u"/applications/FOO.app"_s), true},
        {"another path", running(Kind::loginApp, u"x"_s, u"/Applications/Foo2.app"_s), false},
        {"launch identifier of an agent", running(Kind::launchAgent, u"x"_s, {}, u"COM.FOO"_s), true},
        {"another launch identifier", running(Kind::launchAgent, u"x"_s, {}, u"com.foo.helper.plist"_s), false},
        {"empty texts", running(Kind::backgroundLoginItem, {}, {}, u""_s), false},
        {"no texts", running(Kind::loginApp, {}), false},
    };
    for (const Row& row : rows) {
        SCOPED_TRACE(row.what);
        EXPECT_EQ(isPermittedBackgroundItem(helper(), {}, configurationOf({row.item})), row.isPermitted);
        EXPECT_FALSE(isPermittedBackgroundItem(helper(), {}, configurationOf({switchedOff(row.item)})));
    }
}

TEST(BackgroundItemPermission, aLabelFromTheIdentifierIsComparedWhole) {
    BackgroundTaskItem item = helper();
    item.bundleIdentifier = std::nullopt;
    item.identifier = u"16.Com.Foo.Daemon"_s;
    EXPECT_TRUE(isPermittedBackgroundItem(
        item, {}, configurationOf({running(Kind::backgroundLoginItem, u"x"_s, {}, u"com.foo.daemon"_s)})));
}

TEST(BackgroundItemPermission, theConfigurationsNetworkAndServicesPermitNothing) {
    const StartupConfiguration configuration{{}, true, {CloudSyncService::dropbox}};
    EXPECT_FALSE(isPermittedBackgroundItem(helper(u"Dropbox"_s), {}, configuration));
}

TEST(BackgroundItemPermission, anActiveHelperThatNothingPermitsGoes) {
    EXPECT_EQ(nonPermittedBackgroundItems({helper()}, {u"Bar"_s}, StartupConfiguration()),
              QList<BackgroundTaskItem>{helper()});
    EXPECT_EQ(namesThatGo({helper()}, {u"Foo"_s}), QStringList());
    EXPECT_EQ(namesThatGo({helper()}, {}, configurationOf({running(Kind::loginApp, u"Foo Helper"_s)})), QStringList());
    EXPECT_EQ(namesThatGo({}), QStringList());
}

TEST(BackgroundItemPermission, onlyActiveRecordsGo) {
    for (const QString& disposition :
         {u"[disabled, allowed, not notified] (0x2)"_s, u"[enabled, disallowed] (0x9)"_s, u"[allowed]"_s, u""_s}) {
        SCOPED_TRACE(disposition.toStdString());
        BackgroundTaskItem item = helper();
        item.disposition = disposition;
        EXPECT_EQ(namesThatGo({item}), QStringList());
    }
}

TEST(BackgroundItemPermission, onlyLoginItemsAndAgentsGo) {
    struct Row {
        QString type;
        bool goes;
    };
    for (const Row& row :
         {Row{u"Login Item (0x4)"_s, true}, Row{u"legacy agent (0x10008)"_s, true}, Row{u"DAEMON"_s, false},
          Row{u"app (0x2)"_s, false}, Row{u"developer (0x20)"_s, false}, Row{u""_s, false}}) {
        SCOPED_TRACE(row.type.toStdString());
        BackgroundTaskItem item = helper();
        item.itemType = row.type;
        EXPECT_EQ(namesThatGo({item}).size(), row.goes ? 1 : 0);
    }
}

TEST(BackgroundItemPermission, daemonsAndRegisteredApplicationsThatNothingPermitsAreKnownApart) {
    BackgroundTaskItem daemon = helper(u"Daemon"_s);
    daemon.itemType = u"legacy daemon (0x10010)"_s;
    BackgroundTaskItem application = helper(u"Chat"_s);
    application.itemType = u"app (0x2)"_s;
    application.url = u"file:///Applications/Chat.app/"_s;
    const QList<BackgroundTaskItem> items{daemon, application};
    EXPECT_EQ(nonPermittedDaemons(items, {}, std::nullopt), QList<BackgroundTaskItem>{daemon});
    EXPECT_EQ(nonPermittedApplications(items, {}, std::nullopt), QList<BackgroundTaskItem>{application});
    EXPECT_EQ(nonPermittedDaemons(items, {u"Daemon"_s}, std::nullopt), QList<BackgroundTaskItem>());
    EXPECT_EQ(nonPermittedApplications(items, {u"Chat"_s}, std::nullopt), QList<BackgroundTaskItem>());
}

TEST(BackgroundItemPermission, theProgramsOwnAndTheSystemsStay) {
    BackgroundTaskItem item = helper();
    item.bundleIdentifier = u"com.apple.helper"_s;
    EXPECT_EQ(namesThatGo({item}), QStringList());
    item.bundleIdentifier = u"com.quorvane.helper"_s;
    EXPECT_EQ(namesThatGo({item}), QStringList());
    item.bundleIdentifier = u"com.applebees.helper"_s;
    EXPECT_EQ(namesThatGo({item}).size(), 1);
    item.bundleIdentifier = u"org.com.apple.helper"_s;
    EXPECT_EQ(namesThatGo({item}).size(), 1);
    item.executablePath = u"/Applications/QUORVANE.app/Contents/x"_s;
    EXPECT_EQ(namesThatGo({item}), QStringList());
}

TEST(BackgroundItemPermission, withoutABundleIdentifierTheSystemIsKnownByTheLabel) {
    BackgroundTaskItem item = helper();
    for (const std::optional<QString>& none : {std::optional<QString>(), std::optional(QString())}) {
        item.bundleIdentifier = none;
        item.identifier = u"16.com.apple.helper"_s;
        EXPECT_EQ(namesThatGo({item}), QStringList());
        item.identifier = u"16.com.applebees.helper"_s;
        EXPECT_EQ(namesThatGo({item}).size(), 1);
    }
}

TEST(BackgroundItemPermission, audioSoftwareStays) {
    EXPECT_EQ(namesThatGo({helper(u"Traktor Helper"_s)}), QStringList());
    BackgroundTaskItem byUrl = helper();
    byUrl.url = u"file:///Applications/Ableton%20Live.app/"_s;
    EXPECT_EQ(namesThatGo({byUrl}), QStringList());
    BackgroundTaskItem byExecutable = helper();
    byExecutable.executablePath = u"/Library/Audio/Plug-Ins/x"_s;
    EXPECT_EQ(namesThatGo({byExecutable}), QStringList());
    BackgroundTaskItem byIdentifier = helper();
    byIdentifier.bundleIdentifier = u"com.serato.helper"_s;
    EXPECT_EQ(namesThatGo({byIdentifier}), QStringList());
}

class ParentPermission : public ::testing::Test {
protected:
    ParentPermission() {
        parent = helper(u"Great App"_s);
        parent.itemType = u"app (0x2)"_s;
        parent.bundleIdentifier = u"com.great.app"_s;
        parent.identifier = u"2.com.great.app"_s;
        parent.url = u"file:///Applications/Great.app/"_s;
        child.parentIdentifier = u"2.COM.great.app"_s;
    }

    BackgroundTaskItem parent;
    BackgroundTaskItem child = helper(u"unrelated"_s);
};

TEST_F(ParentPermission, aChildOfAPermittedApplicationStays) {
    EXPECT_EQ(namesThatGo({child, parent}, {u"Great App"_s}), QStringList());
    EXPECT_EQ(namesThatGo({child, parent}, {}, configurationOf({running(Kind::addedApp, u"Great App"_s)})),
              QStringList());
    EXPECT_EQ(namesThatGo({child, parent}, {u"Other App"_s}), QStringList(u"unrelated"_s));
}

TEST_F(ParentPermission, aParentProtectsAlsoWhenItIsSwitchedOffItself) {
    parent.disposition = u"[disabled, allowed, notified] (0xa)"_s;
    EXPECT_EQ(namesThatGo({parent, child}, {u"Great App"_s}), QStringList());
}

TEST_F(ParentPermission, withoutItsParentInTheListAChildGoes) {
    EXPECT_EQ(namesThatGo({child}, {u"Great App"_s}), QStringList(u"unrelated"_s));
    parent.itemType = u"developer (0x20)"_s;
    EXPECT_EQ(namesThatGo({child, parent}, {u"Great App"_s}), QStringList(u"unrelated"_s));
}

TEST_F(ParentPermission, aParentIdentifierWithoutALabelNamesNoParent) {
    child.parentIdentifier = u"2."_s;
    parent.bundleIdentifier = std::nullopt;
    parent.identifier = u"Great App"_s;
    EXPECT_EQ(namesThatGo({child, parent}, {u"Great.app"_s}), QStringList(u"unrelated"_s));
}

TEST_F(ParentPermission, theHelperOfAudioSoftwareStays) {
    parent.name = u"Traktor Pro 4"_s;
    EXPECT_EQ(namesThatGo({child, parent}), QStringList());
}

TEST(BackgroundItemPermission, whatGoesIsSortedByNameWithoutRegardToCase) {
    EXPECT_EQ(namesThatGo({helper(u"beta"_s), helper(u"Gamma"_s), helper(u"Alpha"_s), helper(u"Éclair"_s)}),
              (QStringList{u"Alpha"_s, u"beta"_s, u"Éclair"_s, u"Gamma"_s}));
}

} // namespace
} // namespace quorvane
