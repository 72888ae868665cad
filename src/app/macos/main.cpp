// The application, on the Mac that it is started on.

#include "app/QuorvaneApp.h"
#include "app/macos/MacProgramHost.h"
#include "platform/macos/MacProcess.h"

int main(int argumentCount, char** arguments) {
    const QProcessEnvironment environment = quorvane::prepareProcess();
    return quorvane::QuorvaneApp(argumentCount, arguments).run([&environment](const QString&) {
        return std::make_unique<quorvane::MacProgramHost>(environment);
    });
}
