#include "simulator/tools/Defaults.h"

#include "fakes/SimulatedMacFolder.h"
#include "simulator/PreferenceStore.h"
#include "simulator/tools/DefaultsArguments.h"

#include <QRegularExpression>

#include <gtest/gtest.h>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

using Array = PropertyList::Array;
using Dictionary = PropertyList::Dictionary;

struct Result {
    int status = 0;
    std::string output;
    std::string message; ///< the error stream behind the system log's header

    bool operator==(const Result&) const = default;
};

void PrintTo(const Result& result, std::ostream* stream) {
    *stream << result.status << "\n--- output\n" << result.output << "\n--- message\n" << result.message;
}

Result success(const std::string& output = {}) {
    return {0, output, {}};
}
Result failure(const std::string& message) {
    return {1, {}, message + "\n"};
}
Result missingPair(const std::string& domain, const std::string& key) {
    return failure("\nThe domain/default pair of (" + domain + ", " + key + ") does not exist");
}
Result notFound(const std::string& domain) {
    return failure("\nDomain (" + domain + ") not found.\nDefaults have not been changed.");
}
Result usage() {
    return {255, defaultsUsage().toStdString(), {}};
}

class DefaultsTest : public testing::Test {
protected:
    Result run(const QStringList& arguments, Actor actor = Actor::User) {
        ToolContext context = folder.context(QStringList{u"defaults"_s} + arguments, actor);
        return finished(context);
    }

    /// Words without blanks in them, for short.
    Result line(const char16_t* words, Actor actor = Actor::User) {
        return run(QString::fromUtf16(words).split(u' '), actor);
    }

    static Result finished(ToolContext& context) {
        static const QRegularExpression header(
            u"^\\d{4}-\\d{2}-\\d{2} \\d{2}:\\d{2}:\\d{2}\\.\\d{3} defaults\\[\\d+:\\d+\\] "_s);
        const int status = runDefaults(context);
        const QString error = QString::fromUtf8(context.error);
        EXPECT_TRUE(error.isEmpty() || status == 255 || error.contains(header)) << context.error.toStdString();
        return {status, context.output.toStdString(), QString(error).remove(header).toStdString()};
    }

    std::optional<PropertyList> stored(const QString& key) const {
        return PreferenceStore(folder.mac, folder.mac.volume(Actor::User)).read({u"com.example"_s}, key);
    }

    SimulatedMacFolder folder;
};

} // namespace

TEST_F(DefaultsTest, writtenTypesAreStoredAndPrinted) {
    struct Case {
        QStringList value;
        PropertyList stored;
        std::string read;
        std::string type;
    };
    const QDateTime date({2026, 1, 31}, {10, 0}, Qt::UTC);
    const std::vector<Case> cases{
        {{u"YES"_s}, u"YES"_s, "YES", "string"},
        {{u"1"_s}, u"1"_s, "1", "string"},
        {{u"-5"_s}, u"-5"_s, "-5", "string"},
        {{u""_s}, u""_s, "", "string"},
        {{u"two words"_s}, u"two words"_s, "two words", "string"},
        {{u"-string"_s, u"(a"_s}, u"(a"_s, "(a", "string"},
        {{u"-bool"_s, u"YES"_s}, true, "1", "boolean"},
        {{u"-boolean"_s, u"true"_s}, true, "1", "boolean"},
        {{u"-bool"_s, u"yes"_s}, true, "1", "boolean"},
        {{u"-bool"_s, u"No"_s}, false, "0", "boolean"},
        {{u"-bool"_s, u"FALSE"_s}, false, "0", "boolean"},
        {{u"-int"_s, u"1"_s}, 1, "1", "integer"},
        {{u"-integer"_s, u"-9223372036854775808"_s},
         std::numeric_limits<qint64>::min(),
         "-9223372036854775808",
         "integer"},
        {{u"-int"_s, u"99999999999999999999"_s}, std::numeric_limits<qint64>::max(), "9223372036854775807", "integer"},
        {{u"-int"_s, u"12abc"_s}, 12, "12", "integer"},
        {{u"-int"_s, u"abc"_s}, 0, "0", "integer"},
        {{u"-float"_s, u"0.5"_s}, 0.5, "0.5", "float"},
        {{u"-float"_s, u"1"_s}, 1.0, "1", "float"},
        {{u"-float"_s, u"0"_s}, 0.0, "0", "float"},
        {{u"-float"_s, u"x"_s}, 0.0, "0", "float"},
        {{u"-date"_s, u"2026-01-31 10:00:00 +0000"_s}, date, "2026-01-31 10:00:00 +0000", "date"},
        {{u"-date"_s, u"2026-01-31T12:00:00+02:00"_s}, date, "2026-01-31 10:00:00 +0000", "date"},
        {{u"-data"_s, u"0fFF"_s}, QByteArray("\x0f\xff"), "{length = 2, bytes = 0x0fff}", "data"},
        {{u"-data"_s, u"fff"_s}, QByteArray("\x0f\xff"), "{length = 2, bytes = 0x0fff}", "data"},
        {{u"<0102>"_s}, QByteArray("\x01\x02"), "{length = 2, bytes = 0x0102}", "data"},
        {{u"-array"_s}, Array{}, "(\n)", "array"},
        {{u"-array"_s, u"a"_s, u"-int"_s, u"2"_s}, Array{u"a"_s, 2}, "(\n    a,\n    2\n)", "array"},
        {{u"(255, \"a b\")"_s}, Array{u"255"_s, u"a b"_s}, "(\n    255,\n    \"a b\"\n)", "array"},
        {{u"-dict"_s}, Dictionary{}, "{\n}", "dictionary"},
        {{u"-dict"_s, u"b"_s, u"x"_s, u"a"_s, u"-bool"_s, u"NO"_s},
         Dictionary{{u"a"_s, false}, {u"b"_s, u"x"_s}},
         "{\n    a = 0;\n    b = x;\n}",
         "dictionary"},
        {{u"<dict><key>a</key><integer>1</integer></dict>"_s},
         Dictionary{{u"a"_s, 1}},
         "{\n    a = 1;\n}",
         "dictionary"},
    };
    for (const Case& example : cases) {
        SCOPED_TRACE(example.value.join(u' ').toStdString());
        EXPECT_EQ(run(QStringList{u"write"_s, u"com.example"_s, u"key"_s} + example.value), success());
        EXPECT_EQ(stored(u"key"_s), example.stored);
        EXPECT_EQ(line(u"read com.example key"), success(example.read + "\n"));
        EXPECT_EQ(line(u"read-type com.example key"), success("Type is " + example.type + "\n"));
    }
}

TEST_F(DefaultsTest, aWrongCommandLinePrintsTheUsageAndChangesNothing) {
    for (const char16_t* words : {u"",
                                  u"reed com.example",
                                  u"read-type com.example",
                                  u"write com.example",
                                  u"write",
                                  u"delete",
                                  u"write com.example key -bool 1",
                                  u"write com.example key -bool 0",
                                  u"write com.example key -bool maybe",
                                  u"write com.example key -bool",
                                  u"write com.example key -int",
                                  u"write com.example key -data xyz",
                                  u"write com.example key -date tomorrow",
                                  u"write com.example key -array -int",
                                  u"rename com.example key",
                                  u"rename com.example key new more",
                                  u"delete com.example key more",
                                  u"read com.example key more",
                                  u"domains more",
                                  u"read -currentHost com.example",
                                  u"-host",
                                  u"-currentHost"}) {
        EXPECT_EQ(line(words), usage()) << QString::fromUtf16(words).toStdString();
    }
    EXPECT_EQ(stored(u"key"_s), std::nullopt);
    EXPECT_EQ(stored(u"-bool"_s), std::nullopt);
}

TEST_F(DefaultsTest, whatTheSimulatedMacLacksFailsLoudly) {
    for (const char16_t* words : {u"find word", u"import com.example -", u"export com.example /tmp/copy.plist",
                                  u"read -app Safari", u"-host elsewhere read com.example"}) {
        const Result result = line(words);
        EXPECT_EQ(result.status, 255);
        EXPECT_NE(result.message.find("not possible on this simulated Mac"), std::string::npos);
    }
}

TEST_F(DefaultsTest, exportPrintsADomainAsAnXmlPropertyList) {
    run({u"write"_s, u"com.example"_s, u"text"_s, u"-string"_s, u" a <b> & c "_s});
    run({u"write"_s, u"com.example"_s, u"switch"_s, u"-bool"_s, u"YES"_s});
    run({u"write"_s, u"com.example"_s, u"fraction"_s, u"-float"_s, u"0.5"_s});
    const Result exported = line(u"export com.example -");
    EXPECT_EQ(exported.status, 0);
    EXPECT_TRUE(exported.output.starts_with("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<!DOCTYPE plist "));
    EXPECT_NE(exported.output.find("<key>switch</key>\n\t<true/>"), std::string::npos);
    EXPECT_EQ(parsePropertyList(QByteArray::fromStdString(exported.output)),
              PropertyList(Dictionary{{u"text"_s, u" a <b> & c "_s}, {u"switch"_s, true}, {u"fraction"_s, 0.5}}));
    EXPECT_EQ(line(u"export com.example"), usage());
    EXPECT_EQ(line(u"export com.example - more"), usage());
}

TEST_F(DefaultsTest, exportOfAMissingDomainIsAnEmptyOne) {
    const Result exported = line(u"export com.example.nothing -");
    EXPECT_EQ(exported.status, 0);
    EXPECT_EQ(parsePropertyList(QByteArray::fromStdString(exported.output)), PropertyList(Dictionary{}));
}

TEST_F(DefaultsTest, exportTellsTheHostsAndThePathsApart) {
    const QString byHost = folder.mac.homeFolder(Actor::User) + u"/Library/Preferences/ByHost/com.example"_s;
    run({u"-currentHost"_s, u"write"_s, byHost, u"key"_s, u"-int"_s, u"7"_s});
    run({u"write"_s, u"/Library/Preferences/com.example"_s, u"key"_s, u"-date"_s, u"2026-03-14 20:30:00 +0000"_s},
        Actor::Root);
    const auto exported = [this](const QStringList& arguments) { return run(arguments).output; };
    const std::string ofHost = exported({u"-currentHost"_s, u"export"_s, byHost, u"-"_s});
    EXPECT_NE(ofHost.find("<integer>7</integer>"), std::string::npos);
    EXPECT_EQ(exported({u"-currentHost"_s, u"export"_s, u"com.example"_s, u"-"_s}), ofHost);
    EXPECT_EQ(exported({u"export"_s, u"com.example"_s, u"-"_s}).find("key"), std::string::npos);
    EXPECT_NE(exported({u"export"_s, u"/Library/Preferences/com.example"_s, u"-"_s}).find("2026-03-14T20:30:00Z"),
              std::string::npos);
}

TEST_F(DefaultsTest, aPlistTextAsAValueIsThatPlist) {
    run({u"write"_s, u"com.example"_s, u"list"_s, u"<array><integer>1</integer><string> two </string></array>"_s});
    EXPECT_EQ(stored(u"list"_s), PropertyList(Array{1, u" two "_s}));
    run({u"write"_s, u"com.example"_s, u"fraction"_s, u"<real>1e-09</real>"_s});
    EXPECT_EQ(stored(u"fraction"_s), PropertyList(1e-9));
    run({u"write"_s, u"com.example"_s, u"nothing"_s, u"<data></data>"_s});
    EXPECT_EQ(stored(u"nothing"_s), PropertyList(QByteArray()));
    run({u"write"_s, u"com.example"_s, u"entries"_s, u"<dict><key>a &amp; b</key><false/></dict>"_s});
    EXPECT_EQ(stored(u"entries"_s), PropertyList(Dictionary{{u"a & b"_s, false}}));
    run({u"write"_s, u"com.example"_s, u"empty"_s, u"<array/>"_s});
    EXPECT_EQ(stored(u"empty"_s), PropertyList(Array{}));
}

TEST_F(DefaultsTest, helpPrintsTheUsage) {
    EXPECT_EQ(line(u"help"), success(defaultsUsage().toStdString()));
}

TEST_F(DefaultsTest, valuesThatCannotBeMadeAreExplained) {
    const std::vector<std::pair<QStringList, std::string>> cases{
        {{u"{\"a\": 1}"_s}, "Could not parse: {\"a\": 1}.  Try single-quoting it."},
        {{u"word (more)"_s}, "Could not parse: word (more).  Try single-quoting it."},
        {{u"<plist><array></plist>"_s}, "Could not parse: <plist><array></plist>.  Try single-quoting it."},
        {{u"a"_s, u"b"_s}, "Unexpected argument b; leaving defaults unchanged."},
        {{u"-bool"_s, u"YES"_s, u"NO"_s}, "Unexpected argument NO; leaving defaults unchanged."},
        {{u"-array"_s, u"-dict"_s}, "Cannot nest composite types (arrays and dictionaries); exiting"},
        {{u"-dict"_s, u"a"_s, u"-array"_s}, "Cannot nest composite types (arrays and dictionaries); exiting"},
        {{u"-dict"_s, u"a"_s}, "Key a lacks a corresponding value"},
        {{u"-dict"_s, u"-int"_s, u"1"_s, u"b"_s}, "Dictionary keys must be strings"},
    };
    for (const auto& [value, message] : cases) {
        EXPECT_EQ(run(QStringList{u"write"_s, u"com.example"_s, u"key"_s} + value), failure(message));
    }
    EXPECT_EQ(stored(u"key"_s), std::nullopt);
}

TEST_F(DefaultsTest, aMissingKeyIsTheMissingPairAlsoInAMissingDomain) {
    EXPECT_EQ(line(u"read com.example key"), missingPair("com.example", "key"));
    EXPECT_EQ(line(u"read-type com.example key"), missingPair("com.example", "key"));
    line(u"write com.example other 1");
    EXPECT_EQ(line(u"read com.example key"), missingPair("com.example", "key"));
    EXPECT_EQ(line(u"read com.example.plist key"), missingPair("com.example.plist", "key"));
    EXPECT_EQ(line(u"read -g key"), missingPair("kCFPreferencesAnyApplication", "key"));
    EXPECT_EQ(line(u"read /tmp/x key"), missingPair("/tmp/x", "key"));
    EXPECT_EQ(line(u"read /tmp/x.plist key"), missingPair("/tmp/x.plist", "key"));
    EXPECT_EQ(line(u"read ~/x key"), missingPair("/Users/alex/x", "key"));
    EXPECT_EQ(line(u"read ./x key"), missingPair("/Users/alex/./x", "key"));
}

TEST_F(DefaultsTest, aWholeDomainIsPrintedOrMissing) {
    EXPECT_EQ(line(u"read com.example"), failure("\nDomain com.example does not exist"));
    EXPECT_EQ(line(u"read -g"), failure("\nDomain Apple Global Domain does not exist"));
    line(u"write com.example b -int 1");
    line(u"write com.example a-b text");
    EXPECT_EQ(line(u"read com.example"), success("{\n    \"a-b\" = text;\n    b = 1;\n}\n"));
    line(u"delete com.example b");
    line(u"delete com.example a-b");
    EXPECT_EQ(line(u"read com.example"), failure("\nDomain com.example does not exist"));
}

TEST_F(DefaultsTest, theGlobalDomainHasManyNames) {
    EXPECT_EQ(line(u"write NSGlobalDomain key -bool YES"), success());
    for (const QString& name : {u"-g"_s, u"-globalDomain"_s, u"NSGlobalDomain"_s, u"Apple Global Domain"_s}) {
        EXPECT_EQ(run({u"read"_s, name, u"key"_s}), success("1\n"));
    }
    EXPECT_EQ(line(u"delete -g key"), success());
    EXPECT_EQ(line(u"delete -g key"), notFound("kCFPreferencesAnyApplication"));
}

TEST_F(DefaultsTest, verbsTakeAnyCaseAndOtherNames) {
    EXPECT_EQ(line(u"WRITE com.example key 1"), success());
    EXPECT_EQ(line(u"Read com.example key"), success("1\n"));
    EXPECT_EQ(line(u"remove com.example key"), success());
    line(u"write com.example key 1");
    EXPECT_EQ(line(u"Delete-All com.example key"), success());
    EXPECT_EQ(stored(u"key"_s), std::nullopt);
}

TEST_F(DefaultsTest, deletingTwiceFailsTheSecondTime) {
    line(u"write com.example key 1");
    EXPECT_EQ(line(u"delete com.example key"), success());
    EXPECT_EQ(line(u"delete com.example key"), notFound("com.example"));
    EXPECT_EQ(line(u"delete com.example"), notFound("com.example"));
    EXPECT_EQ(line(u"delete ~/x key"), notFound("~/x"));
    line(u"write com.example key 1");
    EXPECT_EQ(line(u"delete com.example"), success());
    EXPECT_EQ(stored(u"key"_s), std::nullopt);
}

TEST_F(DefaultsTest, additionsMergeIntoWhatIsThere) {
    line(u"write com.example dict -dict-add a -bool true");
    line(u"write com.example dict -dict-add b 2 a -int 3");
    EXPECT_EQ(stored(u"dict"_s), (Dictionary{{u"a"_s, 3}, {u"b"_s, u"2"_s}}));
    line(u"write com.example array -array-add a");
    line(u"write com.example array -array-add -int 2 (b)");
    EXPECT_EQ(stored(u"array"_s), (Array{u"a"_s, 2, Array{u"b"_s}}));
    line(u"write com.example array -array c");
    EXPECT_EQ(stored(u"array"_s), Array{u"c"_s});
}

TEST_F(DefaultsTest, additionsToAnotherTypeChangeNothing) {
    line(u"write com.apple.ncprefs dnd_prefs -data 0102");
    EXPECT_EQ(line(u"write com.apple.ncprefs.plist dnd_prefs -dict-add dnd_enabled -bool true"),
              failure("Value for key dnd_prefs is not a dictionary; cannot append.  Leaving defaults unchanged."));
    EXPECT_EQ(line(u"write com.apple.ncprefs dnd_prefs -array-add x"),
              failure("Value for key dnd_prefs is not an array; cannot append.  Leaving defaults unchanged."));
    EXPECT_EQ(line(u"read com.apple.ncprefs dnd_prefs"), success("{length = 2, bytes = 0x0102}\n"));
}

TEST_F(DefaultsTest, aWholeDomainIsWrittenFromADictionary) {
    line(u"write com.example old 1");
    EXPECT_EQ(run({u"write"_s, u"com.example"_s, u"{ new = (1); }"_s}), success());
    EXPECT_EQ(line(u"read com.example"), success("{\n    new =     (\n        1\n    );\n}\n"));
    EXPECT_EQ(run({u"write"_s, u"com.example"_s, u"(1)"_s}),
              failure("\nRep argument is not a dictionary\nDefaults have not been changed."));
    EXPECT_EQ(stored(u"new"_s), Array{u"1"_s});
}

TEST_F(DefaultsTest, theCurrentHostHasItsOwnValues) {
    EXPECT_EQ(line(u"-currentHost write com.example key -int 1"), success());
    EXPECT_EQ(line(u"read com.example key"), missingPair("com.example", "key"));
    EXPECT_EQ(line(u"-currentHost read com.example key"), success("1\n"));
    EXPECT_EQ(line(u"-host MacBook read com.example key"), success("1\n"));
    EXPECT_EQ(line(u"-currentHost read /Users/alex/Library/Preferences/ByHost/com.example key"), success("1\n"));
    EXPECT_EQ(line(u"-currentHost delete ~/Library/Preferences/ByHost/com.example key"), success());
    EXPECT_EQ(line(u"-currentHost read com.example key"), missingPair("com.example", "key"));
}

TEST_F(DefaultsTest, rootChangesItsOwnPreferencesWithoutAWord) {
    line(u"write com.example key user");
    EXPECT_EQ(line(u"write com.example key root", Actor::Root), success());
    EXPECT_EQ(line(u"read com.example key"), success("user\n"));
    EXPECT_EQ(line(u"read com.example key", Actor::Root), success("root\n"));
}

TEST_F(DefaultsTest, aPathIsReadWithAndWithoutItsEnding) {
    EXPECT_EQ(line(u"write /tmp/x key 1"), success());
    EXPECT_EQ(line(u"read /tmp/x.plist key"), success("1\n"));
    EXPECT_EQ(line(u"read ../../tmp/x key"), success("1\n"));
    EXPECT_TRUE(folder.mac.volume(Actor::User).exists(u"/private/tmp/x.plist"_s));
}

TEST_F(DefaultsTest, aRefusedWriteNamesTheDomainOnTheHeadersLine) {
    EXPECT_EQ(line(u"write /Library/Preferences/x key 1"),
              failure("Could not write domain /Library/Preferences/x; exiting"));
    EXPECT_EQ(line(u"write /Library/Preferences/x key 1", Actor::Root), success());
    EXPECT_EQ(line(u"delete /Library/Preferences/x key"), notFound("/Library/Preferences/x"));
    EXPECT_EQ(line(u"rename /Library/Preferences/x key new"), failure("Failed to write domain /Library/Preferences/x"));
    EXPECT_EQ(line(u"read /Library/Preferences/x key"), success("1\n"));
    EXPECT_EQ(line(u"read /var/root/Library/Preferences/x key"), missingPair("/var/root/Library/Preferences/x", "key"));
}

TEST_F(DefaultsTest, aFullDiskRefusesAndKeepsTheOldValue) {
    line(u"write com.example key 1");
    line(u"write -g key 1");
    for (const auto& [domain, name] : {std::pair{u"com.example"_s, "com.example"}, {u"-g"_s, "Apple Global Domain"}}) {
        ToolContext context = folder.context({u"defaults"_s, u"write"_s, domain, u"key"_s, u"2"_s});
        context.volume = context.volume.full();
        EXPECT_EQ(finished(context), failure("Could not write domain " + std::string(name) + "; exiting"));
        EXPECT_EQ(run({u"read"_s, domain, u"key"_s}), success("1\n"));
    }
}

TEST_F(DefaultsTest, aKeyIsRenamedWithItsValue) {
    line(u"write com.example old -bool YES");
    EXPECT_EQ(line(u"rename com.example old new"), success());
    EXPECT_EQ(stored(u"new"_s), true);
    EXPECT_EQ(stored(u"old"_s), std::nullopt);
    EXPECT_EQ(line(u"rename com.example old new"),
              failure("Key old does not exist in domain com.example; leaving defaults unchanged"));
}

TEST_F(DefaultsTest, allDomainsAreListedAndPrinted) {
    line(u"write com.b key 1");
    line(u"write com.a key 2");
    line(u"write -g key 3");
    line(u"-currentHost write com.c key 4");
    EXPECT_EQ(line(u"domains"), success("com.a, com.b\n"));
    EXPECT_EQ(line(u"-currentHost domains"), success("com.c\n"));
    EXPECT_EQ(line(u"read"), success("{\n"
                                     "    \"Apple Global Domain\" =     {\n        key = 3;\n    };\n"
                                     "    \"com.a\" =     {\n        key = 2;\n    };\n"
                                     "    \"com.b\" =     {\n        key = 1;\n    };\n"
                                     "}\n"));
}

TEST_F(DefaultsTest, percentSignsStayAsTheyAre) {
    EXPECT_EQ(line(u"read %2 %1"), missingPair("%2", "%1"));
    EXPECT_EQ(line(u"write com.example %1 -array-add %2"), success());
    EXPECT_EQ(line(u"write com.example %1 -dict-add %2 3"),
              failure("Value for key %1 is not a dictionary; cannot append.  Leaving defaults unchanged."));
}

} // namespace macsim
