#include "simulator/MacDescription.h"

#include "fakes/SimulatedMacFolder.h"
#include "simulator/PreferenceStore.h"

#include <QDir>
#include <QFile>

#include <gtest/gtest.h>

#include <stdexcept>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

class MacDescriptionTest : public ::testing::Test {
protected:
    void make(const Json& parts) {
        Json description{{"machine", SimulatedMacFolder::defaultMachine()}};
        description.update(parts);
        createMac(path(), description, {u"/bin/ls"_s}, u"/nowhere/macsim"_s);
    }
    QString path() const { return folder.path() + u"/Mac"_s; }

    QTemporaryDir folder;
};

} // namespace

TEST_F(MacDescriptionTest, aUserIdThatDoesNotFitIsRefused) {
    for (const Json& number : {Json(4294967297), Json(1e300)}) {
        Json machine = SimulatedMacFolder::defaultMachine();
        machine["userId"] = number;
        EXPECT_ANY_THROW(make({{"machine", machine}})) << number.dump();
    }
}

TEST_F(MacDescriptionTest, aMacThatWasMadeWithoutAPasswordForItsUserHasOne) {
    make(Json::object());
    EXPECT_EQ(Mac(path()).machine().password, u"quorvane"_s);
}

TEST_F(MacDescriptionTest, theUsersPasswordIsThatOfTheDescription) {
    Json machine = SimulatedMacFolder::defaultMachine();
    machine["password"] = "gîg 7";
    make({{"machine", machine}});
    EXPECT_EQ(Mac(path()).machine().password, u"gîg 7"_s);
}

TEST_F(MacDescriptionTest, preferencesStandWhereTheirOwnerKeepsThem) {
    make({{"preferences",
           {{"user", {{"com.x", {{"a", true}, {"b", 2}, {"c", 0.5}, {"d", "t"}}}}},
            {"userCurrentHost", {{"com.x", {{"h", false}}}}},
            {"root", {{"com.x", {{"r", 1}}}}},
            {"files", {{"/Library/Preferences/com.y", {{"s", 1}}}}}}}});
    const Mac mac(path());
    const PreferenceStore user(mac, mac.volume(Actor::User));
    const PreferenceStore root(mac, mac.volume(Actor::Root));
    EXPECT_EQ(user.read({u"com.x"_s}, u"a"_s), PropertyList(true));
    EXPECT_EQ(user.read({u"com.x"_s}, u"b"_s), PropertyList(2));
    EXPECT_EQ(user.read({u"com.x"_s}, u"c"_s), PropertyList(0.5));
    EXPECT_EQ(user.read({u"com.x"_s}, u"d"_s), PropertyList(u"t"_s));
    EXPECT_EQ(user.read({u"com.x"_s, PreferenceHost::Current}, u"h"_s), PropertyList(false));
    EXPECT_FALSE(user.read({u"com.x"_s}, u"h"_s).has_value());
    EXPECT_EQ(root.read({u"com.x"_s}, u"r"_s), PropertyList(1));
    EXPECT_EQ(user.read({u"/Library/Preferences/com.y"_s}, u"s"_s), PropertyList(1));
}

TEST_F(MacDescriptionTest, filesFoldersAndLinksMayFillTheSealedSystem) {
    make({{"folders", {"/Volumes/SETS"}},
          {"files",
           Json::array({{{"path", "/System/Library/LaunchAgents/a.plist"}, {"propertyList", {{"Label", "a"}}}},
                        {{"path", "/Library/b.plist"}, {"propertyList", {{"Label", "b"}}}, {"format", "binary"}},
                        {{"path", "/Users/alex/c"}, {"text", "hello"}}})},
          {"links", Json::array({{{"path", "/Users/alex/l"}, {"target", "c"}}})}});
    const Mac mac(path());
    const Volume volume = mac.volume(Actor::User);
    EXPECT_TRUE(volume.isFolder(u"/Volumes/SETS"_s));
    EXPECT_TRUE(volume.read(u"/System/Library/LaunchAgents/a.plist"_s).startsWith("<?xml"));
    EXPECT_TRUE(volume.read(u"/Library/b.plist"_s).startsWith("bplist00"));
    EXPECT_EQ(volume.read(u"/Users/alex/l"_s), "hello");
    EXPECT_EQ(volume.kind(u"/bin/ls"_s), Volume::Kind::Tool);
}

TEST_F(MacDescriptionTest, whatIsOwnedByRootIsRootsWithAllThatIsInIt) {
    make({{"files", Json::array({{{"path", "/Applications/A.app/Contents/Info.plist"}, {"text", "x"}},
                                 {{"path", "/Applications/B.app/Contents/Info.plist"}, {"text", "x"}},
                                 {{"path", "/Users/alex/file"}, {"text", "x"}}})},
          {"links", Json::array({{{"path", "/Applications/A.app/link"}, {"target", "/Applications/B.app"}}})},
          {"ownedByRoot", Json::array({"/Applications/A.app", "/Users/alex/file"})}});
    const Mac mac(path());
    const Volume volume = mac.volume(Actor::User);
    for (const QString& roots : {u"/Applications/A.app"_s, u"/Applications/A.app/Contents"_s,
                                 u"/Applications/A.app/Contents/Info.plist"_s, u"/Users/alex/file"_s}) {
        EXPECT_EQ(volume.owner(roots), Actor::Root) << roots.toStdString();
    }
    EXPECT_EQ(volume.owner(u"/Applications/B.app"_s), Actor::User);
    EXPECT_EQ(volume.owner(u"/Applications/B.app/Contents/Info.plist"_s), Actor::User);
    EXPECT_TRUE(mac.state().read("ownedByRoot").is_null());
}

TEST_F(MacDescriptionTest, everyOtherKeyIsState) {
    make({{"//", "a remark"}, {"power", {{"activeSource", "AC Power"}}}, {"loginItems", Json::array({1})}});
    const Mac mac(path());
    EXPECT_EQ(mac.state().read("power"), (Json{{"activeSource", "AC Power"}}));
    EXPECT_EQ(mac.state().read("loginItems"), Json::array({1}));
    EXPECT_TRUE(mac.state().read("//").is_null());
    EXPECT_TRUE(mac.state().read("files").is_null());
}

TEST_F(MacDescriptionTest, aDescriptionThatCannotBeFollowedLeavesNothing) {
    for (const Json& parts :
         {Json{{"preferences", {{"nobody", Json::object()}}}}, Json{{"preferences", {{"user", {{"com.x", 1}}}}}},
          Json{{"ownedByRoot", Json::array({"/Users/alex/gone"})}}, Json{{"ownedByRoot", Json::array({1})}},
          Json{{"folders", {"relative"}}}, Json{{"folders", {"/../outside"}}},
          Json{{"files", Json::array({{{"path", "/Users/alex/x"}}})}},
          Json{{"files", Json::array({{{"path", "/a/../../x"}, {"text", ""}}})}}}) {
        EXPECT_THROW(make(parts), std::runtime_error) << parts.dump();
        EXPECT_FALSE(QFile::exists(path())) << parts.dump();
    }
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::NoDotAndDotDot | QDir::AllEntries), QStringList());
}

TEST_F(MacDescriptionTest, aFileThatIsNoDescriptionIsRefusedByName) {
    EXPECT_THROW(macDescriptionFromFile(u"/no/such/file"_s), std::runtime_error);
    for (const QByteArray& bytes : {QByteArray("{"), QByteArray("[]"), QByteArray("{}")}) {
        QFile file(folder.path() + u"/bad.json"_s);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
        file.write(bytes);
        file.close();
        try {
            macDescriptionFromFile(file.fileName());
            FAIL() << bytes.toStdString();
        } catch (const std::runtime_error& error) {
            EXPECT_EQ(error.what(), file.fileName().toStdString() + ": not the description of a Mac");
        }
    }
}

TEST_F(MacDescriptionTest, aUsersNameIsNoPath) {
    for (const char* name : {"", "../x", ".hidden", "a/b"}) {
        EXPECT_THROW(createMac(path(), {{"machine", {{"userName", name}}}}, {}, u"/nowhere/macsim"_s),
                     std::runtime_error);
    }
}

TEST_F(MacDescriptionTest, commandsAreRelinkedButAMissingOneStaysMissing) {
    createMac(path(), {{"machine", Json::object()}}, {u"/bin/ls"_s, u"/usr/bin/env"_s}, u"/nowhere/macsim"_s);
    QFile::remove(path() + u"/bin/ls"_s);
    relinkCommands(path(), u"/elsewhere/macsim"_s);
    EXPECT_EQ(QFile::symLinkTarget(path() + u"/usr/bin/env"_s), u"/elsewhere/macsim"_s);
    EXPECT_FALSE(QFileInfo(path() + u"/bin/ls"_s).isSymLink());
}

} // namespace macsim
