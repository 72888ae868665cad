#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

// Audio software, by what its names hold. Nothing of the kind is ever touched.

const QStringList& excludedKeywords();
/// True when the name holds one of `excludedKeywords` in any case. An empty name holds none.
bool isExcludedName(const QString& name);

} // namespace quorvane
