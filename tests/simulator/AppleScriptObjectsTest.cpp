// Objects of applications, in the words of a theatre's lamps.

#include "AppleScriptFakeHost.h"

using namespace Qt::StringLiterals;

namespace macsim {

using namespace applescript;

namespace {

struct Lamp {
    QString name;
    bool lit = false;
    int identity = 0;
};

class Theatre final : public ScriptApplication {
public:
    QString name() const override { return u"Theatre"_s; }

    QList<ScriptObject> objects(const QString& className) override {
        ++events;
        QList<ScriptObject> objects;
        for (const Lamp& lamp : std::as_const(lamps)) {
            objects.append(reference(className, lamp));
        }
        return objects;
    }

    std::optional<Value> property(const ScriptObject& object, const QString& property) override {
        ++events;
        const Lamp* lamp = find(object);
        if (lamp == nullptr) {
            return std::nullopt;
        }
        return property == u"lit"_s    ? std::optional(Value(lamp->lit))
               : property == u"name"_s ? std::optional(Value(lamp->name))
                                       : std::nullopt;
    }

    bool setProperty(const ScriptObject& object, const QString& property, const Value& value) override {
        Lamp* lamp = find(object);
        if (lamp != nullptr && property == u"lit"_s) {
            lamp->lit = *value.get<bool>();
        }
        return lamp != nullptr && property == u"lit"_s;
    }

    ScriptObject make(const QString& className, const Record& properties) override {
        const Value* name = properties.find(u"name"_s);
        lamps.append({name ? *name->get<QString>() : u"new"_s, false, static_cast<int>(lamps.size()) + 100});
        return reference(className, lamps.last());
    }

    bool remove(const ScriptObject& object) override {
        return lamps.removeIf([&](const Lamp& lamp) { return isIt(lamp, object); }) > 0;
    }

    QList<Lamp> lamps{{u"Spot"_s, true, 1}, {u"wash"_s, false, 2}, {u"Wash"_s, true, 3}};
    int events = 0;

private:
    static ScriptObject reference(const QString& className, const Lamp& lamp) {
        return {className, lamp.name, QString::number(lamp.identity)};
    }
    static bool isIt(const Lamp& lamp, const ScriptObject& object) {
        return QString::number(lamp.identity) == object.identity;
    }
    Lamp* find(const ScriptObject& object) {
        const auto found =
            std::find_if(lamps.begin(), lamps.end(), [&](const Lamp& each) { return isIt(each, object); });
        return found == lamps.end() ? nullptr : &*found;
    }
};

class TheatreHost final : public ScriptHost {
public:
    ShellScriptOutcome doShellScript(const ShellScriptRequest& /*request*/) override { return {}; }
    const ScriptDictionary* findDictionary(const QString& application) override {
        return application == theatre.name() ? &m_dictionary : nullptr;
    }
    ScriptApplication* findApplication(const QString& name) override {
        return name == theatre.name() ? static_cast<ScriptApplication*>(&theatre) : &m_other;
    }
    void limitEvents(std::chrono::seconds /*limit*/) override {}

    Theatre theatre;

private:
    ScriptDictionary m_dictionary{{{u"stage lamp"_s, u"stage lamps"_s, {u"name"_s, u"lit"_s}}}};
    FakeApplication m_other;
};

class AppleScriptObjects : public ::testing::Test {
protected:
    std::variant<ScriptResult, ScriptError> tell(const QString& statements) {
        return runAppleScript(u"tell application \"Theatre\"\n"_s + statements + u"\nend tell"_s, host);
    }

    std::string value(const QString& statements) {
        const auto outcome = tell(statements);
        if (const auto* error = std::get_if<ScriptError>(&outcome)) {
            return testing::PrintToString(*error);
        }
        const auto& result = std::get<ScriptResult>(outcome);
        return result.hasValue ? result.sourceForm.toStdString() : "(no value)";
    }

    std::string error(const QString& statements) {
        const auto outcome = tell(statements);
        const auto* error = std::get_if<ScriptError>(&outcome);
        return error ? std::to_string(error->number) + ' ' + error->message.toStdString() : "no error";
    }

    TheatreHost host;
};

} // namespace

TEST_F(AppleScriptObjects, areChosenByPlaceNameAndCondition) {
    const std::pair<QString, std::string> cases[] = {
        {u"stage lamp 1"_s, "stage lamp \"Spot\" of application \"Theatre\""},
        {u"the stage lamp \"SPOT\""_s, "stage lamp \"Spot\" of application \"Theatre\""},
        {u"name of stage lamp -1"_s, "\"Wash\""},
        {u"name of first stage lamp"_s, "\"Spot\""},
        {u"name of last stage lamp"_s, "\"Wash\""},
        {u"set n to 2\nname of stage lamp n"_s, "\"wash\""},
        {u"name of every stage lamp"_s, "{\"Spot\", \"wash\", \"Wash\"}"},
        {u"get the name of stage lamps"_s, "{\"Spot\", \"wash\", \"Wash\"}"},
        {u"name of every stage lamp whose lit is true"_s, "{\"Spot\", \"Wash\"}"},
        {u"name of (stage lamps where name is \"WASH\" and not lit)"_s, "{\"wash\"}"},
        {u"name of last stage lamp whose name is not \"wash\""_s, "\"Spot\""},
        {u"name of first stage lamp whose name of it starts with \"w\""_s, "\"wash\""},
        {u"every stage lamp whose name is \"none\""_s, "{}"},
        {u"count stage lamps"_s, "3"},
        {u"count of (every stage lamp whose lit is true)"_s, "2"},
        {u"class of stage lamp 1"_s, "stage lamp"},
        {u"name"_s, "\"Theatre\""},
    };
    for (const auto& [statements, expected] : cases) {
        EXPECT_EQ(value(statements), expected) << statements.toStdString();
    }
}

TEST_F(AppleScriptObjects, whatIsMissingIsAnErrorOfTheApplication) {
    const std::pair<QString, std::string> cases[] = {
        {u"stage lamp \"X\""_s, "-1728 Theatre got an error: Can’t get stage lamp \"X\"."},
        {u"stage lamp 4"_s, "-1719 Theatre got an error: Can’t get stage lamp 4. Invalid index."},
        {u"stage lamp 0"_s, "-1719 Theatre got an error: Can’t get stage lamp 0. Invalid index."},
        {u"delete stage lamp \"X\""_s, "-1728 Theatre got an error: Can’t get stage lamp \"X\"."},
        {u"colour of stage lamp 1"_s, "-1728 Theatre got an error: Can’t get colour of stage lamp \"Spot\"."},
        {u"lit"_s, "-1728 Theatre got an error: Can’t get lit of application \"Theatre\"."},
        {u"set name of stage lamp 1 to \"X\""_s,
         "-10006 Theatre got an error: Can’t set name of stage lamp \"Spot\" to \"X\"."},
        {u"set lit of 5 to true"_s, "-1728 Can’t get lit of 5."},
        {u"delete 5"_s, "-1728 Can’t get 5."},
        {u"make new stage lamp with properties 5"_s, "-1700 Can’t make 5 into type record."},
        {u"stage lamp 1 as text"_s,
         "-1700 Can’t make stage lamp \"Spot\" of application \"Theatre\" into type Unicode text."},
    };
    for (const auto& [statements, expected] : cases) {
        EXPECT_EQ(error(statements), expected) << statements.toStdString();
    }
    EXPECT_EQ(host.theatre.lamps.size(), 3);
}

TEST_F(AppleScriptObjects, existTakesEitherSideAndLooksAtNoError) {
    EXPECT_EQ(value(u"exists stage lamp \"spot\""_s), "true");
    EXPECT_EQ(value(u"stage lamp \"X\" exists"_s), "false");
    EXPECT_EQ(value(u"exists stage lamp 9"_s), "false");
    EXPECT_EQ(value(u"exists (every stage lamp whose name is \"X\")"_s), "false");
    EXPECT_EQ(value(u"if not (exists stage lamp 3) then return 1\n2"_s), "2");
    EXPECT_EQ(error(u"exists stage lamp foo"_s), "-2753 The variable foo is not defined.");
}

TEST_F(AppleScriptObjects, referencesSurviveTheDeletionOfOthers) {
    EXPECT_EQ(value(u"set l to every stage lamp whose name is \"WASH\"\n"
                    "repeat with x in l\ndelete x\nend repeat\nname of every stage lamp"_s),
              "{\"Spot\"}");
}

TEST_F(AppleScriptObjects, aReferenceToADeletedObjectIsAnError) {
    EXPECT_EQ(error(u"set x to stage lamp 1\ndelete x\nname of x"_s),
              "-1728 Theatre got an error: Can’t get name of stage lamp \"Spot\".");
    EXPECT_EQ(error(u"set x to stage lamp 1\ndelete x\ndelete x"_s),
              "-1728 Theatre got an error: Can’t get stage lamp \"wash\".");
}

TEST_F(AppleScriptObjects, deletingGivesNoValue) {
    EXPECT_EQ(value(u"1\ndelete stage lamp 1"_s), "(no value)");
    EXPECT_EQ(value(u"delete every stage lamp whose name is \"none\""_s), "(no value)");
    EXPECT_EQ(value(u"delete (every stage lamp whose name is \"wash\")\nname of stage lamps"_s), "{}");
}

TEST_F(AppleScriptObjects, areMadeAndChanged) {
    EXPECT_EQ(value(u"make new stage lamp at end of stage lamps with properties {name:\"a\"}"_s),
              "stage lamp \"a\" of application \"Theatre\"");
    EXPECT_EQ(value(u"set x to (make stage lamp at end)\nname of x"_s), "\"new\"");
    EXPECT_EQ(value(u"set lit of stage lamp \"a\" to true"_s), "true");
    EXPECT_EQ(value(u"set lit of every stage lamp to false\nlit of stage lamps"_s),
              "{false, false, false, false, false}");
}

TEST_F(AppleScriptObjects, onlyASpecifierAndNotAListHasThePropertiesOfEach) {
    EXPECT_EQ(error(u"set l to stage lamps\nlit of l"_s).substr(0, 5), "-1728");
}

TEST_F(AppleScriptObjects, areEqualWhereTheyAreTheSame) {
    EXPECT_EQ(value(u"stage lamp 1 = stage lamp \"spot\""_s), "true");
    EXPECT_EQ(value(u"stage lamp 2 = stage lamp 3"_s), "false");
    EXPECT_EQ(value(u"stage lamp 1 = it"_s), "false");
}

TEST_F(AppleScriptObjects, theirWordsCompileOnlyInsideTheTellOfTheirApplication) {
    const QString sources[] = {
        u"get stage lamps"_s,
        u"tell application \"Theatre\" to return 0\nevery stage lamp"_s,
        u"tell application \"Theatre\" to tell me to count stage lamps"_s,
        u"tell application \"Theatre\" to tell application \"Other\" to delete stage lamp 1"_s,
        u"delete x"_s,
        u"make new stage lamp"_s,
    };
    for (const QString& source : sources) {
        const auto outcome = runAppleScript(source, host);
        const auto* error = std::get_if<ScriptError>(&outcome);
        ASSERT_NE(error, nullptr) << source.toStdString();
        EXPECT_EQ(error->number, -2741) << source.toStdString();
    }
    EXPECT_EQ(host.theatre.events, 0);
}

TEST_F(AppleScriptObjects, whatIsNotKnownOfThemDoesNotCompile) {
    for (const QString& statements :
         {u"stage lamps 1 thru 2"_s, u"every stage curtain"_s, u"set lit to true"_s, u"set lit of stage lamp 1"_s,
          u"make"_s, u"make new stage lamps"_s, u"make new stage lamp at front"_s, u"make new stage lamp at end of x"_s,
          u"stage lamp"_s, u"every stage lamp whose"_s, u"delete"_s, u"set x to delete stage lamp 1"_s,
          u"move stage lamp 1 to end"_s, QString(u"exists "_s).repeated(20000),
          QString(u"every stage lamp whose "_s).repeated(20000)}) {
        EXPECT_EQ(error(statements).substr(0, 5), "-2741") << statements.first(20).toStdString();
    }
}

TEST_F(AppleScriptObjects, theOuterWordsAreKnownAgainAfterAnInnerTell) {
    EXPECT_EQ(value(u"tell me\nset x to 1\nend tell\ncount stage lamps"_s), "3");
}

TEST_F(AppleScriptObjects, theirPropertiesBetweenBarsAreVariables) {
    EXPECT_EQ(value(u"set |lit| to 5\n|lit|"_s), "5");
}

} // namespace macsim
