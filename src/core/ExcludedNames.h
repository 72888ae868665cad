#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

// Audio software, by what its names hold and by who makes it. Nothing of the kind is ever touched.

const QStringList& excludedKeywords();
/// True when the name holds one of `excludedKeywords` in any case, as it stands or with its "-", "_" and "." taken for blanks,
/// or an identifier of one of `audioMakers`. An empty name holds none.
bool isExcludedName(const QString& name);

} // namespace quorvane
