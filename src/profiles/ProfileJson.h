#pragma once

#include "core/JsonForward.h"
#include "profiles/UnifiedProfile.h"

// The format of a profile file. A file of an older version has no "startup" and is migrated as it is read;
// every file that is written has the flat keys of the older versions too, derived from `startup`, for older
// readers.
namespace quorvane {

/// Throws EncodingError for a profile without a proper date.
Json encodeJson(const UnifiedProfile& profile);
/// Throws DecodingError.
void decodeJson(const Json& json, UnifiedProfile& profile);

/// The bytes of a profile file. Throws EncodingError.
QByteArray encodeProfile(const UnifiedProfile& profile);
/// Reads the bytes of a profile file, of any version. Throws DecodingError.
UnifiedProfile decodeProfile(const QByteArray& bytes);

} // namespace quorvane
