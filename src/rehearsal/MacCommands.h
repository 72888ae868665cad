#pragma once

#include "platform/simulated/SimulatedHost.h"
#include "rehearsal/Arguments.h"

#include <QString>
#include <QTemporaryDir>

#include <memory>

namespace quorvane {

// What the rehearsal does with a simulated Mac itself. Paths are the host's.

SimulatedHostOptions hostOptions(const Arguments& arguments);

/// The Mac that a command runs on: the one that was named, or a fresh one that goes at the end.
class ChosenMac {
public:
    /// Throws UnusableInput.
    explicit ChosenMac(const Arguments& arguments);
    const QString& folder() const { return m_folder; }

private:
    QString m_folder;
    std::unique_ptr<QTemporaryDir> m_temporary;
};

/// Throws UnusableInput. @return the exit status
int makeNewMac(const Arguments& arguments);
/// Runs a line in the Mac's shell, on the terminal's own streams. @return its exit status
int runShell(const Arguments& arguments);

} // namespace quorvane
