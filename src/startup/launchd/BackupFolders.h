#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

class FlowEnvironment;

// The folders in the user's home into which the program puts things aside.

/// Creates the outermost of them; a failure is in the log, and whoever needs it then finds out.
void createBackupFolder(FlowEnvironment& environment);

/// Creates folders, outer ones first, into which something is about to be moved. A link in the place of one would let
/// root move files to wherever it leads.
/// @return false, with a line in the log, when one of them is no real folder
bool requireRealFolders(FlowEnvironment& environment, const QStringList& folders);

void logUnusableFolder(FlowEnvironment& environment, const QString& folder);

} // namespace quorvane
