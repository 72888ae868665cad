#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

class FileManager;

/// A helper that has been copied into the quarantine goes by this name in its application until it is removed.
inline const QString kLeftoverEnding = QStringLiteral(".removed");

/// True for the words of an error, of the program's or of a tool's, by which the system keeps an application from being changed by
/// others (EPERM). Rights that are missing (EACCES) are told otherwise.
bool isKeptFromOthers(const QString& error);

/// The names of what became of leftovers.
struct SettledLeftovers {
    QStringList removed;
    QStringList putBack;     ///< as they are called again
    bool wasRefused = false; ///< the system keeps the application from being changed
};

/// Sees to what a run that was killed has left in an application. It goes where the quarantine has all of it; where it has
/// only a part, as after a power cut, it comes back to its place if that is free. What no copy in the quarantine stands for is
/// none of the program's, and stays. A failure leaves the rest as it is.
SettledLeftovers settleQuarantineLeftovers(const QString& application, const QString& quarantineFolder,
                                           FileManager& files);

} // namespace quorvane
