#pragma once

#include <QStringList>

namespace quorvane {

/// The icons that a user may choose from for a tweak, by their symbol names, in the order in which they are shown.
const QStringList& popularIcons();

/// Those whose name holds the text, in any case; all for an empty one.
QStringList matchingIcons(const QString& searchText);

} // namespace quorvane
