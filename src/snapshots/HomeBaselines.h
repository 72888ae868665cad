#pragma once

#include "snapshots/MasterSystemBaseline.h"

#include <QString>

#include <optional>

namespace quorvane {

class FileManager;
class Machine;

/// The Mac that the program runs on.
MacIdentity identityOf(const Machine& machine);

/// In the program's folder of the iCloud container.
inline const QString kCloudBaselinesFolder = QStringLiteral("SystemBaselines");

/// The user's hidden folder of baselines.
QString baselineFolderAtHome(const Machine& machine);

/// The one that every archiving replaces, in a folder of baselines.
QString currentBaselineFile(const QString& folder);

/// None for a file that is missing, can't be read or can't be decoded.
std::optional<MasterSystemBaseline> baselineAt(const QString& path, const FileManager& files);

/// The current baseline in the home folder, where it is this Mac's own. Reads that file alone.
std::optional<MasterSystemBaseline> ownBaselineAtHome(const FileManager& files, const Machine& machine);

} // namespace quorvane
