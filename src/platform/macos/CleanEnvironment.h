#pragma once

#include <QProcessEnvironment>

namespace quorvane {

/// What of its environment the program keeps, and gives to its children. Whoever may run a program of the user's can set
/// variables for all others of the session (`launchctl setenv`, `open --env`): with a search path of theirs, root would run
/// their "pmset" instead of the system's.
/// @param isDebugBuild  keeps Qt's own variables, by which a developer looks at what Qt does
QProcessEnvironment cleanEnvironment(const QProcessEnvironment& given, bool isDebugBuild);

/// Makes an environment this process's own, before it has a second thread.
void takeEnvironment(const QProcessEnvironment& wanted);

} // namespace quorvane
