#pragma once

#include <QStringList>

class QWidget;

namespace quorvane {

// What is wrong with what a window shows, a line for each fault; empty when all is as it should be.

/// For those who hear or feel the window: each control that can be seen has a role, a name that no other has, and is in the
/// tree of accessible objects; what only decorates has no name.
QStringList accessibilityFaults(QWidget* window);

/// For those who use keys: the Tab key comes to each usable control once, from the left above to the right below, and back to
/// the first; with Shift the other way round; each has a ring when it has the focus. Presses the keys.
QStringList tabFaults(QWidget* window);

/// Texts that have less room than they need, and controls that stick out of what they are in.
QStringList clippedTexts(QWidget* window);

/// The controls that a screen reader finds, in its order: "button Unlock", "field Password (password)", "check box Siri:
/// Voice assistant (checked)". Rows of lists are among them.
QStringList spokenControls(QWidget* window);

} // namespace quorvane
