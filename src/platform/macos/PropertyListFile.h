#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quorvane {

/// The bytes of a file that may be a property list: of a regular one of at most 64 MiB, by its absolute path; none of any other.
/// No launch plist and no Info dictionary comes near. A pipe or a device in its place is told from it without waiting. Any
/// thread.
std::optional<QByteArray> propertyListBytes(const QString& path);

} // namespace quorvane
