#pragma once

#include <QString>

namespace macsim {

// Paths as the Mac writes them, taken as texts: with "/" between the components.

/// What stands behind the last "/": empty for a path that ends in one, the whole text where there is none.
QString lastPathComponent(const QString& path);

/// The folder of an absolute path; "/" is its own.
QString parentFolder(const QString& path);

/// The path without the "/" at its end, however many; "/" itself stays.
QString withoutFinalSlashes(const QString& path);

/// The path of a name in a folder, which may end in "/".
QString pathInFolder(const QString& folder, const QString& name);

} // namespace macsim
