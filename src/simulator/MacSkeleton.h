#pragma once

#include "simulator/Json.h"

#include <QString>
#include <QStringList>

namespace macsim {

/// Makes the bare disk of a Mac in a folder of the host: the system's folders and links, the home and temporary folders
/// of its user and of root, /dev/null, the commands, and the state that says which machine it is.
///
/// @param hostFolder  missing or empty; created with its parents
/// @param machine     as `machineFromJson` reads it
/// @param commands    where the commands stand: "/usr/bin/defaults"
/// @param program     the program on the host that is every command; its file name must be "macsim"
/// Throws std::runtime_error when the folder isn't empty or can't be made.
void createMacSkeleton(const QString& hostFolder, const Json& machine, const QStringList& commands,
                       const QString& program);

/// Makes the commands of a Mac lead to `program` where they lead elsewhere: the folder may have been made by a build
/// that is gone. A command that was taken away stays away.
void relinkCommands(const QString& hostFolder, const QString& program);

} // namespace macsim
