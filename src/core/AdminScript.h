#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

// The text of an administrator run. Everything that needs root goes into one shell line under one prompt, so
// one command's failure must not take the others with it.

/// The command, whose failure is none of the line's then.
QString withoutStatus(const QString& command);

/// Each command that contains "mdutil" or "tmutil" gets " || true" behind it: these two fail on many Macs for
/// reasons that say nothing about the rest of the line. The others and the order stay as they are.
QStringList makeAdminCommandsTolerant(const QStringList& commands);

/// The commands joined by " ; ": each runs whatever the one before it did, and the last one's status counts.
QString joinedAdminCommands(const QStringList& commands);

/// The test that fails where a link stands at one of the paths. It goes right before what it guards: a prompt may have stood
/// open for minutes since the paths were looked at, and through a link root would write to wherever it leads.
QString requireNoLinksCommand(const QStringList& paths);

/// The AppleScript that runs a shell line as root, with a search path of its own: the user's session can set one for the
/// programs that are started from it, and a "pmset" in a folder of the user's would run as root.
/// @param prompt  shown in the authorization dialog. Its caller refuses one that holds a double quote.
QString adminScriptSource(const QString& shellLine, const QString& prompt);

} // namespace quorvane
