#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

// Paths as the Mac writes them: absolute, with "/" between the components.

/// What stands behind the last "/": empty for a path that ends in one, the whole text where there is none.
QString lastPathComponent(const QString& path);

/// What stands before the last "/": empty for what lies at the root, the whole text where there is none.
QString parentFolder(const QString& path);

/// The folders above a path, from the outermost inwards: "/a" and "/a/b" for "/a/b/c".
QStringList foldersAbove(const QString& path);

/// The path without the "/" at its end, however many; "/" itself stays.
QString withoutFinalSlashes(const QString& path);

/// The last component of a path without its extension; a "/" at the end of the path doesn't count.
QString nameInPath(const QString& path);

} // namespace quorvane
