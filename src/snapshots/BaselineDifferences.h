#pragma once

#include "readings/CurrentSettings.h"
#include "snapshots/SystemSnapshot.h"

#include <QStringList>

namespace quorvane {

/// The settings in which a Mac differs from a snapshot now, by the names under which the log knows them. What wasn't captured, or isn't
/// answered now, is none of them.
QStringList differencesFromNow(const SystemSnapshot& captured, const CurrentSettings& now);

} // namespace quorvane
