#pragma once

#include <memory>

class QApplication;

namespace quorvane {

/// The program with its window, on the host of the platform. Main thread.
class QuorvaneApp {
public:
    /// Ends the process with status 2 where there is no display.
    QuorvaneApp(int& argumentCount, char** arguments);
    ~QuorvaneApp();

    /// Until its user quits.
    /// @return the status of the process
    int run();

private:
    std::unique_ptr<QApplication> m_application;
};

} // namespace quorvane
