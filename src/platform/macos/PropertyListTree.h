#pragma once

#include <QList>
#include <QStringList>
#include <QVariant>

#include <functional>
#include <optional>

namespace quorvane {

/// One value of a property list as the system holds it, without what is in it.
struct PropertyListPart {
    enum class Kind {
        Value, ///< text, a number, a date, …
        Array,
        Dictionary,
        Foreign ///< nothing that a property list can hold
    };

    Kind kind = Kind::Foreign;
    QVariant value;           ///< of a Value
    QStringList keys;         ///< of a Dictionary, one for each of its parts
    QList<const void*> parts; ///< of an Array or a Dictionary: the system's own values, to be looked at in turn
};

/// What becomes of a dictionary in which something else than a property list's values stand.
enum class ForeignValues {
    Refused, ///< it is none
    LeftOut  ///< they are missing
};

/// The dictionary that begins at a value of the system's; none when something else does. None also for one that is nested in
/// more than 512 levels, or takes more than 128 MiB: few bytes can say either, as a binary list may name a part of it any number
/// of times. Any thread.
/// @param look  called once for each mention of a value
std::optional<QVariantMap> propertyListDictionary(const void* root,
                                                  const std::function<PropertyListPart(const void*)>& look,
                                                  ForeignValues foreign);

/// The moment that a property list counts from the first of January 2001, UTC; none for what is no moment of the calendar.
std::optional<QDateTime> propertyListDate(double secondsSince2001);

} // namespace quorvane
