#pragma once

#include <QString>

namespace macsim {

/// Who acts on the simulated Mac: its one user, or root. Root is not above System Integrity Protection.
enum class Actor { User, Root };

/// The facts of one simulated Mac that stay the same while it exists.
struct Machine {
    QString userName = QStringLiteral("alex");
    int userId = 501;
    QString computerName = QStringLiteral("MacBook");
    QString hardwareUuid =
        QStringLiteral("00000000-0000-1000-8000-000000000000"); ///< the computer's own; names the per-host preferences
    QString systemVersion = QStringLiteral("14.7");             ///< "14.7", "26.1"
    QString model = QStringLiteral("MacBookPro");
    bool caseSensitiveVolume = false;              ///< a Mac's volume usually ignores case, and keeps it
    QString password = QStringLiteral("quorvane"); ///< of its user, who is an administrator; no tool prints it
};

/// The folder of the user's own temporary and cache folders: "/private/var/folders/3d/…". Nobody else writes there.
QString userTemporaryFolder(const Machine& machine);

} // namespace macsim
