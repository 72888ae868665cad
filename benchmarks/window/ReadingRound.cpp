// One round of reading: the program logs much, and its log and its manual are opened. The argument says what is measured:
//   stalls   a line for each thing that is done, with the longest stall of the event loop meanwhile
//   memory   how many MiB the process grows by from 20,000 to 200,000 lines, with the log's page open
//   bare     the same of nothing but a list of these lines

#include "Heartbeat.h"
#include "User.h"
#include "actions/WindowTexts.h"
#include "app/AppDelegate.h"
#include "app/simulated/AuthorizationDialogs.h"
#include "app/simulated/MacOfUser.h"
#include "app/simulated/UnwatchedActivity.h"
#include "documentation/DocumentationPage.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "platform/StatusItem.h"
#include "platform/simulated/SimulatedHost.h"
#include "ui/documentation/WindowDocumentation.h"
#include "ui/logs/LogLinesView.h"
#include "ui/window/ContentView.h"
#include "ui/window/MainWindow.h"
#include "ui/window/WindowAppearance.h"
#include "ui/window/WindowWorkspace.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QScrollBar>
#include <QTemporaryDir>
#include <QTextBrowser>
#include <QTimer>

#include <cstdio>
#include <malloc.h>
#include <stdexcept>

namespace quorvane {

namespace {

using namespace Qt::StringLiterals;

constexpr int kFew = 20'000;
constexpr int kMany = 200'000;
constexpr int kLinesInATurn = 500;

class NoStatusItem final : public StatusItem {
public:
    void setMenu(QMenu&) override {}
    void remove() override {}
    bool isShown() const override { return false; }
};

QString numberedLine(int number) {
    return u"  [APPLIED] Line %1 of a log that has grown for a very long time."_s.arg(number, 6, 10, QChar(u'0'));
}

double mebibytesHeld() {
    ::malloc_trim(0);
    QFile file(u"/proc/self/smaps_rollup"_s);
    const bool isOpen = file.open(QIODevice::ReadOnly);
    for (const QByteArray& field : isOpen ? file.readAll().split('\n') : QList<QByteArray>()) {
        if (field.startsWith("Rss:")) {
            return field.mid(4).trimmed().split(' ').constFirst().toDouble() / 1024;
        }
    }
    throw std::runtime_error("no Rss");
}

MainWindow& mainWindow() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (auto* const found = qobject_cast<MainWindow*>(window)) {
            return *found;
        }
    }
    throw std::runtime_error("no window");
}

/// The program on a simulated Mac of its own, used from inside as far as nobody could by keys.
class Reader {
public:
    explicit Reader(const QString& macFolder)
        : m_host(macFolder, m_authorization, {macsimBesideProgram(), {}, {}, nullptr, nullptr})
        , m_delegate({m_host.host(), m_host.systemLook(), m_appearance, m_workspace, m_statusItem, m_documentation,
                      m_activity, [this] { m_host.shutDown(); }}) {
        const Host ports = m_host.host();
        QDir().mkpath(macFolder + ports.machine.homeFolder() + u"/.quorvane"_s);
        ports.files.writeAtomically(ports.machine.homeFolder() + u"/.quorvane/master-baseline-current.json"_s, "{}");
        m_delegate.applicationDidFinishLaunching();
        user::waitUntil(u"the scan ends"_s, [this] { return system().hasVerifiedSystem(); });
    }
    ~Reader() {
        bool hasEnded = false;
        QObject::connect(&m_delegate, &AppDelegate::terminated, [&hasEnded] { hasEnded = true; });
        m_delegate.quit();
        user::waitUntil(u"the end"_s, [&hasEnded] { return hasEnded; });
    }
    Reader(const Reader&) = delete;
    Reader& operator=(const Reader&) = delete;

    SystemManager& system() { return m_delegate.session().system; }

    /// So many lines more, as flows log: a few in each turn of the event loop.
    void log(int lines) {
        const auto end = system().logMessages().size() + lines;
        QTimer turns;
        QObject::connect(&turns, &QTimer::timeout, [this, end] {
            for (int line = 0; line < kLinesInATurn && system().logMessages().size() < end; ++line) {
                system().log(numberedLine(static_cast<int>(system().logMessages().size())));
            }
        });
        turns.start(0);
        user::waitUntil(u"all is logged"_s, [this, end] { return system().logMessages().size() >= end; });
    }
    void openLogs() { mainWindow().contentView().setSelectedTab(Tab::logs); }
    void waitUntilListed() {
        user::waitUntil(u"the log is listed"_s, [this] {
            const auto* const list = mainWindow().findChild<LogLinesView*>();
            return list != nullptr && list->model()->rowCount() >= system().logMessages().size();
        });
    }

private:
    AuthorizationDialogs m_authorization;
    SimulatedHost m_host;
    WindowAppearance m_appearance;
    WindowWorkspace m_workspace;
    NoStatusItem m_statusItem;
    WindowDocumentation m_documentation;
    UnwatchedActivity m_activity;
    AppDelegate m_delegate;
};

void waitUntilManualIsRead() {
    user::waitUntil(u"the manual is seen"_s, [] {
        for (const QWidget* const window : QApplication::topLevelWidgets()) {
            const auto* const text = window->isVisible() ? window->findChild<QTextBrowser*>() : nullptr;
            if (text != nullptr && text->verticalScrollBar()->maximum() > text->height() &&
                text->toPlainText().contains(u"Copyright")) {
                return true;
            }
        }
        return false;
    });
}

void closeManual() {
    for (QWidget* const window : QApplication::topLevelWidgets()) {
        if (window->windowTitle() == kDocumentationTitle) {
            window->close();
        }
    }
}

void measureStalls(Reader& reader) {
    Heartbeat heartbeat;
    const auto measured = [&heartbeat](const char* what, const std::function<void()>& act) {
        heartbeat.begin();
        act();
        const Heartbeat::Stall stall = heartbeat.end();
        std::printf("%s\t%.2f\t%.2f\t%s\n", what, stall.milliseconds, stall.worked, stall.during.constData());
    };
    measured("200,000 lines are logged", [&reader] { reader.log(kMany); });
    measured("their page is opened", [&reader] {
        reader.openLogs();
        reader.waitUntilListed();
    });
    measured("as many more beneath it", [&reader] {
        reader.log(kMany);
        reader.waitUntilListed();
    });
    const auto openManual = [] {
        user::click(kDocumentation);
        waitUntilManualIsRead();
    };
    measured("the manual is opened", openManual);
    closeManual();
    measured("and a second time", openManual);
    closeManual();
}

void measureMemory(Reader& reader) {
    reader.openLogs();
    reader.log(kFew);
    reader.waitUntilListed();
    const double before = mebibytesHeld();
    reader.log(kMany - kFew);
    reader.waitUntilListed();
    std::printf("%.2f\n", mebibytesHeld() - before);
}

void measureBareList() {
    QStringList lines;
    const auto growTo = [&lines](int count) {
        while (lines.size() < count) {
            lines.append(numberedLine(static_cast<int>(lines.size())));
        }
    };
    growTo(kFew);
    const double before = mebibytesHeld();
    growTo(kMany);
    std::printf("%.2f\n", mebibytesHeld() - before);
}

int read(int& argumentCount, char** arguments) {
    const QTemporaryDir home;
    qputenv("XDG_CONFIG_HOME", (home.path() + u"/config"_s).toUtf8());
    const QApplication application(argumentCount, arguments);
    QApplication::setQuitOnLastWindowClosed(false);
    const QString measure = QApplication::arguments().value(1);
    if (measure == u"bare"_s) {
        measureBareList();
        return EXIT_SUCCESS;
    }
    Reader reader(macOfUser(home.path(), macsimBesideProgram()));
    if (measure == u"memory"_s) {
        measureMemory(reader);
    } else {
        measureStalls(reader);
    }
    return EXIT_SUCCESS;
}

} // namespace

} // namespace quorvane

int main(int argumentCount, char** arguments) {
    try {
        return quorvane::read(argumentCount, arguments);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return EXIT_FAILURE;
    }
}
