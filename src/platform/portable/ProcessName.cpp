#include "platform/portable/ProcessName.h"

#include <QCoreApplication>
#include <QSysInfo>

#include <cerrno>
#include <csignal>

namespace quorvane {

namespace {

/// "kern.bootsessionuuid" on a Mac.
QString startOfComputer() {
    return QString::fromLatin1(QSysInfo::bootUniqueId());
}

QString nameOf(qint64 process) {
    return startOfComputer() + u'/' + QString::number(process);
}

} // namespace

QString ownProcessName() {
    return nameOf(QCoreApplication::applicationPid());
}

bool isProcessRunning(const QString& processName) {
    const qint64 process = processName.section(u'/', -1).toLongLong();
    if (process <= 0 || process != static_cast<pid_t>(process) || processName != nameOf(process)) {
        return false;
    }
    return ::kill(static_cast<pid_t>(process), 0) == 0 || errno == EPERM;
}

} // namespace quorvane
