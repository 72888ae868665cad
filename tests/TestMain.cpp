#ifdef QUORVANE_TEST_PAINTS
#include <QGuiApplication>
#else
#include <QCoreApplication>
#endif

#include <gtest/gtest.h>

namespace {

// What Qt warns of is a mistake in the code under test: a connection that doesn't exist, a process destroyed while it
// runs. A damaged picture is the mistake of its file.
void failOnWarning(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const bool isOfPicture = QByteArrayView(context.category).startsWith("qt.gui.imageio");
    if (type != QtDebugMsg && type != QtInfoMsg && !isOfPicture) {
        ADD_FAILURE() << "Qt warns: " << message.toStdString();
    }
}

#ifdef QUORVANE_TEST_PAINTS
/// Text is painted without a display.
void chooseDisplay() {
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
        qputenv("QT_QPA_PLATFORM", "offscreen");
    }
}
using Application = QGuiApplication;
#else
void chooseDisplay() {}
using Application = QCoreApplication;
#endif

} // namespace

int main(int argumentCount, char** arguments) {
    ::testing::InitGoogleTest(&argumentCount, arguments);
    chooseDisplay();
    const Application application(argumentCount, arguments);
    qInstallMessageHandler(failOnWarning);
    return RUN_ALL_TESTS();
}
