#pragma once

#include <QString>

class QDateTime;

namespace quorvane {

/// A moment as the name of a file tells it, the same as inside: "2026-11-15T21:05:37Z". Throws EncodingError for a date
/// that no file can hold.
QString fileTimestamp(const QDateTime& moment);

} // namespace quorvane
