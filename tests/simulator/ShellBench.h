#pragma once

#include "fakes/QtPrinting.h"
#include "fakes/SimulatedMacFolder.h"
#include "simulator/shell/Shell.h"

#include <QString>

#include <ostream>

namespace macsim {

/// What a shell line gave.
struct ShellOutcome {
    int status = 0;
    QString output;
    QString error;
    bool operator==(const ShellOutcome&) const = default;
};

inline void PrintTo(const ShellOutcome& outcome, std::ostream* stream) {
    *stream << "status " << outcome.status << "\noutput: " << outcome.output.toStdString()
            << "\nerror: " << outcome.error.toStdString();
}

/// A bare Mac with a handful of commands, and a shell to type at.
class ShellBench {
public:
    explicit ShellBench(const Json& machine = SimulatedMacFolder::defaultMachine())
        : mac(tools(), machine) {}

    /// Runs a line as the user in their home folder.
    ShellOutcome run(const QString& line, const QByteArray& input = {}, Actor actor = Actor::User) {
        ToolContext context = mac.context({QStringLiteral("sh")}, actor);
        context.input = input;
        return run(line, context);
    }

    static ShellOutcome run(const QString& line, ToolContext& context) {
        noted().clear();
        const int status = runShellLine(line, context);
        return {status, QString::fromUtf8(context.output), QString::fromUtf8(context.error)};
    }

    Volume user() const { return mac.mac.volume(Actor::User); }
    Volume root() const { return mac.mac.volume(Actor::Root); }
    QString file(const QString& path) const { return QString::fromUtf8(root().read(path)); }

    /// The command lines that `note` got in the last run.
    static QStringList& noted() {
        static QStringList lines;
        return lines;
    }

    SimulatedMacFolder mac;

private:
    static ToolTable tools() {
        return {
            {QStringLiteral("/usr/bin/printargs"), printArguments},
            {QStringLiteral("/usr/bin/note"), note},
            {QStringLiteral("/usr/bin/value"), printValue},
            {QStringLiteral("/usr/bin/give"), give},
            {QStringLiteral("/bin/cat"), cat},
            {QStringLiteral("/bin/sh"), shell},
        };
    }

    /// Each argument in brackets.
    static int printArguments(ToolContext& context) {
        for (const QString& argument : context.arguments.mid(1)) {
            context.print(u'[' + argument + u']');
        }
        context.print(QStringLiteral("\n"));
        return 0;
    }

    static int note(ToolContext& context) {
        noted().append(context.arguments.mid(1).join(u' '));
        return 0;
    }

    /// The value of a variable in the environment, or "unset".
    static int printValue(ToolContext& context) {
        context.print(context.environment.value(context.arguments.value(1), QStringLiteral("unset")) + u'\n');
        return 0;
    }

    /// `give STATUS OUTPUT ERROR`
    static int give(ToolContext& context) {
        context.print(context.arguments.value(2));
        context.complain(context.arguments.value(3));
        return context.arguments.value(1).toInt();
    }

    static int cat(ToolContext& context) {
        for (const QString& path : context.arguments.mid(1)) {
            context.output += context.volume.read(context.absolutePath(path));
        }
        if (context.arguments.size() == 1) {
            context.output += std::exchange(context.input, {});
        }
        return 0;
    }

    static int shell(ToolContext& context) { return runShellLine(context.arguments.value(2), context); }
};

} // namespace macsim
