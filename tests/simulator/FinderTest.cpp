#include "simulator/tools/Finder.h"

#include "ToolRun.h"
#include "simulator/tools/Osascript.h"

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

const QString kEmptying = u"tell application \"Finder\" to if (count of items in trash) > 0 then empty trash"_s;

/// The user's trash and a script about it.
class FinderTest : public testing::Test {
protected:
    FinderTest() { setState(mac, "permissions", {{"automationQuestion", "allow"}}); }

    ToolRun script(const QString& source, Actor actor = Actor::User) {
        return runTool(mac, runOsascript, {u"osascript"_s, u"-e"_s, source}, actor);
    }
    ToolRun tell(const QString& statement) { return script(u"tell application \"Finder\" to "_s + statement); }
    static ToolRun printed(const QByteArray& text) { return {0, text + '\n', {}}; }
    bool failsWith(const ToolRun& run, const QByteArray& end) {
        return run.status == 1 && run.output.isEmpty() && run.error.endsWith(end);
    }
    void fill() {
        volume.write(trash + u"/old.wav"_s, "x");
        volume.createFolders(trash + u"/Set/Samples"_s);
        volume.write(trash + u"/Set/Samples/kick.wav"_s, "x");
        volume.write(trash + u"/.DS_Store"_s, "x");
    }
    /// A folder of root's, and in it what root alone may remove.
    void fillAsRoot() {
        volume.createFolders(trash + u"/Roots"_s);
        volume.write(trash + u"/Roots/file"_s, "x");
        root.setOwner(trash + u"/Roots"_s, Actor::Root);
    }

    SimulatedMacFolder mac;
    Volume volume = mac.mac.volume(Actor::User);
    Volume root = mac.mac.volume(Actor::Root);
    const QString trash = u"/Users/alex/.Trash"_s;
};

} // namespace

TEST_F(FinderTest, emptiesTheTrashWhenSomethingIsInIt) {
    fill();
    EXPECT_EQ(script(kEmptying), kSilent);
    EXPECT_EQ(volume.list(trash), QStringList());
    EXPECT_EQ(script(kEmptying), kSilent);
    EXPECT_EQ(mac.authorizer.prompts, QStringList());
}

TEST_F(FinderTest, theLongFormMeansTheSame) {
    fill();
    EXPECT_EQ(script(u"tell application \"Finder\"\nif (count of items of the trash) > 0 then\nempty the trash\n"
                     u"end if\nend tell"_s),
              kSilent);
    EXPECT_EQ(volume.list(trash), QStringList());
}

TEST_F(FinderTest, hiddenNamesAreNotCountedAndSoStay) {
    volume.write(trash + u"/.DS_Store"_s, "x");
    EXPECT_EQ(tell(u"count of items in trash"_s), printed("0"));
    EXPECT_EQ(script(kEmptying), kSilent);
    EXPECT_EQ(volume.list(trash), QStringList(u".DS_Store"_s));
}

TEST_F(FinderTest, countsAndNamesWhatIsInTheTrash) {
    fill();
    EXPECT_EQ(tell(u"count of items in trash"_s), printed("2"));
    EXPECT_EQ(tell(u"count items of trash"_s), printed("2"));
    EXPECT_EQ(tell(u"get name of item 2 of trash"_s), printed("old.wav"));
    EXPECT_EQ(tell(u"get name of last item in trash"_s), printed("old.wav"));
    EXPECT_EQ(tell(u"get every item of trash"_s), printed("item Set, item old.wav"));
    EXPECT_EQ(tell(u"get trash"_s), printed("trash"));
}

TEST_F(FinderTest, aTrashThatIsMissingIsEmpty) {
    volume.remove(trash);
    EXPECT_EQ(tell(u"count of items in trash"_s), printed("0"));
    EXPECT_EQ(tell(u"empty trash"_s), kSilent);
    EXPECT_EQ(tell(u"empty"_s), kSilent);
    EXPECT_FALSE(volume.exists(trash));
}

TEST_F(FinderTest, whatALinkInTheTrashLeadsToStays) {
    volume.write(u"/Users/alex/Music/keep"_s, "x");
    volume.createLink(trash + u"/link"_s, u"/Users/alex/Music"_s);
    EXPECT_EQ(script(kEmptying), kSilent);
    EXPECT_EQ(volume.list(trash), QStringList());
    EXPECT_EQ(volume.read(u"/Users/alex/Music/keep"_s), "x");
}

TEST_F(FinderTest, aFileOfRootsIsTheUsersToRemove) {
    volume.write(trash + u"/installer.log"_s, "x");
    root.setOwner(trash + u"/installer.log"_s, Actor::Root);
    EXPECT_EQ(script(kEmptying), kSilent);
    EXPECT_EQ(volume.list(trash), QStringList());
    EXPECT_EQ(mac.authorizer.prompts, QStringList());
}

TEST_F(FinderTest, forWhatIsInAFolderOfRootsItAsksForAPassword) {
    fill();
    fillAsRoot();
    EXPECT_EQ(script(kEmptying), kSilent);
    EXPECT_EQ(volume.list(trash), QStringList());
    EXPECT_EQ(mac.authorizer.prompts, QStringList(u"Finder wants to make changes."_s));
}

TEST_F(FinderTest, withoutThePasswordThatFolderStays) {
    fill();
    fillAsRoot();
    mac.authorizer.answer = Authorization::Cancel;
    const ToolRun run = script(kEmptying);
    EXPECT_TRUE(failsWith(run, "User canceled. (-128)\n")) << run.error.toStdString();
    EXPECT_EQ(volume.list(trash), QStringList(u"Roots"_s));
    EXPECT_TRUE(volume.exists(trash + u"/Roots/file"_s));
}

TEST_F(FinderTest, actsAsTheUserWhoeverRunsTheScript) {
    fill();
    root.createFolders(u"/private/var/root/.Trash"_s);
    root.write(u"/private/var/root/.Trash/roots"_s, "x");
    EXPECT_EQ(script(kEmptying, Actor::Root), kSilent);
    EXPECT_EQ(volume.list(trash), QStringList());
    EXPECT_EQ(root.read(u"/private/var/root/.Trash/roots"_s), "x");
}

TEST_F(FinderTest, withoutTheAutomationPermissionNothingIsCountedOrRemoved) {
    fill();
    setState(mac, "permissions", {{"automation", {{"Finder", false}, {"System Events", true}}}});
    for (const QString& source : {kEmptying, u"tell application \"Finder\" to empty trash"_s}) {
        const ToolRun run = script(source);
        EXPECT_TRUE(failsWith(run, "Not authorized to send Apple events to Finder. (-1743)\n"))
            << run.error.toStdString();
    }
    EXPECT_EQ(tell(u"return 0"_s), printed("0")) << "no event";
    EXPECT_EQ(volume.list(trash), QStringList({u".DS_Store"_s, u"Set"_s, u"old.wav"_s}));
}

TEST_F(FinderTest, onlyTheTrashIsEmptied) {
    fill();
    const ToolRun run = tell(u"empty item 1 of trash"_s);
    EXPECT_TRUE(failsWith(run, "Finder got an error: item \"Set\" doesn’t understand the “empty” message. (-1708)\n"))
        << run.error.toStdString();
    EXPECT_EQ(tell(u"empty \"x\""_s).status, 1);
    EXPECT_EQ(tell(u"get name of item 9 of trash"_s).status, 1);
    EXPECT_EQ(tell(u"delete item 1 of trash"_s).status, 1);
    EXPECT_EQ(volume.list(trash), QStringList({u".DS_Store"_s, u"Set"_s, u"old.wav"_s}));
}

TEST_F(FinderTest, itsWordsAreNoneOutsideOfItAndAllOthersDoNotCompile) {
    fill();
    for (const QString& source :
         {u"empty trash"_s, u"tell application \"System Events\" to empty trash"_s,
          u"tell application \"Finder\" to empty trash with security"_s,
          u"tell application \"Finder\" to set trash to 1"_s, u"tell application \"Finder\" to get every disk"_s}) {
        const ToolRun run = script(source);
        EXPECT_TRUE(failsWith(run, "(-2741)\n")) << source.toStdString() << '\n' << run.error.toStdString();
    }
    EXPECT_EQ(volume.list(trash).size(), 3);
}

} // namespace macsim
