#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

/// Runs the checks that are linked into this program, which has its application object already, and prints a line for each. The
/// lines of those that have ended stand also where a later one ends the program.
/// @param arguments  without the program's name
/// @return what the program exits with
int runChecks(const QStringList& arguments);

/// Puts something that a check found out behind its name. Once in a check.
void tell(const QString& text);

} // namespace quorvane
