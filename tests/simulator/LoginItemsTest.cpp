#include "simulator/LoginItems.h"

#include "simulator/Journal.h"
#include "simulator/PropertyList.h"
#include "simulator/ToolRun.h"
#include "simulator/tools/Osascript.h"

#include <QFile>

#include <string>
#include <thread>
#include <vector>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

Json item(const char* name, const Json& path, bool hidden) {
    return {{"name", name}, {"path", path}, {"hidden", hidden}};
}

class LoginItemsTest : public ::testing::Test {
protected:
    LoginItemsTest() {
        setState(folder, "permissions", {{"automationQuestion", "allow"}});
        setItems({item("Dropbox", "/Applications/Dropbox.app", false), item("Live", "/Applications/Live.app", true)});
    }

    ToolRun script(const QString& source, const QStringList& options = {}) {
        return runTool(folder, runOsascript, QStringList{u"osascript"_s} + options + QStringList{u"-e"_s, source});
    }
    ToolRun tell(const QString& statement, const QStringList& options = {}) {
        return script(u"tell application \"System Events\" to "_s + statement, options);
    }
    std::string printed(const QString& statement, const QStringList& options = {}) {
        const ToolRun run = tell(statement, options);
        EXPECT_EQ(run.status, 0) << statement.toStdString() << '\n' << run.error.toStdString();
        return run.output.toStdString();
    }

    void setItems(const Json& items) { setState(folder, "loginItems", items); }
    Json items() const { return folder.mac.state().read("loginItems"); }
    std::vector<std::string> names() const {
        std::vector<std::string> names;
        for (const Json& each : items()) {
            names.push_back(each.at("name"));
        }
        return names;
    }
    void setTasks(const Json& records) { setState(folder, "backgroundTasks", {{"records", records}}); }
    Json tasks() const { return folder.mac.state().read("backgroundTasks"); }

    SimulatedMacFolder folder;
};

const QString kRefusal = u"Not authorized to send Apple events to System Events."_s;

/// As the program reads them: by their number.
const QString kReading = uR"(tell application "System Events"
    set output to ""
    try
        with timeout of 120 seconds
            set itemCount to count of login items
        end timeout
        with timeout of 20 seconds
            repeat with itemNumber from 1 to itemCount
                set itemName to "Unreadable login item " & itemNumber
                set itemPath to ""
                set itemHidden to "unreadable"
                try
                    set itemName to name of login item itemNumber
                    set itemHidden to false
                    set itemHidden to hidden of login item itemNumber
                    set itemPath to path of login item itemNumber
                on error errMsg number errNum
                    if errNum is -1743 or errNum is -600 or errNum is -609 then error errMsg number errNum
                    if errNum is -1712 and itemHidden is "unreadable" then error errMsg number errNum
                end try
                set output to output & itemName & "|" & itemPath & "|" & itemHidden & "\n"
            end repeat
        end timeout
    on error errMsg number errNum
        return "ERROR|" & errNum & "|" & errMsg
    end try
    return output
end tell)"_s;

/// One event for each condition.
QString deletingAll(const QStringList& conditions) {
    QString steps;
    for (const QString& condition : conditions) {
        steps += uR"(        try
            if (count of (every login item whose %1)) is 0 then
                set output to output & "missing\n"
            else
                delete (every login item whose %1)
                set output to output & "ok\n"
            end if
        on error number errNum
            set output to output & "error:" & errNum & "\n"
        end try
)"_s.arg(condition);
    }
    return uR"(tell application "System Events"
    set output to ""
    with timeout of 20 seconds
)"_s + steps +
           u"    end timeout\n    return output\nend tell"_s;
}

/// @param test  the property that is looked at: "name", "path"
QString deleting(const QString& test, const QString& literal) {
    return deletingAll({u"%1 is \"%2\""_s.arg(test, literal)});
}

QString making(const QString& pathLiteral, const QString& hidden) {
    return uR"(tell application "System Events"
    try
        set matches to every login item whose path is "%1"
        if (count of matches) > 0 then
            return "exists"
        end if
        make new login item at end of login items with properties {path:"%1", hidden:%2}
        return "ok"
    on error number errNum
        return "error:" & errNum
    end try
end tell)"_s.arg(pathLiteral, hidden);
}

Json manyItems(int count) {
    Json items = Json::array();
    for (int i = 0; i < count; ++i) {
        const std::string name = "Item " + std::to_string(i);
        items.push_back(item(name.c_str(), "/Applications/" + name + ".app", false));
    }
    return items;
}

} // namespace

TEST_F(LoginItemsTest, areReadInOneScript) {
    EXPECT_EQ(script(kReading),
              (ToolRun{0, "Dropbox|/Applications/Dropbox.app|false\nLive|/Applications/Live.app|true\n\n", ""}));
}

TEST_F(LoginItemsTest, anEmptyListIsAnEmptyLine) {
    setState(folder, "loginItems", nullptr);
    EXPECT_EQ(script(kReading), (ToolRun{0, "\n", ""}));
    EXPECT_EQ(printed(u"get the name of every login item"_s), "\n");
    EXPECT_EQ(printed(u"count login items"_s), "0\n");
}

TEST_F(LoginItemsTest, aPathThatIsGoneIsAMissingValue) {
    setItems({item("Null", nullptr, false), {{"name", "None"}}});
    EXPECT_EQ(script(kReading), (ToolRun{0, "Null|missing value|false\nNone|missing value|false\n\n", ""}));
    EXPECT_EQ(printed(u"get path of login item 1"_s), "missing value\n");
    EXPECT_EQ(script(deleting(u"name"_s, u"null"_s)), (ToolRun{0, "ok\n\n", ""}));
    EXPECT_EQ(names(), std::vector<std::string>{"None"});
}

TEST_F(LoginItemsTest, hostileNamesSurvive) {
    const char* name = "Mika’s \"Warm-up\" | a\\b, ü\nend tell";
    setItems({item("Other", "/a", false), item(name, "/Users/alex/x.command", false)});
    const ToolRun read = script(kReading);
    EXPECT_EQ(read.output.toStdString(), "Other|/a|false\n" + std::string(name) + "|/Users/alex/x.command|false\n\n");
    EXPECT_EQ(script(deleting(u"name"_s, u"Mika’s \\\"Warm-up\\\" | a\\\\b, ü\nend tell"_s)),
              (ToolRun{0, "ok\n\n", ""}));
    EXPECT_EQ(names(), std::vector<std::string>{"Other"});
}

TEST_F(LoginItemsTest, oneLineAsksForWhatAPersonWouldTry) {
    const std::pair<QString, std::string> cases[] = {
        {u"get the name of every login item"_s, "Dropbox, Live\n"},
        {u"get the path of every login item"_s, "/Applications/Dropbox.app, /Applications/Live.app\n"},
        {u"get hidden of every login item"_s, "false, true\n"},
        {u"get every login item"_s, "login item Dropbox, login item Live\n"},
        {u"get login item 2"_s, "login item Live\n"},
        {u"get kind of login item \"live\""_s, "Application\n"},
        {u"count login items"_s, "2\n"},
        {u"exists login item \"LIVE\""_s, "true\n"},
        {u"login item \"X\" exists"_s, "false\n"},
        {u"get properties of login item 2"_s,
         "class:login item, path:/Applications/Live.app, hidden:true, kind:Application, name:Live\n"},
    };
    for (const auto& [statement, expected] : cases) {
        EXPECT_EQ(printed(statement), expected) << statement.toStdString();
    }
    EXPECT_EQ(printed(u"get the properties of every login item whose hidden is false"_s, {u"-s"_s, u"s"_s}),
              "{{class:login item, path:\"/Applications/Dropbox.app\", hidden:false, kind:\"Application\", "
              "name:\"Dropbox\"}}\n");
    EXPECT_EQ(printed(u"get login item 1"_s, {u"-s"_s, u"s"_s}),
              "login item \"Dropbox\" of application \"System Events\"\n");
}

TEST_F(LoginItemsTest, areNoWordsOutsideOfSystemEvents) {
    for (const QString& source : {u"get login items"_s, u"tell application \"Finder\" to get every login item"_s,
                                  u"tell application \"Finder\" to delete login item \"Live\""_s}) {
        const ToolRun run = script(source);
        EXPECT_EQ(run.status, 1);
        EXPECT_TRUE(run.error.endsWith("(-2741)\n")) << run.error.toStdString();
    }
}

TEST_F(LoginItemsTest, deletingByNameTakesEveryItemOfThatNameInAnyCase) {
    setItems({item("live", "/a", false), item("Keep", "/b", false), item("LIVE", "/c", false),
              item("Live", nullptr, false), item("Live", nullptr, true)});
    EXPECT_EQ(script(deleting(u"name"_s, u"Live"_s)), (ToolRun{0, "ok\n\n", ""}));
    EXPECT_EQ(names(), std::vector<std::string>{"Keep"});
    EXPECT_EQ(script(deleting(u"name"_s, u"Live"_s)), (ToolRun{0, "missing\n\n", ""}));
}

TEST_F(LoginItemsTest, deletingByPathTakesThatItemOnly) {
    EXPECT_EQ(script(deleting(u"path"_s, u"/Applications/Live.app"_s)), (ToolRun{0, "ok\n\n", ""}));
    EXPECT_EQ(names(), std::vector<std::string>{"Dropbox"});
}

TEST_F(LoginItemsTest, deletingPrintsNothing) {
    EXPECT_EQ(printed(u"delete login item \"dropbox\""_s), "");
    EXPECT_EQ(printed(u"delete (every login item whose name is \"X\")"_s), "");
    EXPECT_EQ(names(), std::vector<std::string>{"Live"});
    EXPECT_EQ(printed(u"delete every login item whose name is \"Live\""_s), "");
    EXPECT_EQ(items(), Json::array());
}

TEST_F(LoginItemsTest, deletingAMissingOneIsAnError) {
    const ToolRun run = tell(u"delete login item \"X\""_s);
    EXPECT_EQ(run.status, 1);
    EXPECT_TRUE(run.error.endsWith("System Events got an error: Can’t get login item \"X\". (-1728)\n"))
        << run.error.toStdString();
}

TEST_F(LoginItemsTest, aDeletionThatDoesNothingSaysNothing) {
    setState(folder, "loginItemFaults", {{"deleteIsSilent", true}});
    setTasks({{{"uid", 501}, {"type", "app"}, {"url", "file:///Applications/Live.app/"}, {"enabled", true}}});
    EXPECT_EQ(script(deleting(u"name"_s, u"Live"_s)), (ToolRun{0, "ok\n\n", ""}));
    EXPECT_EQ(names(), (std::vector<std::string>{"Dropbox", "Live"}));
    EXPECT_EQ(tasks()["records"][0]["enabled"], true);
}

TEST_F(LoginItemsTest, makingAddsAtTheEndUnderTheNameOfTheFile) {
    EXPECT_EQ(script(making(u"/Applications/Über Mix.app"_s, u"true"_s)), (ToolRun{0, "ok\n", ""}));
    ASSERT_EQ(items().size(), 3U);
    EXPECT_EQ(items()[2], item("Über Mix", "/Applications/Über Mix.app", true));
    EXPECT_EQ(script(making(u"/Applications/über mix.app"_s, u"false"_s)), (ToolRun{0, "exists\n", ""}));
    EXPECT_EQ(items().size(), 3U);
}

TEST_F(LoginItemsTest, makingInOneLinePrintsTheItem) {
    EXPECT_EQ(printed(u"make new login item at end of login items with properties {path:\"/Applications/X.app/\", "
                      "hidden:false}"_s),
              "login item X\n");
    EXPECT_EQ(printed(u"make login item at end with properties {name:\"Mine\", path:\"/usr/bin/true\"}"_s),
              "login item true\n");
    EXPECT_EQ(items()[2], item("X", "/Applications/X.app/", false));
    EXPECT_EQ(items()[3], item("true", "/usr/bin/true", false));
}

TEST_F(LoginItemsTest, makingTheSamePathAgainMakesNoSecondItem) {
    const Json before = items();
    EXPECT_EQ(printed(u"make login item at end with properties {path:\"/Applications/Live.app/\", hidden:false}"_s),
              "login item Live\n");
    EXPECT_EQ(items(), before);
}

TEST_F(LoginItemsTest, makingNeedsAPath) {
    const Json before = items();
    for (const QString& properties : {u"{hidden:true}"_s, u"{path:\"\"}"_s, u"{path:{a:1}}"_s,
                                      u"{path:\"/x\", hidden:\"maybe\"}"_s, u"{path:missing value, hidden:{}}"_s}) {
        EXPECT_EQ(tell(u"make login item at end with properties "_s + properties).status, 1)
            << properties.toStdString();
    }
    EXPECT_EQ(items(), before);
}

TEST_F(LoginItemsTest, onlyHiddenCanBeSet) {
    EXPECT_EQ(printed(u"set hidden of login item \"Dropbox\" to true"_s), "true\n");
    EXPECT_EQ(items()[0], item("Dropbox", "/Applications/Dropbox.app", true));
    const ToolRun run = tell(u"set name of login item 1 to \"X\""_s);
    EXPECT_TRUE(run.error.endsWith("(-10006)\n")) << run.error.toStdString();
    EXPECT_EQ(names(), (std::vector<std::string>{"Dropbox", "Live"}));
}

TEST_F(LoginItemsTest, makingAddsTheBackgroundRecordOfTheBundle) {
    putFile(folder, u"/Applications/My Über.app/Contents/Info.plist"_s,
            xmlPropertyList(PropertyList::Dictionary{{u"CFBundleIdentifier"_s, u"com.x.uber"_s}}));
    ASSERT_EQ(script(making(u"/Applications/My Über.app"_s, u"false"_s)), (ToolRun{0, "ok\n", ""}));
    const Json expected = {{"uid", 501},
                           {"name", "My Über"},
                           {"type", "app"},
                           {"identifier", "2.com.x.uber"},
                           {"url", "file:///Applications/My%20%C3%9Cber.app/"},
                           {"enabled", true},
                           {"allowed", true}};
    EXPECT_EQ(tasks(), (Json{{"records", Json::array({expected})}}));
}

TEST_F(LoginItemsTest, deletingLeavesTheBackgroundRecordDisabledAndMakingEnablesIt) {
    const Json other = {{"uid", 0}, {"type", "app"}, {"url", "file:///Applications/Live.app/"}, {"enabled", true}};
    const Json agent = {{"uid", 501}, {"type", "agent"}, {"url", "file:///Applications/Live.app/"}, {"enabled", true}};
    Json live = {{"uid", 501},
                 {"type", "app"},
                 {"url", "file:///Applications/Live.app/"},
                 {"enabled", true},
                 {"allowed", false}};
    setTasks({other, agent, live});
    printed(u"delete login item \"Live\""_s);
    live["enabled"] = false;
    EXPECT_EQ(tasks()["records"], Json::array({other, agent, live}));
    printed(u"make login item at end with properties {path:\"/Applications/Live.app\", hidden:true}"_s);
    live["enabled"] = true;
    EXPECT_EQ(tasks()["records"], Json::array({other, agent, live}));
}

// ---- Two of one name

TEST_F(LoginItemsTest, aListThatIsKeptKnowsItsItemsByTheirNames) {
    setItems({item("Chat", "/first", false), item("chat", "/second", true)});
    const QString keeping =
        u"tell application \"System Events\"\nset kept to every login item whose path is \"/second\"\n"_s;
    EXPECT_EQ(script(keeping + u"get path of item 1 of kept\nend tell"_s), (ToolRun{0, "/first\n", ""}));
    EXPECT_EQ(script(keeping + u"repeat with each in kept\nset hidden of each to true\nend repeat\nend tell"_s).status,
              0);
    EXPECT_EQ(items()[0], item("Chat", "/first", true));
    EXPECT_EQ(script(keeping + u"delete item 1 of kept\nend tell"_s).status, 0);
    EXPECT_EQ(items(), Json::array({item("chat", "/second", true)})) << "the first of the name went";
}

TEST_F(LoginItemsTest, aLoopKnowsItsItemsByTheirNamesToo) {
    setItems({item("Chat", "/first", false), item("chat", "/second", true)});
    EXPECT_EQ(script(u"tell application \"System Events\"\nset output to \"\"\nrepeat with each in login items\n"
                     "set output to output & path of each & \" \"\nend repeat\nreturn output\nend tell"_s),
              (ToolRun{0, "/first /first \n", ""}));
}

TEST_F(LoginItemsTest, oneEventFindsItsItemsByItself) {
    setItems({item("Chat", "/first", false), item("chat", "/second", true), item("Chat", "/third", true)});
    EXPECT_EQ(script(kReading), (ToolRun{0, "Chat|/first|false\nchat|/second|true\nChat|/third|true\n\n", ""}));
    EXPECT_EQ(script(deletingAll({u"path is \"/second\" and name is \"Chat\""_s, u"path is \"/second\""_s})),
              (ToolRun{0, "ok\nmissing\n\n", ""}));
    EXPECT_EQ(items(), Json::array({item("Chat", "/first", false), item("Chat", "/third", true)}));
}

TEST_F(LoginItemsTest, aDeletionMayGoByTheNameAllTheSame) {
    setItems({item("Chat", "/first", false), item("chat", "/second", true)});
    setState(folder, "loginItemFaults", {{"deleteGoesByName", true}});
    EXPECT_EQ(script(deleting(u"path"_s, u"/second"_s)), (ToolRun{0, "ok\n\n", ""}));
    EXPECT_EQ(items(), Json::array({item("chat", "/second", true)}));
}

// ---- What can't be read

TEST_F(LoginItemsTest, oneThatCannotBeReadIsListedByWhatCouldBe) {
    setState(folder, "loginItemFaults", {{"unreadable", {{"Dropbox", {"path"}}, {"Live", {"name", "path"}}}}});
    EXPECT_EQ(script(kReading), (ToolRun{0, "Dropbox||false\nUnreadable login item 2||unreadable\n\n", ""}));
    EXPECT_EQ(printed(u"get hidden of login item \"Live\""_s), "true\n");
    EXPECT_TRUE(tell(u"get path of login item \"Dropbox\""_s).error.endsWith("(-1728)\n"));
}

// ---- The permission

TEST_F(LoginItemsTest, whatTheUserIsAskedForTheFirstTimeIsKept) {
    for (const bool isAllowed : {true, false}) {
        setState(folder, "permissions", {{"automationQuestion", isAllowed ? "allow" : "deny"}});
        const ToolRun first = tell(u"count login items"_s);
        EXPECT_EQ(first.status, isAllowed ? 0 : 1);
        EXPECT_EQ(folder.mac.state().read("permissions")["automation"], (Json{{"System Events", isAllowed}}));
        setState(
            folder, "permissions",
            {{"automation", {{"System Events", isAllowed}}}, {"automationQuestion", isAllowed ? "deny" : "allow"}});
        EXPECT_EQ(tell(u"count login items"_s), first) << "nobody is asked again";
    }
}

TEST_F(LoginItemsTest, aRefusalStrikesEachEventAndNoTell) {
    setState(folder, "permissions", {{"automation", {{"System Events", false}}}});
    const Json before = items();
    EXPECT_EQ(script(u"tell application \"System Events\" to return 0"_s), (ToolRun{0, "0\n", ""}));
    EXPECT_EQ(script(kReading), (ToolRun{0, "ERROR|-1743|"_ba + kRefusal.toUtf8() + "\n", ""}));
    EXPECT_EQ(script(deleting(u"name"_s, u"Live"_s)), (ToolRun{0, "error:-1743\n\n", ""}));
    EXPECT_EQ(script(making(u"/x"_s, u"true"_s)), (ToolRun{0, "error:-1743\n", ""}));
    EXPECT_EQ(tell(u"exists login item \"Live\""_s).status, 1);
    EXPECT_TRUE(tell(u"make login item at end with properties {path:\"/x\"}"_s).error.endsWith("(-1743)\n"));
    EXPECT_EQ(items(), before);
}

TEST_F(LoginItemsTest, aQuestionThatNobodyAnswersIsAnEventThatTookTooLong) {
    const Json silent[] = {nullptr,
                           Json::object(),
                           {{"automationQuestion", "unanswered"}},
                           {{"automationQuestion", "allow"}, {"automation", {{"System Events", "unanswered"}}}}};
    for (const Json& permissions : silent) {
        setState(folder, "permissions", permissions);
        EXPECT_EQ(script(kReading),
                  (ToolRun{0, "ERROR|-1712|System Events got an error: AppleEvent timed out.\n", ""}));
        EXPECT_EQ(folder.mac.state().read("permissions"), permissions) << "the question stands";
    }
}

TEST_F(LoginItemsTest, theJournalTellsHowLongAnEventWaitedForTheAnswer) {
    const QString file = folder.outside() + u"/journal"_s;
    const Journal journal({file});
    const auto asked = [&](const QString& source, const char* policy) {
        setState(folder, "permissions", {{"automationQuestion", policy}});
        QFile::remove(file);
        ToolContext context = folder.context({u"osascript"_s, u"-e"_s, source});
        context.journal = &journal;
        runOsascript(context);
        QFile written(file);
        EXPECT_TRUE(written.open(QIODevice::ReadOnly));
        return written.readAll();
    };
    EXPECT_EQ(asked(kReading, "unanswered"), R"({"automation":"System Events","answer":"unanswered","seconds":120})"
                                             "\n");
    EXPECT_EQ(asked(deleting(u"name"_s, u"Live"_s), "unanswered"),
              R"({"automation":"System Events","answer":"unanswered","seconds":20})"
              "\n");
    EXPECT_EQ(asked(u"tell application \"System Events\" to count login items"_s, "allow"),
              R"({"automation":"System Events","answer":"allow","seconds":120})"
              "\n");
}

TEST_F(LoginItemsTest, eachApplicationHasItsOwnPermission) {
    setState(folder, "permissions", {{"automation", {{"Finder", false}}}, {"automationQuestion", "allow"}});
    EXPECT_EQ(printed(u"count login items"_s), "2\n");
    EXPECT_EQ(script(u"tell application \"Finder\" to count items in trash"_s).status, 1);
}

TEST_F(LoginItemsTest, whatOthersWriteIsSeen) {
    LoginItems mine(folder.mac);
    const QString identity = mine.all().at(1).identity();
    LoginItems theirs(folder.mac);
    ASSERT_TRUE(theirs.setHidden(identity, false));
    ASSERT_NE(mine.find(identity), nullptr);
    EXPECT_FALSE(mine.find(identity)->hidden);
    ASSERT_TRUE(theirs.remove(identity));
    EXPECT_EQ(mine.find(identity), nullptr);
    EXPECT_FALSE(mine.remove(identity));
    EXPECT_FALSE(mine.setHidden(identity, true));
    EXPECT_EQ(names(), std::vector<std::string>{"Dropbox"});
}

TEST_F(LoginItemsTest, changesAtTheSameTimeLoseNothing) {
    constexpr int kWriters = 4;
    constexpr int kItemsEach = 10;
    constexpr std::size_t kItems = static_cast<std::size_t>(kWriters) * kItemsEach;
    std::vector<std::thread> writers;
    writers.reserve(kWriters);
    for (int writer = 0; writer < kWriters; ++writer) {
        writers.emplace_back([this, writer] {
            LoginItems items(folder.mac);
            for (int i = 0; i < kItemsEach; ++i) {
                items.add(u"/%1/%2"_s.arg(writer).arg(i), false);
            }
        });
    }
    for (std::thread& writer : writers) {
        writer.join();
    }
    EXPECT_EQ(items().size(), 2U + kItems);
    EXPECT_EQ(tasks()["records"].size(), kItems);
}

TEST_F(LoginItemsTest, manyItemsAreReadAndOneOfThemDeleted) {
    constexpr int kCount = 2000;
    setItems(manyItems(kCount));
    EXPECT_EQ(script(kReading).output.count('\n'), kCount + 1);
    EXPECT_EQ(script(deleting(u"name"_s, u"item 1999"_s)), (ToolRun{0, "ok\n\n", ""}));
    EXPECT_EQ(items(), manyItems(kCount - 1));
}

TEST_F(LoginItemsTest, entriesThatAreNoItemsAreNoneAndStay) {
    setItems({1, "x", nullptr, item("Live", "/Applications/Live.app", false), {{"name", 5}, {"path", {1}}}});
    setState(folder, "backgroundTasks", 7);
    EXPECT_EQ(printed(u"get path of every login item"_s), "/Applications/Live.app, missing value\n");
    printed(u"delete every login item"_s);
    EXPECT_EQ(items(), Json::array({1, "x", nullptr}));
    setState(folder, "loginItems", "nonsense");
    printed(u"make login item at end with properties {path:\"/a\"}"_s);
    EXPECT_EQ(items(), Json::array({item("a", "/a", false)}));
}

} // namespace macsim
