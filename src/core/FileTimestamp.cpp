#include "core/FileTimestamp.h"

#include "core/Json.h"

namespace quorvane {

QString fileTimestamp(const QDateTime& moment) {
    return decodedValue<QString>(encodeJson(moment));
}

} // namespace quorvane
