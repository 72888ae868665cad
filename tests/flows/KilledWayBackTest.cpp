// The program dies at every point at which it can die while it saves or restores a system: at each command, and at each
// step of each change of its own files. Nothing that it keeps is ever damaged, and the way back still leads to where it
// leads otherwise.
//
// The program's preferences aren't among the steps: the system's preference service writes them, in a process of its own,
// so that the program can only die before or after one of them is set, which is between two commands.

#include "fakes/RehearsalProgram.h"
#include "fakes/WayBackMac.h"

#include <csignal>

namespace quorvane {

namespace {

struct Ended {
    bool wasKilled = false;
    bool succeeded = false;
};

Ended endOf(const QString& program, const QStringList& arguments) {
    QProcess process;
    process.setStandardOutputFile(QProcess::nullDevice());
    process.start(program, arguments);
    EXPECT_TRUE(process.waitForFinished(240000)); // only a hang takes so long
    EXPECT_EQ(process.readAllStandardError().toStdString(), "");
    return {process.exitStatus() == QProcess::CrashExit && process.exitCode() == SIGKILL,
            process.exitStatus() == QProcess::NormalExit && process.exitCode() == 0};
}

QByteArray killingCommand(int run) {
    return R"([{"adapter": "commands", "kill": true, "run": )" + QByteArray::number(run) + "}]";
}

/// @param step  of a write; before anything of the change when it is empty
QByteArray killingChange(int change, const QByteArray& step) {
    return R"([{"adapter": "files", "kill": true, "change": )" + QByteArray::number(change) +
           (step.isEmpty() ? QByteArray() : R"(, "at": ")" + step + '"') + "}]";
}

/// Before anything of a change, and within one that is a write.
const QByteArrayList kSteps{{}, "write", "flush", "rename", "end"};

class KilledWayBack : public WayBackMac {
protected:
    /// Kills the flow at each of its commands in turn, each time on a Mac of its own, and has that looked at.
    /// @return how often it was killed
    template <typename Check>
    int killAtEachCommand(const QString& flow, Check check) {
        for (int run = 1;; ++run) {
            SCOPED_TRACE("killed at command " + std::to_string(run));
            if (!isKilled(flow, killingCommand(run), check)) {
                return run - 1;
            }
        }
    }

    /// The same at each change of the program's files, and at each step of those that are writes.
    template <typename Check>
    int killAtEachChange(const QString& flow, Check check) {
        int kills = 0;
        for (int change = 1;; ++change) {
            for (const QByteArray& step : kSteps) {
                SCOPED_TRACE("killed at change " + std::to_string(change) + ' ' + step.toStdString());
                if (isKilled(flow, killingChange(change, step), check)) {
                    ++kills;
                } else if (step.isEmpty()) {
                    return kills; // there is no such change any more
                } else {
                    break; // this one is no write
                }
            }
        }
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

private:
    template <typename Check>
    bool isKilled(const QString& flow, const QByteArray& faults, Check check) {
        const QString mac = copyOfMac();
        const Ended ended = endOf(QStringLiteral(WAY_BACK_PROGRAM), {mac, faultsFile(faults), flow});
        EXPECT_TRUE(ended.wasKilled || ended.succeeded);
        if (ended.wasKilled) {
            check(mac);
        }
        QDir(mac).removeRecursively();
        return ended.wasKilled;
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
