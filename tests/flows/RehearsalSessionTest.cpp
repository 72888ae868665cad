// What the rehearsal's session has of the program's, and what it hasn't.

#include "fakes/RehearsalProgram.h"

namespace quorvane {

TEST_F(RehearsalTest, theHelpListsEachCommandWithItsOperands) {
    const Ending run = start({u"--help"_s});
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output, projectFile(u"tests/flows/rehearsal-help.txt"_s));
}

TEST_F(RehearsalTest, theProgramsOwnLockKeepsNothingFromBeingRehearsed) {
    const QString isLocked = u"defaults read com.quorvane.app QuorvaneAppLockEnabled"_s;
    shell(u"defaults write com.quorvane.app QuorvaneAppLockEnabled -bool true"_s);
    const Ending applied = rehearse({u"apply"_s, example(u"live-set"_s)});
    EXPECT_EQ(applied.status, 0);
    EXPECT_EQ(applied.output, projectFile(u"tests/flows/live-set-preview.txt"_s) +
                                  "  [SNAPSHOT] Saved your settings as they were before Quorvane.\n" +
                                  projectFile(u"tests/flows/live-set-applied.log"_s));
    for (const QString& command : {u"default"_s, u"snapshot"_s, u"revert"_s, u"reinstate"_s}) {
        EXPECT_EQ(rehearse({command}).status, 0) << command.toStdString();
    }
    EXPECT_EQ(shell(isLocked), "1\n");
    EXPECT_FALSE(QFile::exists(macFolder() + u"/Users/alex/Library/Keychains/login.keychain-db"_s));
}

TEST_F(RehearsalTest, nothingIsAskedOnTheTerminal) {
    ASSERT_EQ(rehearse({u"apply"_s, example(u"live-set"_s)}).status, 0);
    // A profile is in force, and Trash and Downloads are emptied for good: a window asks before each.
    for (const QStringList& command : {QStringList{u"snapshot"_s},
                                       {u"reinstate"_s},
                                       {u"revert"_s},
                                       {u"default"_s},
                                       {u"maintenance"_s, u"--trash"_s, u"--downloads"_s}}) {
        const Ending run = rehearse(command);
        EXPECT_EQ(run.status, 0) << command.join(u' ').toStdString();
        EXPECT_FALSE(run.output.contains('?')) << run.output.toStdString();
    }
}

} // namespace quorvane
