#include "app/DisplayCheck.h"

#include <QList>
#include <QMessageLogger>

#include <cstdio>
#include <unistd.h>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

constexpr int kNoDisplay = 2;

struct HeldMessage {
    QtMsgType type;
    QByteArray category;
    QString text;
};

// A message handler is a plain function, so what it knows stands beside it.
QtMessageHandler otherHandler = nullptr;
QList<HeldMessage> heldMessages;

QString namedDisplay() {
    const QString wayland = qEnvironmentVariable("WAYLAND_DISPLAY");
    return wayland.isEmpty() ? qEnvironmentVariable("DISPLAY") : wayland;
}

[[noreturn]] void endWithoutDisplay() {
    std::fputs(noDisplayText(namedDisplay()).toUtf8().constData(), stderr);
    std::fflush(stderr);
    ::_exit(kNoDisplay);
}

void releaseHeldMessages() {
    qInstallMessageHandler(otherHandler);
    for (const HeldMessage& held : std::exchange(heldMessages, {})) {
        const QMessageLogger logger(nullptr, 0, nullptr, held.category.constData());
        switch (held.type) {
        case QtDebugMsg:
            logger.debug("%s", held.text.toUtf8().constData());
            break;
        case QtInfoMsg:
            logger.info("%s", held.text.toUtf8().constData());
            break;
        case QtCriticalMsg:
            logger.critical("%s", held.text.toUtf8().constData());
            break;
        case QtWarningMsg:
        case QtFatalMsg:
            logger.warning("%s", held.text.toUtf8().constData());
            break;
        }
    }
}

void holdMessage(QtMsgType type, const QMessageLogContext& context, const QString& text) {
    if (type != QtFatalMsg) {
        heldMessages.append({type, context.category, text});
        return;
    }
    if (text.contains(u"platform plugin"_s)) {
        endWithoutDisplay();
    }
    releaseHeldMessages();
    qFatal("%s", text.toUtf8().constData());
}

} // namespace

QString noDisplayText(const QString& named) {
    const QString reason =
        named.isEmpty() ? u"neither DISPLAY nor WAYLAND_DISPLAY names one"_s : u"“%1” can’t be opened"_s.arg(named);
    return u"quorvane: the window needs a display, and %1.\n"
           "Without a screen Xvfb gives one (on Debian: apt-get install xvfb xauth):\n"
           "    xvfb-run ./run window\n"
           "    Xvfb :99 & DISPLAY=:99 ./run window\n"_s.arg(reason);
}

DisplayCheck::DisplayCheck() {
    otherHandler = qInstallMessageHandler(holdMessage);
}

DisplayCheck::~DisplayCheck() {
    releaseHeldMessages();
}

} // namespace quorvane
