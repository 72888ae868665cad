#pragma once

#include "platform/macos/PropertyListTree.h"

#include <CoreFoundation/CoreFoundation.h>

namespace quorvane {

/// A dictionary of Core Foundation's as the program sees it, see propertyListDictionary. For adapters' sources only. Any thread.
/// @param root  the caller's, and alive until this returns
std::optional<QVariantMap> dictionaryOf(CFTypeRef root, ForeignValues foreign);

} // namespace quorvane
