#pragma once

#include <nlohmann/json.hpp>

// The JSON class of the program and of the simulator. Its members are compiled once, in OrderedJson.cpp, and not in every file
// that uses them.
extern template class nlohmann::basic_json<nlohmann::ordered_map>;
