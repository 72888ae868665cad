#include "maccheck/CheckProgram.h"
#include "maccheck/People.h"
#include "platform/macos/MacProcess.h"

#include <QApplication>

#include <memory>

namespace {

/// Without a user at the screen no window can be made. This program is never the active one, nor in the Dock.
std::unique_ptr<QCoreApplication> makeApplication(int& argumentCount, char** arguments) {
    // The system answers on the main thread's run loop, which a program without windows has only if it is told so.
    qputenv("QT_EVENT_DISPATCHER_CORE_FOUNDATION", "1");
    qputenv("QT_MAC_DISABLE_FOREGROUND_APPLICATION_TRANSFORM", "1");
    if (quorvane::isUserAtScreen()) {
        return std::make_unique<QApplication>(argumentCount, arguments);
    }
    return std::make_unique<QCoreApplication>(argumentCount, arguments);
}

} // namespace

int main(int argumentCount, char** arguments) {
    quorvane::prepareProcess();
    const std::unique_ptr<QCoreApplication> application = makeApplication(argumentCount, arguments);
    return quorvane::runChecks(QCoreApplication::arguments().mid(1));
}
