#include "fakes/XDisplay.h"

#include <QElapsedTimer>
#include <QMap>

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kPatience = 30000; // longer than a machine takes that is busy

XDisplay* displayOfProcess = nullptr;

} // namespace

XDisplay::XDisplay(const QSize& screen) {
    const QString size = u"%1x%2x24"_s.arg(screen.width()).arg(screen.height());
    // A server that resets itself whenever its last client leaves would take those with it that just come.
    const QStringList arguments{u"-displayfd"_s, u"1"_s,   u"-screen"_s, u"0"_s, size,
                                u"-nolisten"_s,  u"tcp"_s, u"-noreset"_s};
    m_server.setStandardErrorFile(QProcess::nullDevice());
    m_server.start(u"Xvfb"_s, arguments);
    while (!m_server.canReadLine() && m_server.waitForReadyRead(kPatience)) {
    }
    m_name = ':' + m_server.readLine().trimmed();
    EXPECT_GT(m_name.size(), 1) << "Xvfb doesn't start";
    m_windowManager = started(u"openbox"_s, {});
    waitForWindowManager();
}

XDisplay::~XDisplay() {
    closeStatusArea();
    end(*m_windowManager);
    end(m_server);
}

QProcessEnvironment XDisplay::environment() const {
    QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    environment.insert(u"DISPLAY"_s, QString::fromLatin1(m_name));
    environment.insert(u"QT_QPA_PLATFORM"_s, u"xcb"_s);
    environment.insert(u"DBUS_SESSION_BUS_ADDRESS"_s, u"unix:path=/nowhere"_s);
    environment.remove(u"WAYLAND_DISPLAY"_s);
    environment.remove(u"SESSION_MANAGER"_s);
    return environment;
}

void XDisplay::use() {
    displayOfProcess = this;
    qputenv("DISPLAY", m_name);
    qputenv("QT_QPA_PLATFORM", "xcb");
    qputenv("DBUS_SESSION_BUS_ADDRESS", "unix:path=/nowhere");
    qunsetenv("WAYLAND_DISPLAY");
    qunsetenv("SESSION_MANAGER");
}

XDisplay& XDisplay::used() {
    return *displayOfProcess;
}

void XDisplay::openStatusArea() {
    const QStringList arguments{u"--edge"_s, u"bottom"_s, u"--align"_s, u"right"_s, u"--widthtype"_s, u"request"_s};
    m_statusArea = started(u"trayer"_s, arguments);
}

void XDisplay::closeStatusArea() {
    if (m_statusArea != nullptr) {
        end(*m_statusArea);
        m_statusArea.reset();
    }
}

QString XDisplay::act(const QStringList& arguments) const {
    const std::unique_ptr<QProcess> process = started(u"xdotool"_s, arguments);
    EXPECT_TRUE(process->waitForFinished(kPatience)) << arguments.join(u' ').toStdString();
    return QString::fromUtf8(process->readAllStandardOutput()).trimmed();
}

QRect XDisplay::placeOf(const QString& window) const {
    QMap<QString, int> place;
    for (const QString& line : act({u"getwindowgeometry"_s, u"--shell"_s, window}).split(u'\n')) {
        place.insert(line.section(u'=', 0, 0), line.section(u'=', 1).toInt());
    }
    return {place.value(u"X"_s), place.value(u"Y"_s), place.value(u"WIDTH"_s), place.value(u"HEIGHT"_s)};
}

void XDisplay::waitForWindowManager() const {
    QElapsedTimer time;
    time.start();
    while (act({u"get_desktop"_s}).isEmpty()) { // only who manages windows names one
        ASSERT_LT(time.elapsed(), kPatience) << "openbox doesn't start";
    }
}

std::unique_ptr<QProcess> XDisplay::started(const QString& program, const QStringList& arguments) const {
    auto process = std::make_unique<QProcess>();
    process->setProcessEnvironment(environment());
    process->setStandardErrorFile(QProcess::nullDevice());
    process->start(program, arguments);
    EXPECT_TRUE(process->waitForStarted(kPatience)) << program.toStdString() << " doesn't start";
    return process;
}

void XDisplay::end(QProcess& process) {
    process.kill();
    process.waitForFinished(kPatience);
}

} // namespace quorvane
