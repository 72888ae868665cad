#include "rehearsal/MacCommands.h"

#include "platform/portable/QuitSignals.h"
#include "rehearsal/Terminal.h"
#include "simulator/MacDescription.h"
#include "simulator/MacSkeleton.h"
#include "simulator/tools/Registry.h"

#include <QCoreApplication>
#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QTimer>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

void makeMac(const QString& folder, const QString& descriptionFile) {
    const QString file = descriptionFile.isEmpty() ? u":/macs/fresh-macbook.json"_s : descriptionFile;
    try {
        macsim::createMac(folder, macsim::macDescriptionFromFile(file), macsim::simulatorTools().keys(),
                          macsimBesideProgram());
    } catch (const std::exception& error) {
        throw UnusableInput(QString::fromUtf8(error.what()));
    }
}

} // namespace

SimulatedHostOptions hostOptions(const Arguments& arguments) {
    const auto absolute = [](const QString& path) {
        return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
    };
    return {macsimBesideProgram(), absolute(arguments.faultsFile), absolute(arguments.journalFile)};
}

ChosenMac::ChosenMac(const Arguments& arguments)
    : m_folder(arguments.macFolder) {
    if (m_folder.isEmpty()) {
        m_temporary = std::make_unique<QTemporaryDir>(QDir::tempPath() + u"/quorvane-rehearsal-XXXXXX"_s);
        m_folder = m_temporary->path() + u"/Mac"_s;
        makeMac(m_folder, {});
    }
}

int makeNewMac(const Arguments& arguments) {
    makeMac(arguments.macFolder, arguments.operand());
    return kDone;
}

int runShell(const Arguments& arguments) {
    const ChosenMac chosen(arguments);
    const macsim::Mac mac(chosen.folder());
    const SimulatedHostOptions options = hostOptions(arguments);
    macsim::relinkCommands(mac.hostFolder(), options.program);
    QProcessEnvironment environment = simulatedEnvironment(mac, options);
    environment.insert(u"MACSIM_AUTHORIZE"_s,
                       QString::fromStdString(macsim::authorizationName(arguments.authorization)));
    if (arguments.asRoot) {
        environment.insert(u"MACSIM_ACTOR"_s, u"root"_s);
        environment.insert(u"HOME"_s, mac.homeFolder(macsim::Actor::Root));
        environment.insert(u"USER"_s, u"root"_s);
    }
    QProcess shell;
    shell.setProcessChannelMode(QProcess::ForwardedChannels);
    shell.setStandardInputFile(QProcess::nullDevice());
    shell.setProcessEnvironment(environment);
    const QuitSignals quitSignals(OutputReader::Needed);
    QObject::connect(&quitSignals, &QuitSignals::quitRequested, &shell, &QProcess::kill);
    QObject::connect(&shell, &QProcess::finished, [](int code, QProcess::ExitStatus ending) {
        QCoreApplication::exit(ending == QProcess::NormalExit ? code : kNotDone);
    });
    QObject::connect(&shell, &QProcess::errorOccurred, [&shell](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            complain(u"quorvane-rehearsal: "_s + shell.errorString());
            QCoreApplication::exit(kNotDone);
        }
    });
    QTimer::singleShot(0, &shell, [&shell, &mac, &arguments] {
        shell.start(mac.hostFolder() + u"/bin/sh"_s, {u"-c"_s, arguments.operand()});
    });
    return QCoreApplication::exec();
}

} // namespace quorvane
