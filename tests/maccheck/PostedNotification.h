#pragma once

class QString;

namespace quorvane {

/// Tells every program of the user's, this one included, as the system's parts do. Main thread; heard when its run loop comes round.
void postNotification(const QString& name);

} // namespace quorvane
