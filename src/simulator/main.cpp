// macsim is every command of a simulated Mac. A Mac's /usr/bin/defaults, /bin/launchctl and the others are links to
// it; it finds the Mac's folder and the command by the path under which it was started.
//
// The host steers it through its environment, which no simulated command sees:
//   MACSIM_ACTOR      "root" runs the command as root, without asking anybody
//   MACSIM_AUTHORIZE  what osascript is answered when it asks for administrator rights: allow, deny or cancel.
//                     Without it no interaction is possible, which counts as a cancel.
//   MACSIM_FAULTS     a file of rules of what goes wrong
//   MACSIM_JOURNAL    a further file for the journal's records

#include "simulator/Authorizer.h"
#include "simulator/Faults.h"
#include "simulator/Journal.h"
#include "simulator/Mac.h"
#include "simulator/Tool.h"
#include "simulator/tools/Registry.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QProcessEnvironment>

#include <cstdio>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>

namespace {

using namespace macsim;
using namespace Qt::StringLiterals;

struct Invocation {
    QString hostFolder;
    QString command; ///< "/usr/bin/defaults"
};

/// Splits the path of a command's link into the Mac's folder and the command.
Invocation parsedInvocation(const QString& linkPath) {
    const QString path = QDir::cleanPath(QDir::current().absoluteFilePath(linkPath));
    for (QDir folder = QFileInfo(path).dir();;) {
        if (QFileInfo::exists(folder.path() + kStateFolder.toString() + u"/machine.json"_s)) {
            return {folder.path(), path.mid(folder.path().size())};
        }
        if (!folder.cdUp()) {
            throw std::runtime_error(linkPath.toStdString() + ": not a command of a simulated Mac");
        }
    }
}

QMap<QString, QString> commandEnvironment() {
    const QProcessEnvironment environment = QProcessEnvironment::systemEnvironment();
    QMap<QString, QString> variables;
    for (const QString& name : environment.keys()) {
        if (!name.startsWith(u"MACSIM_"_s)) {
            variables.insert(name, environment.value(name));
        }
    }
    return variables;
}

void write(FILE* stream, const QByteArray& bytes) {
    std::fwrite(bytes.constData(), 1, static_cast<size_t>(bytes.size()), stream);
    std::fflush(stream);
}

QByteArray standardInput(const QString& command) {
    QFile file;
    // The script engine converses over its input instead of reading it to the end.
    const bool reads = command != u"/usr/libexec/scriptengine"_s && file.open(stdin, QIODevice::ReadOnly);
    return reads ? file.readAll() : QByteArray();
}

int run(const QStringList& arguments) {
    const Invocation invocation = parsedInvocation(arguments.first());
    const Mac mac(invocation.hostFolder);
    const Actor actor = qgetenv("MACSIM_ACTOR") == "root" ? Actor::Root : Actor::User;
    FixedAuthorizer authorizer(
        authorizationNamed(qgetenv("MACSIM_AUTHORIZE").toStdString()).value_or(Authorization::Cancel));
    const Journal journal(
        {mac.hostFolder() + kStateFolder.toString() + u"/journal.jsonl"_s, qEnvironmentVariable("MACSIM_JOURNAL")});
    const Faults faults =
        qEnvironmentVariableIsSet("MACSIM_FAULTS") ? Faults::fromFile(qEnvironmentVariable("MACSIM_FAULTS")) : Faults();

    ToolContext context{mac,
                        simulatorTools(),
                        authorizer,
                        mac.volume(actor),
                        arguments,
                        commandEnvironment(),
                        mac.homeFolder(actor),
                        standardInput(invocation.command),
                        {},
                        {}};
    context.faults = &faults;
    context.journal = &journal;
    const CommandLookUp command = findCommand(invocation.command, context);
    if (command.outcome != CommandLookUp::Outcome::Found) {
        throw std::runtime_error(invocation.command.toStdString() + ": no such command on the simulated Mac");
    }
    const int status = runCommand(command, context);
    write(stdout, context.output);
    write(stderr, context.error);
    return status;
}

} // namespace

int main(int argumentCount, char** arguments) {
    try {
        QStringList list;
        for (int i = 0; i < argumentCount; ++i) {
            list.append(QString::fromLocal8Bit(arguments[i]));
        }
        return run(list);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "macsim: %s\n", error.what());
        return 125;
    }
}
