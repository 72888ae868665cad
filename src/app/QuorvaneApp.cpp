#include "app/QuorvaneApp.h"

#include "app/AppDelegate.h"
#include "app/DisplayCheck.h"
#include "app/SingleInstance.h"
#include "platform/portable/QuitSignals.h"

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

bool isCheckOfStart() {
    return QCoreApplication::arguments().contains(u"--check-start"_s);
}

int complain(const QString& text) {
    std::fprintf(stderr, "%s\n", text.toUtf8().constData());
    return kUnusable;
}

int runOn(ProgramHost& host, SingleInstance& instance) {
    AppDelegate delegate(host.parts());
    const QuitSignals quitSignals(OutputReader::NotNeeded);
    QObject::connect(&quitSignals, &QuitSignals::quitRequested, &delegate, &AppDelegate::quit);
    QObject::connect(&instance, &SingleInstance::activationRequested, &delegate, &AppDelegate::openProfiles);
    QObject::connect(&delegate, &AppDelegate::willTerminate, &instance, &SingleInstance::stopAnswering);
    QObject::connect(&delegate, &AppDelegate::terminated, qApp, [] { QCoreApplication::exit(); });
    if (isCheckOfStart()) {
        QObject::connect(&delegate, &AppDelegate::windowPainted, &delegate, &AppDelegate::quit);
    }
    delegate.applicationDidFinishLaunching();
    if (const QStringList files = filesToOpen(); !files.isEmpty()) {
        delegate.openProfiles(files);
    }
    return QApplication::exec();
}

/// A second one brings the first one forward.
int runFirst(const ProgramHostMaker& makeHost) {
    const QString dataFolder = QStandardPaths::writableLocation(QStandardPaths::GenericDataLocation) + u"/Quorvane"_s;
    SingleInstance instance(dataFolder, filesToOpen());
    switch (instance.claim()) {
    case SingleInstance::Role::First:
        return runOn(*makeHost(dataFolder), instance);
    case SingleInstance::Role::Second:
        return isCheckOfStart() ? complain(u"quorvane: it runs already, so this start wasn’t checked."_s) : 0;
    case SingleInstance::Role::Unanswered:
        break;
    }
    return complain(instance.unansweredText());
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

int QuorvaneApp::run(const ProgramHostMaker& makeHost) {
    try {
        return runFirst(makeHost);
    } catch (const std::exception& error) {
        return complain(u"quorvane: "_s + QString::fromUtf8(error.what()));
    }
}

} // namespace quorvane
