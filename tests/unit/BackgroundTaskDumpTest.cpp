#include "startup/background/BackgroundTaskDump.h"

#include <QRandomGenerator>
#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

constexpr quint32 kDumpsUser = 501;

/// The fields of a record in their order: name, bundle identifier, identifier, type, disposition, parent, executable,
/// URL; "-" for one that the dump doesn't have.
QString described(const BackgroundTaskItem& item) {
    const QString none = u"-"_s;
    return QStringList{item.name,
                       item.bundleIdentifier.value_or(none),
                       item.identifier,
                       item.itemType,
                       item.disposition,
                       item.parentIdentifier.value_or(none),
                       item.executablePath.value_or(none),
                       item.url.value_or(none)}
        .join(u'|');
}

QStringList parsed(const QString& dump) {
    QStringList lines;
    for (const BackgroundTaskItem& item : parseBackgroundTaskDump(dump, kDumpsUser)) {
        lines.append(described(item));
    }
    return lines;
}

const QString kMacOs13 = uR"(========================
 Records for UID -2 : FFFFEEEE-DDDD-CCCC-BBBB-AAAAFFFFFFFE
========================

 Items:

 #1:
                 UUID: 3B1E3B5C-1D5B-4F53-8D2E-0A0A5A5A0001
                 Name: (null)
       Developer Name: Docker Inc
                 Type: developer (0x20)
          Disposition: [disabled, allowed, visible, not notified] (2)
           Identifier: Docker Inc
                  URL: (null)
           Generation: 1
  Embedded Item Identifiers:
    #1: com.docker.vmnetd

 #2:
                 UUID: 3B1E3B5C-1D5B-4F53-8D2E-0A0A5A5A0002
                 Name: com.docker.vmnetd
       Developer Name: Docker Inc
      Team Identifier: 9BNSXJN65R
                 Type: curated legacy daemon (0x90010)
          Disposition: [enabled, allowed, visible, notified] (11)
           Identifier: com.docker.vmnetd
                  URL: file:///Library/LaunchDaemons/com.docker.vmnetd.plist
      Executable Path: /Library/PrivilegedHelperTools/com.docker.vmnetd
           Generation: 1
       Assoc. Bundle IDs: [com.docker.docker]
    Parent Identifier: Docker Inc

========================
 Records for UID 501 : 0A1B2C3D-1111-2222-3333-444455556666
========================

 Items:

 #1:
                 Name: Dropbox
                 Type: app (0x2)
          Disposition: [enabled, allowed, visible, notified] (11)
           Identifier: com.getdropbox.dropbox
                  URL: file:///Applications/Dropbox.app/
    Bundle Identifier: com.getdropbox.dropbox
)"_s;

TEST(BackgroundTaskDump, macOs13) {
    EXPECT_EQ(parsed(kMacOs13),
              (QStringList{u"com.docker.vmnetd|-|com.docker.vmnetd|curated legacy daemon (0x90010)|"
                           "[enabled, allowed, visible, notified] (11)|Docker Inc|"
                           "/Library/PrivilegedHelperTools/com.docker.vmnetd|"
                           "file:///Library/LaunchDaemons/com.docker.vmnetd.plist"_s,
                           u"Dropbox|com.getdropbox.dropbox|com.getdropbox.dropbox|app (0x2)|"
                           "[enabled, allowed, visible, notified] (11)|-|-|file:///Applications/Dropbox.app/"_s}));
}

TEST(BackgroundTaskDump, macOs14WithEmbeddedItems) {
    EXPECT_EQ(parsed(uR"(========================
 Records for UID 501 : 0A1B2C3D-1111-2222-3333-444455556666
========================

 ServiceManagement migrated: true
 LaunchServices registered: true

 Items:

 #1:
                 UUID: 11111111-0000-0000-0000-000000000001
                 Name: MUSE Hub
       Developer Name: Muse Group
                 Type: app (0x2)
          Disposition: [disabled, allowed, visible, notified] (0xa)
           Identifier: 2.com.muse.hub
                  URL: file:///Applications/MUSE%20Hub.app/
           Generation: 3
    Bundle Identifier: com.muse.hub
  Embedded Item Identifiers:
    #1: 16.com.muse.authservice
    #2: 4.com.muse.helper

 #2:
                 UUID: 11111111-0000-0000-0000-000000000002
                 Name: authservice
                 Type: daemon (0x10)
          Disposition: [enabled, disallowed, visible, notified] (0x9)
           Identifier: 16.com.muse.authservice
                  URL: Contents/Library/LaunchDaemons/com.muse.authservice.plist
      Executable Path: Contents/MacOS/authservice
    Parent Identifier: 2.com.muse.hub 

)"_s),
              (QStringList{u"MUSE Hub|com.muse.hub|2.com.muse.hub|app (0x2)|"
                           "[disabled, allowed, visible, notified] (0xa)|-|-|file:///Applications/MUSE%20Hub.app/"_s,
                           u"authservice|-|16.com.muse.authservice|daemon (0x10)|"
                           "[enabled, disallowed, visible, notified] (0x9)|2.com.muse.hub|Contents/MacOS/authservice|"
                           "Contents/Library/LaunchDaemons/com.muse.authservice.plist"_s}));
}

TEST(BackgroundTaskDump, macOs15WithFlagsAndColonsInNames) {
    EXPECT_EQ(parsed(uR"(========================
 Records for UID -2 : FFFFEEEE-DDDD-CCCC-BBBB-AAAAFFFFFFFE
========================

 ServiceManagement migrated: true
 LaunchServices registered: false

 Items:

 #1:
                 UUID: 22222222-0000-0000-0000-000000000001
                 Name: Someone Else: Helper (beta).app
       Developer Name: Someone Else
                 Type: login item (0x4)
                Flags: [ legacy, curated ] (0x5)
          Disposition: [enabled, allowed, notified] (0xb)
           Identifier: 4.com.someone.helper
                  URL: Contents/Library/LoginItems/Helper.app
           Generation: 2
       Assoc. Bundle IDs: [ com.someone.app ]
    Bundle Identifier: com.someone.helper
    Parent Identifier: 2.com.someone.app

 #4:
                 Name: backup.sh
                 Type: legacy agent (0x10008)
                Flags: [  ] (0)
          Disposition: [disabled, allowed, not notified] (0x2)
           Identifier: 8.local.backup
                  URL: file:///Users/501/Library/LaunchAgents/local.backup.plist
      Executable Path: 
    Parent Identifier: Unknown Developer
)"_s),
              (QStringList{u"Someone Else: Helper (beta).app|com.someone.helper|4.com.someone.helper|login item (0x4)|"
                           "[enabled, allowed, notified] (0xb)|2.com.someone.app|-|"
                           "Contents/Library/LoginItems/Helper.app"_s,
                           u"backup.sh|-|8.local.backup|legacy agent (0x10008)|"
                           "[disabled, allowed, not notified] (0x2)|Unknown Developer||"
                           "file:///Users/501/Library/LaunchAgents/local.backup.plist"_s}));
}

TEST(BackgroundTaskDump, macOs26WithPlainPathsAndLastUse) {
    EXPECT_EQ(parsed(uR"(========================
 Records for UID 501 : 0A1B2C3D-1111-2222-3333-444455556666
========================

 ServiceManagement migrated: true
 LaunchServices registered: true

 Items:

 #1:
                 UUID: 33333333-0000-0000-0000-000000000001
                 Name: Nextcloud
                 Type: app (0x2)
                Flags: [  ] (0)
          Disposition: [enabled, allowed, notified] (0xb)
           Identifier: 2.com.nextcloud.desktopclient
                  URL: /Applications/Nextcloud.app
             Last Use: 2026-09-25 11:05:55-07:00
    Bundle Identifier: com.nextcloud.desktopclient
  Embedded Item Identifiers:
    #1: com.nextcloud.desktopclient.FinderSync

 #2:
                 UUID: 33333333-0000-0000-0000-000000000002
                 Name: (null)
                 Type: background tasks (0x2000)
           Identifier: 8192.com.apple.something
                  URL: (null)

 #3:
                 Name: FinderSync.appex
                 Type: quicklook (0x800)
           Identifier: 2048.com.nextcloud.quicklook
)"_s),
              (QStringList{u"Nextcloud|com.nextcloud.desktopclient|2.com.nextcloud.desktopclient|app (0x2)|"
                           "[enabled, allowed, notified] (0xb)|-|-|/Applications/Nextcloud.app"_s,
                           u"FinderSync.appex|-|2048.com.nextcloud.quicklook|quicklook (0x800)||-|-|-"_s}));
}

TEST(BackgroundTaskDump, lineEndsOfEverySortReadTheSame) {
    const QStringList expected = parsed(kMacOs13);
    EXPECT_EQ(parsed(QString(kMacOs13).replace(u"\n"_s, u"\r\n"_s)), expected);
    EXPECT_EQ(parsed(QString(kMacOs13).replace(u'\n', u'\r')), expected);
    EXPECT_EQ(parsed(QString(kMacOs13).replace(u"\n #"_s, u"\r #"_s)), expected);
}

TEST(BackgroundTaskDump, aTextWithoutRecordsHasNone) {
    for (const QString& text :
         {u""_s, u"\n\n\n"_s, u" \t"_s, u"#1:"_s, u"#1:\n#2:\n#3"_s, u"sfltool[1:2] authorization failed\n"_s,
          u"Type: app (0x2)\nURL: file:///x\n"_s, u"Name:\n"_s, u"Name: (null)\n"_s, u"name: lower case\n"_s,
          u"::::\n: Name\n"_s, QString(3, QChar::Null)}) {
        SCOPED_TRACE(text.toStdString());
        EXPECT_EQ(parsed(text), QStringList());
    }
}

TEST(BackgroundTaskDump, withoutHeadersThereIsOneRecordAtMost) {
    EXPECT_EQ(parsed(u"Name: A\nType: app (0x2)\nName: B\n\nDisposition: [enabled]"_s),
              QStringList(u"B|-||app (0x2)|[enabled]|-|-|-"_s));
}

TEST(BackgroundTaskDump, aBlockBeginsWithANumberSignAndDigits) {
    struct Row {
        QString line;
        bool isHeader;
    };
    const QList<Row> rows{{u"#12:"_s, true},    {u"#12"_s, true},    {u" \t#3: \t"_s, true}, {u"#1: 16.com.a"_s, true},
                          {u"#007:"_s, true},   {u"#٣:"_s, true},    {u"#12 foo"_s, false},  {u"# 12:"_s, false},
                          {u"#"_s, false},      {u"#:"_s, false},    {u"#12a:"_s, false},    {u"12:"_s, false},
                          {u"x #12:"_s, false}, {u"##12:"_s, false}, {u"#-1:"_s, false},     {u"#12 :"_s, false}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.line.toStdString());
        EXPECT_EQ(parsed(u"Name: A\n"_s + row.line + u"\nName: B\n"_s),
                  row.isHeader ? (QStringList{u"A|-||||-|-|-"_s, u"B|-||||-|-|-"_s}) : QStringList(u"B|-||||-|-|-"_s));
    }
}

TEST(BackgroundTaskDump, theFieldsOfANamelessBlockStayOutOfTheNext) {
    EXPECT_EQ(parsed(u"#1:\nName: (null)\nURL: file:///x\nBundle Identifier: com.a\nType: agent\n#2:\nName: B\n"_s),
              QStringList(u"B|-||||-|-|-"_s));
    EXPECT_EQ(parsed(u"#1:\nName:\nURL: file:///x\n#2:\nURL: file:///y\n#3:\nName: C\n"_s),
              QStringList(u"C|-||||-|-|-"_s));
}

TEST(BackgroundTaskDump, onlyTheFirstColonSplitsALine) {
    EXPECT_EQ(parsed(u"Name: A: b : c\nURL: file:///x:8080/y\nDisposition:[a]:"_s),
              QStringList(u"A: b : c|-|||[a]:|-|-|file:///x:8080/y"_s));
}

TEST(BackgroundTaskDump, linesWithoutALabelAreIgnored) {
    EXPECT_EQ(parsed(u"#1:\nName: A\n: B\n \t: Name: C\nName D\n=====\n"_s), QStringList(u"A|-||||-|-|-"_s));
}

TEST(BackgroundTaskDump, ofARepeatedLabelTheLastCountsHoweverDeepItStands) {
    EXPECT_EQ(
        parsed(u"#1:\nName: A\nIdentifier: 2.a\n  Embedded:\n      Identifier: 4.b\n\t\tName: B\nType: x\nType:\n"_s),
        QStringList(u"B|-|4.b|||-|-|-"_s));
}

TEST(BackgroundTaskDump, anEmptyValueIsNoMissingOne) {
    const QList<BackgroundTaskItem> items = parseBackgroundTaskDump(
        u"Name: A\nBundle Identifier:\nParent Identifier: \t\nExecutable Path:\nURL:\n#2:\nName: B\n"_s, kDumpsUser);
    ASSERT_EQ(items.size(), 2);
    for (const std::optional<QString>& field : {items.first().bundleIdentifier, items.first().parentIdentifier,
                                                items.first().executablePath, items.first().url}) {
        EXPECT_EQ(field, std::optional(QString()));
    }
    for (const std::optional<QString>& field : {items.last().bundleIdentifier, items.last().parentIdentifier,
                                                items.last().executablePath, items.last().url}) {
        EXPECT_EQ(field, std::nullopt);
    }
}

TEST(BackgroundTaskDump, aNullTextStaysEverywhereButInTheName) {
    EXPECT_EQ(parsed(u"Name: (null) \n#2:\nName: (NULL)\nBundle Identifier: (null)\nIdentifier: (null)\nURL: (null)"_s),
              QStringList(u"(NULL)|(null)|(null)|||-|-|(null)"_s));
}

TEST(BackgroundTaskDump, strangeTextsAreKeptAsTheyStand) {
    EXPECT_EQ(parsed(u"Name: a'\"\\$(b);|&🎧\nIdentifier: 4.-x/../y\n"_s),
              QStringList(u"a'\"\\$(b);|&🎧|-|4.-x/../y|||-|-|-"_s));
}

// ---- Whose records they are

QString sectionOf(const QString& user, const QStringList& names) {
    QString text = u"========\n Records for UID "_s + user + u" : 0A1B\n========\n\n Items:\n\n"_s;
    for (const QString& name : names) {
        text += u" #1:\n   Name: "_s + name + u'\n';
    }
    return text;
}

QStringList namesOfDump(const QString& dump) {
    QStringList names;
    for (const BackgroundTaskItem& item : parseBackgroundTaskDump(dump, kDumpsUser)) {
        names.append(item.name);
    }
    return names;
}

TEST(BackgroundTaskDump, recordsOfOtherAccountsDoNotCount) {
    EXPECT_EQ(namesOfDump(sectionOf(u"-2"_s, {u"Mac"_s}) + sectionOf(u"0"_s, {u"Root"_s}) +
                          sectionOf(u"248"_s, {u"Service"_s}) + sectionOf(u"501"_s, {u"Mine"_s, u"Mine too"_s}) +
                          sectionOf(u"502"_s, {u"Theirs"_s, u"Theirs too"_s}) + sectionOf(u"501"_s, {u"Mine again"_s})),
              QStringList({u"Mac"_s, u"Root"_s, u"Mine"_s, u"Mine too"_s, u"Mine again"_s}));
}

TEST(BackgroundTaskDump, blocksBeforeAnySectionCount) {
    EXPECT_EQ(namesOfDump(u"#1:\nName: First\n#2:\nName: Second\n"_s + sectionOf(u"502"_s, {u"Theirs"_s})),
              QStringList({u"First"_s, u"Second"_s}));
}

TEST(BackgroundTaskDump, aSectionIsKnownByTheWholeOfItsNumber) {
    struct Row {
        QString line;
        bool counts;
    };
    const QList<Row> rows{{u"Records for UID 501 : 0A"_s, true},    {u" \tRecords for UID 501"_s, true},
                          {u"Records for UID 501: 0A"_s, true},     {u"Records for UID -2 : FF"_s, true},
                          {u"Records for UID 0 : FF"_s, true},      {u"Records for UID 50 : 0A"_s, false},
                          {u"Records for UID 5010 : 0A"_s, false},  {u"Records for UID -501 : 0A"_s, false},
                          {u"Records for UID -1 : 0A"_s, false},    {u"Records for UID 501x : 0A"_s, false},
                          {u"Records for UID nobody : 0"_s, false}, {u"Records for UID "_s, false},
                          {u"Name: Records for UID 502"_s, true},   {u"records for uid 502"_s, true}};
    for (const Row& row : rows) {
        SCOPED_TRACE(row.line.toStdString());
        EXPECT_EQ(namesOfDump(row.line + u"\n#1:\nName: A\n"_s).contains(u"A"_s), row.counts);
    }
}

TEST(BackgroundTaskDump, aRecordEndsWithItsSection) {
    EXPECT_EQ(parsed(u"Records for UID 501 : 0\n#1:\nName: A\nRecords for UID 502 : 0\nURL: file:///theirs\n"_s),
              QStringList(u"A|-||||-|-|-"_s));
    EXPECT_EQ(
        parsed(u"Records for UID 502 : 0\n#1:\nName: A\nURL: file:///theirs\nRecords for UID 501 : 0\nName: B\n"_s),
        QStringList(u"B|-||||-|-|-"_s));
}

TEST(BackgroundTaskDump, ofAnyDumpExactlyTheRecordsOfTheUserAndTheMacAreThere) {
    QRandomGenerator random(22);
    for (int round = 0; round < 300; ++round) {
        QString dump;
        QStringList expected;
        for (int sections = static_cast<int>(random.bounded(6)); sections >= 0; --sections) {
            const int user = QList<int>{-2, 0, 248, 501, 502, 503, 5010}.at(random.bounded(7));
            QStringList names;
            for (int count = static_cast<int>(random.bounded(4)); count > 0; --count) {
                names.append(u"%1 of %2"_s.arg(random.generate()).arg(user));
            }
            dump += sectionOf(QString::number(user), names);
            expected += user == -2 || user == 0 || user == 501 ? names : QStringList();
        }
        EXPECT_EQ(namesOfDump(dump), expected);
    }
}

TEST(BackgroundTaskDump, aDumpThatIsCutOffGivesTheRecordsBeforeTheCut) {
    const QStringList whole = parsed(kMacOs13);
    for (qsizetype length = 0; length <= kMacOs13.size(); ++length) {
        const QStringList found = parsed(kMacOs13.left(length));
        ASSERT_LE(found.size(), whole.size()) << length;
        for (qsizetype place = 0; place + 1 < found.size(); ++place) {
            ASSERT_EQ(found.at(place), whole.at(place)) << length;
        }
    }
}

} // namespace
} // namespace quorvane
