#pragma once

class QAbstractButton;
class QKeyEvent;

namespace quorvane {

/// Return presses a button that isn't one of a dialog's, as Space does any. True when it did.
bool isPressedByReturn(QAbstractButton& button, const QKeyEvent& event);

} // namespace quorvane
