#pragma once

#include <nlohmann/json_fwd.hpp>

namespace quorvane {

/// JSON whose objects keep their keys in the order in which they were written. Headers of records know it by name alone; what
/// reads or writes it includes core/Json.h.
using Json = nlohmann::ordered_json;

} // namespace quorvane
