#pragma once

#include <QString>

namespace quorvane {

/// Whether an application at a path is one of this Mac's, as the system knows applications anywhere: not one in a Trash, and not
/// one on a disk image. An application on a drive of the user's is.
/// @param isOnReadOnlyVolume  as disk images for distribution are
bool countsAsInstalled(const QString& path, bool isOnReadOnlyVolume);

} // namespace quorvane
