#pragma once

#include <QString>

#include <sys/types.h>

namespace macsim {

// A file or folder that doesn't belong to whom its place says (see Volume) carries a mark on the host: the sticky bit.
// Every host's file system keeps it, a rename takes it along, and nothing else in a simulated Mac uses it. Paths are the
// host's. The mode of a link can't be set on every host, so a link has no mark.

bool hasOwnerMark(const QString& hostPath);

/// Sets the mark, or takes it away.
void flipOwnerMark(const QString& hostPath);
/// The same for everything in a tree, itself included. Links are not followed.
void flipOwnerMarks(const QString& hostPath);

mode_t modeWithOwnerMark(mode_t mode);

} // namespace macsim
