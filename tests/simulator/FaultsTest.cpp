#include "simulator/Faults.h"

#include "fakes/SimulatedMacFolder.h"
#include "simulator/Journal.h"

#include <QFile>

#include <gtest/gtest.h>

#include <stdexcept>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

int say(ToolContext& context) {
    context.print(u"said\n"_s);
    return 0;
}

int save(ToolContext& context) {
    context.volume.write(u"/Users/alex/saved"_s, "x");
    return 0;
}

class FaultsTest : public ::testing::Test {
protected:
    struct Run {
        int status;
        QByteArray output;
        QByteArray error;
        bool operator==(const Run&) const = default;
    };

    Run run(const QStringList& line, const Json& rules) {
        const Faults faults(rules);
        ToolContext context = folder.context(line);
        context.faults = &faults;
        context.journal = &journal;
        const int status = runCommand(findCommand(line.first(), context), context);
        return {status, context.output, context.error};
    }

    SimulatedMacFolder folder{{{u"/usr/bin/say"_s, say}, {u"/usr/bin/save"_s, save}}};
    QString journalFile = folder.outside() + u"/journal"_s;
    Journal journal{{journalFile, QString()}};
};

} // namespace

TEST_F(FaultsTest, aRuleReplacesTheToolItNames) {
    const Json rules = Json::array({{{"tool", "say"}, {"status", 3}, {"output", "o"}, {"error", "e"}}});
    EXPECT_EQ(run({u"say"_s}, rules), (Run{3, "o", "e"}));
    EXPECT_EQ(run({u"save"_s}, rules), (Run{0, "", ""}));
}

TEST_F(FaultsTest, aNumberThatDoesNotFitIsRefused) {
    for (const char* key : {"status", "signal", "delayMilliseconds"}) {
        for (const Json& number :
             {Json(4294967297), Json(-2147483649), Json(18446744073709551615U), Json(1e300), Json(1.5), Json("1")}) {
            SCOPED_TRACE(key + number.dump());
            EXPECT_THROW(Faults(Json::array({{{"tool", "say"}, {key, number}}})), std::invalid_argument);
        }
    }
}

TEST_F(FaultsTest, aPatternLooksAtTheArguments) {
    const Json rules = Json::array({{{"tool", "say"}, {"arguments", "^-x .*y$"}, {"status", 3}}});
    EXPECT_EQ(run({u"say"_s, u"-x"_s, u"a"_s, u"y"_s}, rules).status, 3);
    EXPECT_EQ(run({u"say"_s, u"-x"_s, u"a"_s}, rules).status, 0);
}

TEST_F(FaultsTest, theFirstRuleThatMatchesCounts) {
    const Json rules =
        Json::array({{{"tool", "say"}, {"arguments", "a"}, {"status", 3}}, {{"tool", "say"}, {"status", 4}}});
    EXPECT_EQ(run({u"say"_s, u"a"_s}, rules).status, 3);
    EXPECT_EQ(run({u"say"_s, u"b"_s}, rules).status, 4);
}

TEST_F(FaultsTest, bytesThatAreNoTextAreGivenAsBase64) {
    const Json rules = Json::array({{{"tool", "say"}, {"status", 0}, {"outputBase64", "//4="}}});
    EXPECT_EQ(run({u"say"_s}, rules), (Run{0, "\xff\xfe", ""}));
}

TEST_F(FaultsTest, aFullDiskFailsTheToolsOwnWrites) {
    const Json rules = Json::array({{{"tool", "save"}, {"diskFull", true}}});
    EXPECT_EQ(run({u"save"_s}, rules), (Run{1, "", "save: /Users/alex/saved: No space left on device\n"}));
    EXPECT_FALSE(folder.mac.volume(Actor::User).exists(u"/Users/alex/saved"_s));
}

TEST_F(FaultsTest, aDelayedToolStillRuns) {
    const Json rules = Json::array({{{"tool", "say"}, {"delayMilliseconds", 1}}});
    EXPECT_EQ(run({u"say"_s}, rules), (Run{0, "said\n", ""}));
}

TEST_F(FaultsTest, rulesForAdaptersAreNotForTools) {
    const Json rules = Json::array({{{"adapter", "files"}, {"change", 1}, {"kill", true}}});
    EXPECT_EQ(run({u"say"_s}, rules).status, 0);
}

TEST_F(FaultsTest, whatIsNotUnderstoodIsRefused) {
    for (const Json& rules :
         {Json::object(), Json::array({1}), Json::array({{{"status", 1}}}), Json::array({{{"tool", "x"}, {"boom", 1}}}),
          Json::array({{{"tool", "x"}, {"arguments", "("}}}), Json::array({{{"tool", 3}}}),
          Json::array({{{"tool", "x"}, {"hang", "yes"}}})}) {
        EXPECT_THROW(Faults{rules}, std::invalid_argument) << rules.dump();
    }
    EXPECT_THROW(Faults::fromFile(u"/no/such/file"_s), std::invalid_argument);
}

TEST_F(FaultsTest, theJournalRecordsEachCommandAndPrompt) {
    run({u"say"_s, u"a b"_s}, Json::array());
    run({u"say"_s}, Json::array({{{"tool", "say"}, {"status", 3}}}));
    journal.recordAuthorization(u"Please."_s, Authorization::Deny);
    QFile file(journalFile);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    Json first = Json::parse(file.readLine().toStdString());
    EXPECT_GE(first.at("milliseconds").get<double>(), 0.0);
    first.erase("milliseconds");
    EXPECT_EQ(first, (Json{{"user", "user"}, {"arguments", {"/usr/bin/say", "a b"}}, {"status", 0}}));
    EXPECT_EQ(Json::parse(file.readLine().toStdString()).at("status"), 3);
    EXPECT_EQ(file.readLine(), "{\"authorization\":\"deny\",\"prompt\":\"Please.\"}\n");
    EXPECT_TRUE(file.atEnd());
}

TEST_F(FaultsTest, commandsAreFoundAlongThePathAndByTheirOwn) {
    const ToolContext context = folder.context({u"x"_s});
    using Outcome = CommandLookUp::Outcome;
    EXPECT_EQ(findCommand(u"say"_s, context).path, u"/usr/bin/say"_s);
    EXPECT_EQ(findCommand(u"/usr/../usr/bin/say"_s, context).path, u"/usr/bin/say"_s);
    EXPECT_EQ(findCommand(u"nothing"_s, context).outcome, Outcome::Missing);
    EXPECT_EQ(findCommand(QString(), context).outcome, Outcome::Missing);
    EXPECT_EQ(findCommand(u"/Users"_s, context).outcome, Outcome::NotExecutable);
    folder.mac.volume(Actor::User).write(u"/Users/alex/say"_s, "#!/bin/sh\n");
    EXPECT_EQ(findCommand(u"./say"_s, context).outcome, Outcome::NotExecutable);
    folder.mac.volume(Actor::User).createLink(u"/Users/alex/link"_s, u"/usr/bin/say"_s);
    EXPECT_EQ(findCommand(u"/Users/alex/link"_s, context).path, u"/usr/bin/say"_s);
}

} // namespace macsim
