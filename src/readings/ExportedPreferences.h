#pragma once

#include "readings/Reading.h"
#include "readings/TypedValue.h"
#include "tweaks/TweakPreferences.h"

#include <QHash>
#include <QMap>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// Reads keys out of what `defaults export DOMAIN -` has printed: each answered, with its value or with none where the domain
/// doesn't have it, or unanswered where its value can't be kept. None for what is no whole property list with a dictionary: of a
/// list that was cut off nothing counts.
std::optional<QHash<QString, Reading<TypedValue>>> exportedValues(const QString& xml, const QStringList& keys);

/// Where a preference stands, in one text: "NSGlobalDomain NSAppSleepDisabled"; "-currentHost " goes before those of this Mac alone.
QString placeOf(const MacPreference& preference);

/// Values by the places of their preferences.
using TypedValues = QMap<QString, TypedValue>;
/// The same as they were read: one that is missing here wasn't asked for.
using TypedReadings = QMap<QString, Reading<TypedValue>>;

/// Those that are set.
TypedValues valuesIn(const TypedReadings& readings);

} // namespace quorvane
