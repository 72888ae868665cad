#ifdef QUORVANE_TEST_HAS_WINDOWS
#include "ui/QuorvaneStyle.h"

#include <QApplication>
#elif defined(QUORVANE_TEST_PAINTS)
#include <QGuiApplication>
#else
#include <QCoreApplication>
#endif

#ifdef QUORVANE_TEST_HAS_DISPLAY
#include "fakes/XDisplay.h"
#endif

#include <gtest/gtest.h>

#include <cstdio>

namespace {

// What Qt warns of is a mistake in the code under test: a connection that doesn't exist, a process destroyed while it
// runs. A damaged picture is the mistake of its file, and the platform without a display can't order windows.
void failOnWarning(QtMsgType type, const QMessageLogContext& context, const QString& message) {
    const bool isOfPicture = QByteArrayView(context.category).startsWith("qt.gui.imageio");
    const bool isOfNoDisplay = message.startsWith(QLatin1String("This plugin does not support "));
    if (type != QtDebugMsg && type != QtInfoMsg && !isOfPicture && !isOfNoDisplay) {
        ADD_FAILURE() << "Qt warns: " << message.toStdString();
    }
}

#ifdef QUORVANE_TEST_HAS_DISPLAY
/// One of the test's own.
class TestDisplay {
public:
    TestDisplay() { m_display.use(); }

private:
    quorvane::XDisplay m_display;
};
#elif defined(QUORVANE_TEST_PAINTS)
/// Text is painted without one.
class TestDisplay {
public:
    TestDisplay() {
        if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) {
            qputenv("QT_QPA_PLATFORM", "offscreen");
        }
    }
};
#else
class TestDisplay {};
#endif

#ifdef QUORVANE_TEST_PAINTS
#ifdef QUORVANE_TEST_HAS_WINDOWS
/// As the program makes it.
class Application : public QApplication {
public:
    Application(int& argumentCount, char** arguments)
        : QApplication(argumentCount, arguments) {
        setStyle(new quorvane::QuorvaneStyle({}));
        setQuitOnLastWindowClosed(false);
    }
};
#else
using Application = QGuiApplication;
#endif
#else
using Application = QCoreApplication;
#endif

/// What a process without a test ends with: its share of those that a filter chose may be empty, its share of all may not.
int endWithoutTests() {
    if (GTEST_FLAG_GET(filter) == "*") {
        std::puts("This process has no test. Are there more shards than tests?");
        return 1;
    }
    constexpr int kSkipped = 77; // known to tests/CMakeLists.txt
    return kSkipped;
}

} // namespace

int main(int argumentCount, char** arguments) {
    ::testing::InitGoogleTest(&argumentCount, arguments);
    [[maybe_unused]] const TestDisplay display;
    const Application application(argumentCount, arguments);
    qInstallMessageHandler(failOnWarning);
    const int status = RUN_ALL_TESTS();
    if (status == 0 && !GTEST_FLAG_GET(list_tests) && ::testing::UnitTest::GetInstance()->test_to_run_count() == 0) {
        return endWithoutTests();
    }
    return status;
}
