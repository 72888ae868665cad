#include "app/QuorvaneApp.h"

#include "app/AppDelegate.h"
#include "app/DisplayCheck.h"
#include "app/SingleInstance.h"
#include "app/simulated/AuthorizationDialogs.h"
#include "app/simulated/FilePanelDialogs.h"
#include "app/simulated/FingerDialogs.h"
#include "app/simulated/MacOfUser.h"
#include "platform/portable/QuitSignals.h"
#include "platform/simulated/SimulatedHost.h"
#include "ui/menu/TrayStatusItem.h"

#include <QApplication>
#include <QFileInfo>
#include <QStandardPaths>

#include <cstdio>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kUnusable = 2;

/// The files that the program is started with. What begins with "-" is meant for the system or for Qt.
QStringList filesToOpen() {
    QStringList files;
    const QStringList arguments = QCoreApplication::arguments().mid(1);
    for (const QString& argument : arguments) {
        if (!argument.startsWith(u'-')) {
            files.append(QFileInfo(argument).absoluteFilePath());
        }
    }
    return files;
}

/// The program on the Mac of whoever has started it.
int runOnMac(SingleInstance& instance, const QString& dataFolder) {
    AuthorizationDialogs authorization;
    FingerDialogs finger;
    FilePanelDialogs panels;
    const QString program = macsimBesideProgram();
    SimulatedHost host(macOfUser(dataFolder, program), authorization, {program, {}, {}, &finger, &panels});
    authorization.setMachine(host.mac().machine());
    panels.setMac(host.mac());
    TrayStatusItem statusItem;
    const auto shutDownHost = [&host, &authorization, &finger, &panels] {
        host.shutDown();
        authorization.shutDown();
        finger.shutDown();
        panels.shutDown();
    };
    AppDelegate delegate({host.host(), host.systemLook(), statusItem, shutDownHost});
    const QuitSignals quitSignals(OutputReader::NotNeeded);
    QObject::connect(&quitSignals, &QuitSignals::quitRequested, &delegate, &AppDelegate::quit);
    QObject::connect(&instance, &SingleInstance::activationRequested, &delegate, &AppDelegate::openProfiles);
    QObject::connect(&delegate, &AppDelegate::willTerminate, &instance, &SingleInstance::stopAnswering);
    QObject::connect(&delegate, &AppDelegate::terminated, qApp, [] { QCoreApplication::exit(); });
    delegate.applicationDidFinishLaunching();
    if (const QStringList files = filesToOpen(); !files.isEmpty()) {
        delegate.openProfiles(files);
    }
    return QApplication::exec();
}

/// A second one brings the first one forward.
int runFirst() {
    const QString dataFolder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Quorvane"_s;
    SingleInstance instance(dataFolder, filesToOpen());
    switch (instance.claim()) {
    case SingleInstance::Role::First:
        return runOnMac(instance, dataFolder);
    case SingleInstance::Role::Second:
        return 0;
    case SingleInstance::Role::Unanswered:
        break;
    }
    std::fprintf(stderr, "%s\n", instance.unansweredText().toUtf8().constData());
    return kUnusable;
}

} // namespace

QuorvaneApp::QuorvaneApp(int& argumentCount, char** arguments) {
    const DisplayCheck check;
    QCoreApplication::setApplicationName(u"Quorvane"_s);
    QCoreApplication::setOrganizationName(u"Quorvane"_s);
    m_application = std::make_unique<QApplication>(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
}

QuorvaneApp::~QuorvaneApp() = default;

int QuorvaneApp::run() {
    try {
        return runFirst();
    } catch (const std::exception& error) {
        std::fprintf(stderr, "quorvane: %s\n", error.what());
        return kUnusable;
    }
}

} // namespace quorvane
