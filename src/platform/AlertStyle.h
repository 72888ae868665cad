#pragma once

namespace quorvane {

/// How serious an alert is. A warning tells of a failure, or asks before something that can't simply be undone; a success is
/// marked as one where it could be overlooked what has been done.
enum class AlertStyle { Informational, Success, Warning };

} // namespace quorvane
