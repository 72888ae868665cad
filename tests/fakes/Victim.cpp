#include "fakes/Victim.h"

#include <QDir>
#include <QFile>
#include <QProcess>

#include <gtest/gtest.h>

#include <csignal>
#include <string>

namespace quorvane {

using namespace Qt::StringLiterals;

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

} // namespace

int Victim::killAtEachCommand(const QString& flow, const NewMac& newMac, const Check& check) const {
    for (int run = 1;; ++run) {
        SCOPED_TRACE("killed at command " + std::to_string(run));
        if (!isKilled(flow, killingCommand(run), newMac, check)) {
            return run - 1;
        }
    }
}

int Victim::killAtEachChange(const QString& flow, const NewMac& newMac, const Check& check) const {
    int kills = 0;
    for (int change = 1;; ++change) {
        for (const QByteArray& step : kSteps) {
            SCOPED_TRACE("killed at change " + std::to_string(change) + ' ' + step.toStdString());
            if (isKilled(flow, killingChange(change, step), newMac, check)) {
                ++kills;
            } else if (step.isEmpty()) {
                return kills; // there is no such change any more
            } else {
                break; // this one is no write
            }
        }
    }
}

bool Victim::isKilled(const QString& flow, const QByteArray& faults, const NewMac& newMac, const Check& check) const {
    const QString mac = newMac();
    const Ended ended = endOf(QStringLiteral(WAY_BACK_PROGRAM), {mac, faultsFile(faults), flow, u"Club"_s});
    EXPECT_TRUE(ended.wasKilled || ended.succeeded);
    if (ended.wasKilled) {
        check(mac);
    }
    QDir(mac).removeRecursively();
    return ended.wasKilled;
}

QString Victim::faultsFile(const QByteArray& rules) const {
    QFile file(m_folder + u"/faults.json"_s);
    EXPECT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate));
    file.write(rules);
    return file.fileName();
}

} // namespace quorvane
