#pragma once

#include <QString>
#include <QVariantMap>

#include <optional>

namespace quorvane {

/// Reads property lists, XML and binary ones. Any thread.
class PropertyLists {
public:
    PropertyLists() = default;
    PropertyLists(const PropertyLists&) = delete;
    PropertyLists& operator=(const PropertyLists&) = delete;
    virtual ~PropertyLists() = default;

    /// The dictionary that a file holds: strings as QString, booleans as bool, arrays as QVariantList, dictionaries as
    /// QVariantMap. None when the file can't be read, is no property list, or holds something else than a dictionary.
    virtual std::optional<QVariantMap> dictionary(const QString& path) const = 0;
};

} // namespace quorvane
