#pragma once

#include "json/OrderedJson.h"

#include <cstdint>
#include <stdexcept>
#include <utility>

namespace macsim {

/// JSON whose objects keep their keys in the order in which they were written.
using Json = nlohmann::ordered_json;

/// A whole number that fits. Throws std::invalid_argument for everything else, which the library would cut down to something.
template <typename Integer>
Integer wholeNumber(const Json& json) {
    const bool fits = json.is_number_unsigned()
                          ? std::in_range<Integer>(json.get<std::uint64_t>())
                          : json.is_number_integer() && std::in_range<Integer>(json.get<std::int64_t>());
    if (!fits) {
        throw std::invalid_argument("not a whole number that fits: " + json.dump());
    }
    return json.get<Integer>();
}

/// The same of a member; 0 where it is absent.
inline int wholeNumberIn(const Json& object, const char* key) {
    const auto member = object.find(key);
    return member == object.end() ? 0 : wholeNumber<int>(*member);
}

} // namespace macsim
