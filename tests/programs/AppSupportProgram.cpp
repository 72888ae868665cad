// What the window's program does before there is a window, in a process that can be killed, stopped, or left without a display.
//
//     app_support_program instance FOLDER MILLISECONDS [FILE…]   prints the role; a first one prints "activated" and what it is
//                                                                to open, and ends by a signal
//     app_support_program mac FOLDER                     makes the user's Mac in it
//     app_support_program display [warn|fail]            makes the application object, and warns or fails meanwhile
//
// Exit status: 0 done, 1 refused, and what the display's check ends with.

#include "app/DisplayCheck.h"
#include "app/SingleInstance.h"
#include "app/simulated/MacOfUser.h"
#include "platform/portable/QuitSignals.h"

#include <QCoreApplication>
#include <QGuiApplication>

#include <cstdio>
#include <exception>

namespace {

using namespace quorvane;

void print(const char* text) {
    std::puts(text);
    std::fflush(stdout);
}

int runInstance(const QString& folder, int patience, const QStringList& files) {
    SingleInstance instance(folder, files);
    const SingleInstance::Role role = instance.claim(std::chrono::milliseconds(patience));
    if (role == SingleInstance::Role::Unanswered) {
        print(instance.unansweredText().toUtf8().constData());
        return 1;
    }
    if (role == SingleInstance::Role::Second) {
        print("second");
        return 0;
    }
    QObject::connect(&instance, &SingleInstance::activationRequested, [](const QStringList& others) {
        const QStringList words = QStringList(QStringLiteral("activated")) + others;
        print(words.join(u' ').toUtf8().constData());
    });
    const QuitSignals signals(OutputReader::NotNeeded);
    QObject::connect(&signals, &QuitSignals::quitRequested, [] { QCoreApplication::quit(); });
    print("first");
    return QCoreApplication::exec();
}

int makeApplication(int argumentCount, char** arguments, const QByteArray& meanwhile) {
    const DisplayCheck check;
    if (meanwhile == "warn") {
        qWarning("a warning meanwhile");
    } else if (meanwhile == "fail") {
        qWarning("a warning before the end");
        qFatal("another end");
    }
    const QGuiApplication application(argumentCount, arguments);
    return 0;
}

int run(int argumentCount, char** arguments) {
    const QByteArray task = arguments[1];
    if (task == "display") {
        return makeApplication(argumentCount, arguments, argumentCount > 2 ? arguments[2] : "");
    }
    const QCoreApplication application(argumentCount, arguments);
    const QString folder = QCoreApplication::arguments().at(2);
    if (task == "mac") {
        macOfUser(folder, QStringLiteral("/nowhere/macsim"));
        return 0;
    }
    const QStringList words = QCoreApplication::arguments();
    return runInstance(folder, words.at(3).toInt(), words.mid(4));
}

} // namespace

int main(int argumentCount, char** arguments) {
    try {
        return run(argumentCount, arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 1;
    }
}
