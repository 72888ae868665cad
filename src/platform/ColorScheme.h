#pragma once

namespace quorvane {

enum class ColorScheme { Light, Dark };

} // namespace quorvane
