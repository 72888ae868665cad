#pragma once

#include "simulator/Mac.h"

#include <QByteArray>
#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include <chrono>
#include <optional>

namespace macsim {

class Authorizer;
class Faults;
class Journal;
struct ToolContext;

/// A command of the simulated Mac. Reads its input and arguments from the context, writes to its output and error, and
/// gives the exit status. FileError may leave it: the caller reports it as the tool's failure.
using Tool = int (*)(ToolContext& context);

/// Every command of the Mac by the path at which it stands ("/usr/bin/defaults").
using ToolTable = QHash<QString, Tool>;

/// One run of a command.
struct ToolContext {
    const Mac& mac;
    const ToolTable& tools;
    Authorizer& authorizer; ///< whom to ask for administrator rights
    Volume volume;          ///< the disk as the actor of this run sees it
    QStringList arguments;  ///< arguments[0] is the name under which it was started, as typed
    QMap<QString, QString> environment;
    QString workingFolder = QStringLiteral("/");
    QByteArray input = {};
    QByteArray output = {};
    QByteArray error = {};
    const Faults* faults = nullptr;   ///< what goes wrong on purpose, if anything
    const Journal* journal = nullptr; ///< where runs are recorded, if anywhere
    /// After which a signal ends the command, if one was set for it. Nobody waits for it.
    std::optional<std::chrono::seconds> alarm = {};

    Actor actor() const { return volume.actor(); }
    bool isRoot() const { return actor() == Actor::Root; }
    /// A path as typed, made absolute by the working folder.
    QString absolutePath(const QString& path) const;
    void print(const QString& text) { output += text.toUtf8(); }
    void complain(const QString& text) { error += text.toUtf8(); }
};

/// What a command's name leads to.
struct CommandLookUp {
    enum class Outcome { Found, Missing, NotExecutable };
    Outcome outcome = Outcome::Missing;
    QString path; ///< without links, where found
    Tool tool = nullptr;
};

/// Finds a command as a shell or env does: a name with "/" is a path, any other is looked up along PATH.
CommandLookUp findCommand(const QString& name, const ToolContext& context);

/// Runs a command that was found: the one place where faults strike and the journal is written.
/// `context.arguments` holds the command line. A FileError that leaves the tool becomes "{tool}: {path}: {reason}" on
/// its error stream and status 1.
int runCommand(const CommandLookUp& command, ToolContext& context);

/// The end of a command that never ends by itself: it stays until a signal ends it from outside. Where it has an alarm
/// it is over at once.
/// @return a shell's status for that signal
int hang(const ToolContext& context);

} // namespace macsim
