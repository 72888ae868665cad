#pragma once

#include "core/Json.h"

namespace quorvane {

/// A moment as the name of a file tells it, the same as inside: "2026-11-15T21:05:37Z". Throws EncodingError for a date
/// that no file can hold.
inline QString fileTimestamp(const QDateTime& moment) {
    return decodedValue<QString>(encodeJson(moment));
}

} // namespace quorvane
