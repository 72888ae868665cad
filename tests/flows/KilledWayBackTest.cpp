// The program dies at every point at which it can die while it saves or restores a system: at each command, and at each
// step of each change of its own files. Nothing that it keeps is ever damaged, and the way back still leads to where it
// leads otherwise.
//
// The program's preferences aren't among the steps: the system's preference service writes them, in a process of its own,
// so that the program can only die before or after one of them is set, which is between two commands.

#include "fakes/RehearsalProgram.h"
#include "fakes/Victim.h"
#include "fakes/WayBackMac.h"

namespace quorvane {

namespace {

class KilledWayBack : public WayBackMac {
protected:
    int killAtEachCommand(const QString& flow, const Victim::Check& check) {
        return Victim(folder.path())
            .killAtEachCommand(
                flow, [this] { return copyOfMac(); }, check);
    }
    int killAtEachChange(const QString& flow, const Victim::Check& check) {
        return Victim(folder.path())
            .killAtEachChange(
                flow, [this] { return copyOfMac(); }, check);
    }

    /// The check of a way back that was killed: once more, and it is where it would have been.
    auto sameAfterAll(const QString& flow) {
        const macsim::MacPicture undisturbed = wentBack(copyOfMac(), flow);
        return [this, flow, undisturbed](const QString& mac) {
            expectFilesWhole(mac);
            EXPECT_EQ(wentBack(mac, flow).changesSince(undisturbed), QString());
        };
    }

    /// The check of a capture that was killed: a way back leads to the old snapshot or to the new one.
    auto backToOneOfBoth() {
        const QString withLate = copyOfMac();
        EXPECT_TRUE(capture(withLate));
        const QHash<QString, macsim::MacPicture> undisturbed{{u"Early"_s, wentBack(copyOfMac(), u"revert"_s)},
                                                             {u"Late"_s, wentBack(withLate, u"revert"_s)}};
        return [this, undisturbed](const QString& mac) {
            expectFilesWhole(mac);
            const QString label = snapshotOn(mac).value_or(SystemSnapshot()).label.value_or(QString());
            ASSERT_TRUE(undisturbed.contains(label));
            EXPECT_EQ(wentBack(mac, u"revert"_s).changesSince(*undisturbed.find(label)), QString());
        };
    }
};

} // namespace

TEST_F(KilledWayBack, aCaptureKilledAtAnyCommandHasChangedNothing) {
    const macsim::MacPicture before(original());
    EXPECT_GE(killAtEachCommand(u"capture"_s,
                                [&before](const QString& mac) {
                                    EXPECT_EQ(macsim::MacPicture(mac).changesSince(before), QString());
                                }),
              20);
}

// The snapshot, then an archive and a current baseline at home and in iCloud: five writes and three folders.
TEST_F(KilledWayBack, aCaptureKilledAtAnyStepOfItsFilesLeavesBaselinesThatCanBeGoneBackTo) {
    EXPECT_EQ(killAtEachChange(u"capture"_s, backToOneOfBoth()), 5 * 5 + 3);
}

TEST_F(KilledWayBack, aRevertKilledAtAnyCommandEndsTheSameWhenItIsRepeated) {
    EXPECT_GE(killAtEachCommand(u"revert"_s, sameAfterAll(u"revert"_s)), 20);
}

TEST_F(KilledWayBack, aReinstatementKilledAtAnyCommandEndsTheSameWhenItIsRepeated) {
    // Fourteen preferences, Notification Center's two, the login items listed and one added, and what needs root.
    EXPECT_GE(killAtEachCommand(u"reinstate"_s, sameAfterAll(u"reinstate"_s)), 14 + 2 + 2 + 1);
}

TEST_F(KilledWayBack, aWayBackKilledAtAnyChangeOfItsFilesEndsTheSameWhenItIsRepeated) {
    for (const QString& flow : {u"revert"_s, u"reinstate"_s}) {
        EXPECT_GE(killAtEachChange(flow, sameAfterAll(flow)), 2) << flow.toStdString();
    }
}

} // namespace quorvane
