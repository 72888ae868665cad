#include "simulator/tools/Sfltool.h"

#include "ToolRun.h"
#include "simulator/Journal.h"

#include <QRegularExpression>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

const Json kDockerDaemon{{"uid", -2},
                         {"uuid", "11111111-0000-0000-0000-000000000001"},
                         {"name", "com.docker.vmnetd"},
                         {"developerName", "Docker Inc"},
                         {"teamIdentifier", "9BNSXJN65R"},
                         {"type", "curated legacy daemon"},
                         {"identifier", "16.com.docker.vmnetd"},
                         {"url", "file:///Library/LaunchDaemons/com.docker.vmnetd.plist"},
                         {"executablePath", "/Library/PrivilegedHelperTools/com.docker.vmnetd"},
                         {"associatedBundleIdentifiers", {"com.docker.docker"}},
                         {"parent", "Docker Inc"},
                         {"lastUse", "2026-09-25 11:05:55-07:00"},
                         {"generation", 3}};
const Json kDocker{{"uid", -2},
                   {"uuid", "11111111-0000-0000-0000-000000000002"},
                   {"name", "Docker Inc"},
                   {"developerName", "Docker Inc"},
                   {"type", "developer"},
                   {"identifier", "Docker Inc"},
                   {"enabled", false},
                   {"notified", false}};

const QString kDumpOf14 = u"========================\n"
                          u" Records for UID -2 : FFFFEEEE-DDDD-CCCC-BBBB-AAAAFFFFFFFE\n"
                          u"========================\n"
                          u"\n"
                          u" ServiceManagement migrated: true\n"
                          u" LaunchServices registered: false\n"
                          u"\n"
                          u" Items:\n"
                          u"\n"
                          u" #1:\n"
                          u"                 UUID: 11111111-0000-0000-0000-000000000001\n"
                          u"                 Name: com.docker.vmnetd\n"
                          u"       Developer Name: Docker Inc\n"
                          u"      Team Identifier: 9BNSXJN65R\n"
                          u"                 Type: curated legacy daemon (0x90010)\n"
                          u"          Disposition: [enabled, allowed, visible, notified] (0xb)\n"
                          u"           Identifier: 16.com.docker.vmnetd\n"
                          u"                  URL: file:///Library/LaunchDaemons/com.docker.vmnetd.plist\n"
                          u"      Executable Path: /Library/PrivilegedHelperTools/com.docker.vmnetd\n"
                          u"           Generation: 3\n"
                          u"    Assoc. Bundle IDs: [com.docker.docker]\n"
                          u"    Parent Identifier: Docker Inc\n"
                          u"\n"
                          u" #2:\n"
                          u"                 UUID: 11111111-0000-0000-0000-000000000002\n"
                          u"                 Name: Docker Inc\n"
                          u"       Developer Name: Docker Inc\n"
                          u"                 Type: developer (0x20)\n"
                          u"          Disposition: [disabled, allowed, visible, not notified] (0x2)\n"
                          u"           Identifier: Docker Inc\n"
                          u"                  URL: (null)\n"
                          u"           Generation: 1\n"
                          u"  Embedded Item Identifiers:\n"
                          u"    #1: 16.com.docker.vmnetd\n"
                          u"\n"
                          u"========================\n"
                          u" Records for UID 0 : FFFFEEEE-DDDD-CCCC-BBBB-AAAA00000000\n"
                          u"========================\n"
                          u"\n"
                          u" ServiceManagement migrated: true\n"
                          u" LaunchServices registered: false\n"
                          u"\n"
                          u" Items:\n"
                          u"\n"
                          u"========================\n"
                          u" Records for UID 501 : "_s;

class Sfltool : public testing::Test {
protected:
    ToolRun dump(const Json& records, const char* systemVersion = "14.7") {
        mac.mac.state().update("backgroundTasks", [&](Json& state) { state["records"] = records; });
        mac.mac.state().update("machine", [&](Json& state) { state["systemVersion"] = systemVersion; });
        mac.mac = Mac(mac.hostFolder());
        return runTool(mac, runSfltool, {u"sfltool"_s, u"dumpbtm"_s}, Actor::Root);
    }
    /// The lines of a dump that bear a label, without their indentation.
    static QStringList linesOf(const ToolRun& run, const QString& label) {
        QStringList found;
        const QStringList lines = QString::fromUtf8(run.output).split(u'\n');
        for (const QString& line : lines) {
            if (line.trimmed().startsWith(label + u':')) {
                found.append(line.trimmed());
            }
        }
        return found;
    }

    SimulatedMacFolder mac;
};

} // namespace

TEST_F(Sfltool, aUserIsRefused) {
    setState(mac, "backgroundTasks", {{"records", {kDockerDaemon}}});
    const ToolRun run = runTool(mac, runSfltool, {u"sfltool"_s, u"dumpbtm"_s});
    EXPECT_EQ(run.status, 1);
    EXPECT_EQ(run.output, QByteArray());
    static const QRegularExpression kRefusal(u"^sfltool\\[\\d+:\\d+\\] authorization failed\\n$"_s);
    EXPECT_TRUE(kRefusal.match(QString::fromUtf8(run.error)).hasMatch()) << run.error.toStdString();
}

TEST_F(Sfltool, theJournalTellsOfTheDialogThatAUserSees) {
    const QString file = mac.outside() + u"/journal"_s;
    const Journal journal({file});
    const auto run = [&](Actor actor) {
        ToolContext context = mac.context({u"sfltool"_s, u"dumpbtm"_s}, actor);
        context.journal = &journal;
        return runSfltool(context);
    };
    EXPECT_EQ(run(Actor::Root), 0);
    EXPECT_FALSE(QFile::exists(file));
    EXPECT_EQ(run(Actor::User), 1);
    EXPECT_EQ(run(Actor::User), 1);
    QFile records(file);
    ASSERT_TRUE(records.open(QIODevice::ReadOnly));
    EXPECT_EQ(records.readAll(), "{\"dialog\":\"sfltool\"}\n{\"dialog\":\"sfltool\"}\n");
}

TEST_F(Sfltool, dumpsTheMachineThenRootThenTheUser) {
    const ToolRun run = dump(Json::array({kDockerDaemon, kDocker}));
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.error, QByteArray());
    EXPECT_EQ(QString::fromUtf8(run.output).left(kDumpOf14.size()), kDumpOf14);
    EXPECT_TRUE(run.output.endsWith("\n LaunchServices registered: false\n\n Items:\n\n"));
}

TEST_F(Sfltool, everySystemHasItsOwnForm) {
    const Json records = Json::array({kDockerDaemon});
    const struct {
        const char* version;
        QStringList types;
        QStringList flags;
        QStringList dispositions;
        QStringList identifiers;
        QStringList associated;
        QStringList lastUses;
    } cases[] = {{"13.6",
                  {u"Type: curated legacy daemon (0x90010)"_s},
                  {},
                  {u"Disposition: [enabled, allowed, visible, notified] (11)"_s},
                  {u"Identifier: com.docker.vmnetd"_s},
                  {u"Assoc. Bundle IDs: [com.docker.docker]"_s},
                  {}},
                 {"14.7.1",
                  {u"Type: curated legacy daemon (0x90010)"_s},
                  {},
                  {u"Disposition: [enabled, allowed, visible, notified] (0xb)"_s},
                  {u"Identifier: 16.com.docker.vmnetd"_s},
                  {u"Assoc. Bundle IDs: [com.docker.docker]"_s},
                  {}},
                 {"15.6",
                  {u"Type: legacy daemon (0x10010)"_s},
                  {u"Flags: [ legacy, curated ] (0x5)"_s},
                  {u"Disposition: [enabled, allowed, notified] (0xb)"_s},
                  {u"Identifier: 16.com.docker.vmnetd"_s},
                  {u"Assoc. Bundle IDs: [ com.docker.docker ]"_s},
                  {}},
                 {"26.1",
                  {u"Type: legacy daemon (0x10010)"_s},
                  {u"Flags: [ legacy, curated ] (0x5)"_s},
                  {u"Disposition: [enabled, allowed, notified] (0xb)"_s},
                  {u"Identifier: 16.com.docker.vmnetd"_s},
                  {u"Assoc. Bundle IDs: [ com.docker.docker ]"_s},
                  {u"Last Use: 2026-09-25 11:05:55-07:00"_s}}};
    for (const auto& one : cases) {
        const ToolRun run = dump(records, one.version);
        EXPECT_EQ(linesOf(run, u"Type"_s), one.types) << one.version;
        EXPECT_EQ(linesOf(run, u"Flags"_s), one.flags) << one.version;
        EXPECT_EQ(linesOf(run, u"Disposition"_s), one.dispositions) << one.version;
        EXPECT_EQ(linesOf(run, u"Identifier"_s), one.identifiers) << one.version;
        EXPECT_EQ(linesOf(run, u"Assoc. Bundle IDs"_s), one.associated) << one.version;
        EXPECT_EQ(linesOf(run, u"Last Use"_s), one.lastUses) << one.version;
    }
}

TEST_F(Sfltool, theDispositionTellsWhatTheProgramAndTheUserWant) {
    const struct {
        bool enabled;
        bool allowed;
        bool notified;
        QString text;
    } cases[] = {{true, false, true, u"Disposition: [enabled, disallowed, notified] (0x9)"_s},
                 {false, true, true, u"Disposition: [disabled, allowed, notified] (0xa)"_s},
                 {true, true, false, u"Disposition: [enabled, allowed, not notified] (0x3)"_s},
                 {false, false, false, u"Disposition: [disabled, disallowed, not notified] (0)"_s}};
    for (const auto& one : cases) {
        const Json record{{"uid", 501},
                          {"type", "app"},
                          {"identifier", "2.com.x"},
                          {"enabled", one.enabled},
                          {"allowed", one.allowed},
                          {"notified", one.notified}};
        EXPECT_EQ(linesOf(dump(Json::array({record}), "15.0"), u"Disposition"_s), QStringList{one.text});
    }
}

TEST_F(Sfltool, everyTypeHasItsBitsAndItsNumber) {
    const struct {
        const char* type;
        QString text;
        QString identifier;
    } cases[] = {{"app", u"app (0x2)"_s, u"2.com.x"_s},
                 {"login item", u"login item (0x4)"_s, u"4.com.x"_s},
                 {"agent", u"agent (0x8)"_s, u"8.com.x"_s},
                 {"daemon", u"daemon (0x10)"_s, u"16.com.x"_s},
                 {"legacy agent", u"legacy agent (0x10008)"_s, u"8.com.x"_s},
                 {"legacy daemon", u"legacy daemon (0x10010)"_s, u"16.com.x"_s},
                 {"managed legacy agent", u"managed legacy agent (0x30008)"_s, u"8.com.x"_s},
                 {"managed curated legacy daemon", u"managed curated legacy daemon (0xb0010)"_s, u"16.com.x"_s},
                 {"developer", u"developer (0x20)"_s, u"com.x"_s},
                 {"spotlight", u"spotlight (0x40)"_s, u"64.com.x"_s},
                 {"dock tile", u"dock tile (0x80)"_s, u"128.com.x"_s},
                 {"quicklook", u"quicklook (0x800)"_s, u"2048.com.x"_s},
                 {"background tasks", u"background tasks (0x2000)"_s, u"8192.com.x"_s}};
    for (const auto& one : cases) {
        const ToolRun run = dump(Json::array({{{"uid", 501}, {"type", one.type}, {"identifier", "com.x"}}}));
        EXPECT_EQ(linesOf(run, u"Type"_s), QStringList{u"Type: "_s + one.text});
        EXPECT_EQ(linesOf(run, u"Identifier"_s), QStringList{u"Identifier: "_s + one.identifier});
    }
}

TEST_F(Sfltool, whatAnOrganisationManagesSaysSoInItsTypeAndItsFlags) {
    const Json records =
        Json::array({{{"uid", -2}, {"type", "managed legacy daemon"}, {"identifier", "16.com.x"}},
                     {{"uid", -2}, {"type", "managed curated legacy daemon"}, {"identifier", "16.com.y"}},
                     {{"uid", 501}, {"type", "managed agent"}, {"identifier", "8.com.z"}}});
    const ToolRun run = dump(records, "15.6");
    EXPECT_EQ(linesOf(run, u"Type"_s),
              (QStringList{u"Type: managed legacy daemon (0x30010)"_s, u"Type: managed legacy daemon (0x30010)"_s,
                           u"Type: managed agent (0x20008)"_s}));
    EXPECT_EQ(linesOf(run, u"Flags"_s),
              (QStringList{u"Flags: [ legacy, managed ] (0x3)"_s, u"Flags: [ legacy, managed, curated ] (0x7)"_s,
                           u"Flags: [ managed ] (0x2)"_s}));
}

TEST_F(Sfltool, whatIsNotKnownIsNullOrLeftOut) {
    const ToolRun run =
        dump(Json::array({{{"uid", 501}, {"type", "legacy agent"}, {"identifier", "8.com.x"}}}), "15.6");
    EXPECT_EQ(linesOf(run, u"Name"_s), QStringList{u"Name: (null)"_s});
    EXPECT_EQ(linesOf(run, u"Developer Name"_s), QStringList{u"Developer Name: (null)"_s});
    EXPECT_EQ(linesOf(run, u"URL"_s), QStringList{u"URL: (null)"_s});
    EXPECT_EQ(linesOf(run, u"Flags"_s), QStringList{u"Flags: [ legacy ] (0x1)"_s});
    for (const QString& label : {u"Team Identifier"_s, u"Executable Path"_s, u"Bundle Identifier"_s,
                                 u"Assoc. Bundle IDs"_s, u"Parent Identifier"_s, u"Embedded Item Identifiers"_s}) {
        EXPECT_EQ(linesOf(run, label), QStringList()) << label.toStdString();
    }
}

TEST_F(Sfltool, anApplicationListsWhatItHolds) {
    const Json records = Json::array({{{"uid", 501}, {"type", "app"}, {"name", "X"}, {"identifier", "2.com.x"}},
                                      {{"uid", 501},
                                       {"type", "login item"},
                                       {"name", "Some: Helper (1)"},
                                       {"identifier", "4.com.x.helper"},
                                       {"url", "Contents/Library/LoginItems/Helper.app/"},
                                       {"parent", "2.com.x"}},
                                      // Another user's application has the same identifier.
                                      {{"uid", 502}, {"type", "app"}, {"name", "X"}, {"identifier", "2.com.x"}}});
    const ToolRun numbered = dump(records, "15.6");
    EXPECT_EQ(numbered.output.count("  Embedded Item Identifiers:\n    #1: 4.com.x.helper\n\n"), 1);
    EXPECT_EQ(linesOf(numbered, u"#1"_s), (QStringList{u"#1:"_s, u"#1: 4.com.x.helper"_s, u"#1:"_s}));
    EXPECT_EQ(linesOf(numbered, u"#2"_s), QStringList{u"#2:"_s});
    EXPECT_EQ(linesOf(numbered, u"Parent Identifier"_s), QStringList{u"Parent Identifier: 2.com.x"_s});
    EXPECT_EQ(linesOf(numbered, u"Name"_s), (QStringList{u"Name: X"_s, u"Name: Some: Helper (1)"_s, u"Name: X"_s}));
    EXPECT_EQ(linesOf(numbered, u"Bundle Identifier"_s),
              (QStringList{u"Bundle Identifier: com.x"_s, u"Bundle Identifier: com.x.helper"_s,
                           u"Bundle Identifier: com.x"_s}));

    const ToolRun bare = dump(records, "13.0");
    EXPECT_EQ(linesOf(bare, u"#1"_s), (QStringList{u"#1:"_s, u"#1: com.x.helper"_s, u"#1:"_s}));
    EXPECT_EQ(linesOf(bare, u"Parent Identifier"_s), QStringList{u"Parent Identifier: com.x"_s});
}

TEST_F(Sfltool, theSameRecordHasTheSameUuidInEveryDump) {
    const Json records = Json::array({{{"uid", 501}, {"type", "app"}, {"identifier", "2.com.x"}},
                                      {{"uid", 501}, {"type", "app"}, {"identifier", "2.com.y"}}});
    const QStringList uuids = linesOf(dump(records), u"UUID"_s);
    ASSERT_EQ(uuids.size(), 2);
    EXPECT_NE(uuids[0], uuids[1]);
    EXPECT_EQ(linesOf(dump(records), u"UUID"_s), uuids);
}

TEST_F(Sfltool, everyLabelEndsBeforeTheTwentySecondColumn) {
    const ToolRun run = dump(Json::array({kDockerDaemon}), "26.1");
    const QStringList lines = QString::fromUtf8(run.output).split(u'\n');
    const qsizetype first = lines.indexOf(u" #1:"_s);
    ASSERT_GT(first, 0);
    for (qsizetype at = first + 1; !lines[at].isEmpty(); ++at) {
        EXPECT_EQ(lines[at].indexOf(u": "_s), 21) << lines[at].toStdString();
    }
}

TEST_F(Sfltool, manyRecordsOfOneApplicationAreDumped) {
    Json records = Json::array({{{"uid", 501}, {"type", "app"}, {"identifier", "2.com.x"}}});
    for (int number = 0; number < 20000; ++number) {
        records.push_back({{"uid", 501},
                           {"type", "agent"},
                           {"identifier", "8.com.x." + std::to_string(number)},
                           {"parent", "2.com.x"}});
    }
    const ToolRun run = dump(records);
    EXPECT_TRUE(run.output.contains("\n #20001:\n"));
    EXPECT_TRUE(run.output.contains("\n    #20000: 8.com.x.19999\n\n #2:\n"));
}

TEST_F(Sfltool, whatIsNotSimulatedFailsLoudly) {
    for (const QStringList& words : {QStringList{}, {u"resetbtm"_s}, {u"dumpbtm"_s, u"-x"_s}, {u"list"_s}}) {
        EXPECT_EQ(runTool(mac, runSfltool, QStringList{u"sfltool"_s} + words, Actor::Root).status, 70);
    }
    EXPECT_EQ(dump(Json::array({{{"uid", 501}, {"type", "gremlin"}, {"identifier", "1.x"}}})).status, 70);
    EXPECT_EQ(dump(Json::array(), "12.7").status, 70);
}

TEST_F(Sfltool, aStateThatHoldsNoRecordsIsAnEmptyDump) {
    for (const Json& state : {Json(), Json{{"records", 1}}, Json::array({1}), Json{{"records", {1, "x", nullptr}}}}) {
        setState(mac, "backgroundTasks", state);
        const ToolRun run = runTool(mac, runSfltool, {u"sfltool"_s, u"dumpbtm"_s}, Actor::Root);
        EXPECT_EQ(run.status, 0) << state.dump();
        EXPECT_FALSE(run.output.contains("#1:")) << state.dump();
    }
}

} // namespace macsim
