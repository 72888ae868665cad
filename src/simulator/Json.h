#pragma once

#include "json/OrderedJson.h"

namespace macsim {

/// JSON whose objects keep their keys in the order in which they were written.
using Json = nlohmann::ordered_json;

} // namespace macsim
