#pragma once

#include "simulator/Volume.h"

#include <QString>
#include <QStringList>

namespace macsim {

/// The paths that match a pattern, sorted by code point, spelled as the pattern is: relative ones stay
/// relative. Empty when none does. A folder that can't be read has no names.
QStringList matchingPaths(const QString& pattern, const QString& workingFolder, const Volume& volume);

} // namespace macsim
