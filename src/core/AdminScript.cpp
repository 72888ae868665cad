#include "core/AdminScript.h"

#include "core/Quoting.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kRootsOwnPath = u"PATH=/usr/bin:/bin:/usr/sbin:/sbin; export PATH; "_s;

} // namespace

QString withoutStatus(const QString& command) {
    return command + u" || true"_s;
}

QStringList makeAdminCommandsTolerant(const QStringList& commands) {
    QStringList tolerant;
    for (const QString& command : commands) {
        const bool mayFail = command.contains(u"mdutil"_s) || command.contains(u"tmutil"_s);
        tolerant.append(mayFail ? withoutStatus(command) : command);
    }
    return tolerant;
}

QString joinedAdminCommands(const QStringList& commands) {
    return commands.join(u" ; "_s);
}

QString requireNoLinksCommand(const QStringList& paths) {
    QStringList tests;
    for (const QString& path : paths) {
        tests.append(u"[ ! -L "_s + shellQuoted(path) + u" ]"_s);
    }
    return tests.join(u" && "_s);
}

QString adminScriptSource(const QString& shellLine, const QString& prompt) {
    return u"do shell script \""_s + appleScriptText(kRootsOwnPath + shellLine) + u"\" with prompt \""_s +
           appleScriptText(prompt) + u"\" with administrator privileges"_s;
}

} // namespace quorvane
