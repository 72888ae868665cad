#pragma once

namespace quorvane {

/// What a verification makes of the tweaks that the settings don't select.
enum class UnselectedTweaks { Ignored, ExpectedRestored };

} // namespace quorvane
