#pragma once

#include <memory>

class QApplication;

namespace quorvane {

/// What QApplication is made with: named as the user knows the program. Ends the process with status 2 where there is no
/// display.
std::unique_ptr<QApplication> makeApplication(int& argumentCount, char** arguments);

/// Runs the program, on the host of the platform, until its user quits.
/// @return the status of the process
int runProgram();

} // namespace quorvane
