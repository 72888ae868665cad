#pragma once

#include "app/ProgramHost.h"

#include <memory>

class QApplication;

namespace quorvane {

/// The program with its window: one at a time, on the host that it is given, until its user or a signal ends it. Main thread.
///
/// Started with "--check-start" it ends by itself when the window has been painted and the status item is there: whoever builds
/// the program sees by that whether it has all that it needs.
class QuorvaneApp {
public:
    /// Ends the process with status 2 where there is no display.
    QuorvaneApp(int& argumentCount, char** arguments);
    ~QuorvaneApp();

    /// @return the status of the process
    int run(const ProgramHostMaker& makeHost);

private:
    std::unique_ptr<QApplication> m_application;
};

} // namespace quorvane
