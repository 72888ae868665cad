#pragma once

namespace quorvane {

/// How serious an alert is. A warning tells of a failure, or asks before something that can't simply be undone.
enum class AlertStyle { Informational, Warning };

} // namespace quorvane
