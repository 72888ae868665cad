#include "Round.h"

#include "FirstPaint.h"
#include "Heartbeat.h"
#include "User.h"
#include "app/QuorvaneApp.h"
#include "app/simulated/MacOfUser.h"
#include "app/simulated/SimulatedProgramHost.h"
#include "platform/simulated/SimulatedMachine.h"
#include "profiles/ProfileManager.h"
#include "simulator/Mac.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <csignal>
#include <cstdio>
#include <stdexcept>

namespace quorvane {

using namespace Qt::StringLiterals;

RoundMac::RoundMac(const QString& dataFolder)
    : m_place(macOfUser(dataFolder, QCoreApplication::applicationDirPath() + u"/macsim"_s))
    , m_homeFolder(SimulatedMachine(macsim::Mac(m_place)).homeFolder()) {
    const QString baselines = placeOf(m_homeFolder + u"/.quorvane"_s);
    QDir().mkpath(baselines);
    writeFile(baselines + u"/master-baseline-current.json"_s, "{}");
}

QString RoundMac::profilesFolder() const {
    const macsim::Mac mac(m_place);
    return placeOf(profilesDirectory(SimulatedMachine(mac)));
}

void writeFile(const QString& path, const QByteArray& content) {
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(content) != content.size()) {
        throw std::runtime_error(path.toStdString() + ": " + file.errorString().toStdString());
    }
}

int runRound(int& argumentCount, char** arguments, const Round& round) {
    const QTemporaryDir home;
    qputenv("XDG_DATA_HOME", (home.path() + u"/data"_s).toUtf8());
    qputenv("XDG_CONFIG_HOME", (home.path() + u"/config"_s).toUtf8());
    QuorvaneApp application(argumentCount, arguments);
    round.prepare(RoundMac(home.path() + u"/data/Quorvane"_s));
    Heartbeat heartbeat;
    const FirstPaint firstPaint([&heartbeat, &round] {
        heartbeat.begin();
        QMetaObject::invokeMethod(
            &heartbeat,
            [&heartbeat, &round] {
                round.use(heartbeat);
                std::raise(SIGTERM);
            },
            Qt::QueuedConnection);
    });
    return application.run(&SimulatedProgramHost::make);
}

void measure(Heartbeat& heartbeat, const char* what, const std::function<void()>& act) {
    heartbeat.begin();
    act();
    user::look();
    printStall(heartbeat, what);
}

void printStall(Heartbeat& heartbeat, const char* what) {
    const Heartbeat::Stall stall = heartbeat.end();
    std::printf("%s\t%.2f\t%.2f\t%s\n", what, stall.milliseconds, stall.worked, stall.during.constData());
    std::fflush(stdout);
}

} // namespace quorvane
