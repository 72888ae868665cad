#include <QCoreApplication>

#include <gtest/gtest.h>

namespace {

// What Qt warns of is a mistake in the code under test: a connection that doesn't exist, a process destroyed while it
// runs.
void failOnWarning(QtMsgType type, const QMessageLogContext&, const QString& message) {
    if (type != QtDebugMsg && type != QtInfoMsg) {
        ADD_FAILURE() << "Qt warns: " << message.toStdString();
    }
}

} // namespace

int main(int argumentCount, char** arguments) {
    ::testing::InitGoogleTest(&argumentCount, arguments);
    const QCoreApplication application(argumentCount, arguments);
    qInstallMessageHandler(failOnWarning);
    return RUN_ALL_TESTS();
}
