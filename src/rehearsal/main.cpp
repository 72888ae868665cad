// The rehearsal: the program's flows on a simulated Mac, from a terminal.

#include "rehearsal/Arguments.h"
#include "rehearsal/LabelCommand.h"
#include "rehearsal/QuitSignals.h"
#include "rehearsal/Rehearsal.h"
#include "rehearsal/Report.h"
#include "simulator/MacDescription.h"
#include "simulator/MacSkeleton.h"
#include "simulator/tools/Registry.h"

#include <QCoroTask>
#include <QDir>
#include <QFile>
#include <QGuiApplication>
#include <QHash>
#include <QLoggingCategory>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <cstdio>
#include <memory>

namespace {

using namespace quorvane;
using namespace Qt::StringLiterals;

constexpr int kDone = 0;
constexpr int kNotDone = 1;
constexpr int kUnusable = 2;

QString macsimProgram() {
    return QCoreApplication::applicationDirPath() + u"/macsim"_s;
}

SimulatedHostOptions hostOptions(const Arguments& arguments) {
    const auto absolute = [](const QString& path) {
        return path.isEmpty() ? path : QFileInfo(path).absoluteFilePath();
    };
    return {macsimProgram(), absolute(arguments.faultsFile), absolute(arguments.journalFile)};
}

void makeMac(const QString& folder, const QString& descriptionFile) {
    const QString file = descriptionFile.isEmpty() ? u":/macs/fresh-macbook.json"_s : descriptionFile;
    try {
        macsim::createMac(folder, macsim::macDescriptionFromFile(file), macsim::simulatorTools().keys(),
                          macsimProgram());
    } catch (const std::exception& error) {
        throw UnusableInput(QString::fromUtf8(error.what()));
    }
}

/// The Mac that a command runs on: the one that was named, or a fresh one that goes at the end.
class ChosenMac {
public:
    explicit ChosenMac(const Arguments& arguments)
        : m_folder(arguments.macFolder) {
        if (m_folder.isEmpty()) {
            m_temporary = std::make_unique<QTemporaryDir>(QDir::tempPath() + u"/quorvane-rehearsal-XXXXXX"_s);
            m_folder = m_temporary->path() + u"/Mac"_s;
            makeMac(m_folder, {});
        }
    }
    const QString& folder() const { return m_folder; }

private:
    QString m_folder;
    std::unique_ptr<QTemporaryDir> m_temporary;
};

int runShell(const Arguments& arguments, const QString& macFolder) {
    const macsim::Mac mac(macFolder);
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
    const QuitSignals quitSignals;
    QObject::connect(&quitSignals, &QuitSignals::quitRequested, &shell, &QProcess::kill);
    QObject::connect(&shell, &QProcess::finished, [](int code, QProcess::ExitStatus ending) {
        QCoreApplication::exit(ending == QProcess::NormalExit ? code : kNotDone);
    });
    QObject::connect(&shell, &QProcess::errorOccurred, [&shell](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            std::fprintf(stderr, "quorvane-rehearsal: %s\n", shell.errorString().toUtf8().constData());
            QCoreApplication::exit(kNotDone);
        }
    });
    QTimer::singleShot(0, &shell, [&shell, &mac, &arguments] {
        shell.start(mac.hostFolder() + u"/bin/sh"_s, {u"-c"_s, arguments.operand()});
    });
    return QCoreApplication::exec();
}

QCoro::Task<RehearsalOutcome> runFlow(Rehearsal& rehearsal, Arguments arguments) {
    using FileFlow = QCoro::Task<RehearsalOutcome> (Rehearsal::*)(QString);
    static const QHash<QString, FileFlow> fileFlows{{u"preview"_s, &Rehearsal::previewProfileFile},
                                                    {u"apply"_s, &Rehearsal::applyProfileFile},
                                                    {u"tweaks"_s, &Rehearsal::applyTweaksOfFile},
                                                    {u"startup"_s, &Rehearsal::applyStartupOfFile},
                                                    {u"verify"_s, &Rehearsal::verifyProfileFile}};
    if (const FileFlow flow = fileFlows.value(arguments.command, nullptr)) {
        co_return co_await (rehearsal.*flow)(arguments.operand());
    }
    using PlainFlow = QCoro::Task<RehearsalOutcome> (Rehearsal::*)();
    static const QHash<QString, PlainFlow> plainFlows{
        {u"discover"_s, &Rehearsal::discover},   {u"revert"_s, &Rehearsal::undoTweaks},
        {u"reinstate"_s, &Rehearsal::reinstate}, {u"default"_s, &Rehearsal::restoreDefault},
        {u"scan"_s, &Rehearsal::scan},           {u"backup"_s, &Rehearsal::backUpProfiles},
        {u"backups"_s, &Rehearsal::listBackups}};
    if (const PlainFlow flow = plainFlows.value(arguments.command, nullptr)) {
        co_return co_await (rehearsal.*flow)();
    }
    if (arguments.command == u"restore"_s) {
        co_return co_await rehearsal.restoreBackup(arguments.operand());
    }
    if (arguments.command == u"maintenance"_s) {
        co_return co_await rehearsal.maintain(arguments.maintenance);
    }
    if (arguments.command == u"network"_s) {
        co_return co_await rehearsal.operateNetwork(arguments.network);
    }
    if (arguments.command == u"overlay"_s && arguments.withoutOverlay) {
        co_return co_await rehearsal.removeOverlay();
    }
    if (arguments.command == u"overlay"_s) {
        co_return co_await rehearsal.showOverlay(arguments.operand());
    }
    using Archive = SystemManager::MasterArchive;
    co_return co_await rehearsal.saveSnapshot(arguments.operand(), arguments.asMaster ? Archive::Yes : Archive::No);
}

QCoro::Task<void> runFlowToItsEnd(Rehearsal& rehearsal, Arguments arguments) {
    int status = kUnusable;
    try {
        const RehearsalOutcome outcome = co_await runFlow(rehearsal, arguments);
        co_await rehearsal.finished();
        if (arguments.json) {
            std::fputs(jsonReport(arguments.command, rehearsal.system().logMessages(), outcome).constData(), stdout);
        }
        status = outcome.isDone() ? kDone : kNotDone;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
    }
    QCoreApplication::exit(status);
}

int runFlowOnMac(const Arguments& arguments, const QString& macFolder) {
    Rehearsal rehearsal(macFolder, arguments.authorization, hostOptions(arguments));
    if (!arguments.json) {
        QObject::connect(&rehearsal, &Rehearsal::linePrinted, [](const QString& line) {
            std::fprintf(stdout, "%s\n", line.toUtf8().constData());
            std::fflush(stdout);
        });
    }
    QuitSignals quitSignals;
    QObject::connect(&quitSignals, &QuitSignals::quitRequested, &rehearsal, &Rehearsal::quit);
    QCoro::Task<void> flow;
    QTimer::singleShot(0, &rehearsal, [&] { flow = runFlowToItsEnd(rehearsal, arguments); });
    return QCoreApplication::exec();
}

int run(const QStringList& list) {
    if (list == QStringList(u"--help"_s)) {
        std::fputs(usageText().toUtf8().constData(), stdout);
        return kDone;
    }
    const Arguments arguments = parsedArguments(list);
    if (arguments.command == u"new"_s) {
        makeMac(arguments.macFolder, arguments.operand());
        return kDone;
    }
    if (arguments.command == u"label"_s) {
        const QStringList& operands = arguments.operands;
        return labelPicture(operands.at(0), operands.at(1), operands.at(2), operands.at(3)) ? kDone : kNotDone;
    }
    const ChosenMac mac(arguments);
    return arguments.command == u"shell"_s ? runShell(arguments, mac.folder()) : runFlowOnMac(arguments, mac.folder());
}

/// The label on the wallpaper is painted without a display. Where there is none, Qt complains that it has no folder of the
/// session for one.
std::unique_ptr<QGuiApplication> makeApplication(int& argumentCount, char** arguments) {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
    QLoggingCategory::setFilterRules(u"default.warning=false"_s);
    auto application = std::make_unique<QGuiApplication>(argumentCount, arguments);
    QLoggingCategory::setFilterRules({});
    return application;
}

} // namespace

int main(int argumentCount, char** arguments) {
    const std::unique_ptr<QGuiApplication> application = makeApplication(argumentCount, arguments);
    try {
        return run(QCoreApplication::arguments().mid(1));
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quorvane-rehearsal: %s\n", error.what());
        return kUnusable;
    }
}
