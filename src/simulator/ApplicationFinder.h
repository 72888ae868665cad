#pragma once

#include "simulator/Mac.h"

#include <QString>

#include <optional>
#include <vector>

namespace macsim {

/// An application bundle on the disk.
struct Application {
    QString path; ///< of the bundle: "/Applications/Live.app"
    QString bundleIdentifier;
    QString executable; ///< base name of its program
};

/// What a bundle's Info.plist says; without one the program has the bundle's name. None where there is no
/// folder.
std::optional<Application> readApplication(const Volume& volume, const QString& bundlePath);

/// The folders where macOS keeps applications, in the order in which they are searched. Some may be missing.
QStringList applicationFolders(const Mac& mac);

/// Every application in these folders.
std::vector<Application> installedApplications(const Mac& mac, const Volume& volume);

/// Looks for an application by its name, with or without ".app", where macOS keeps applications.
std::optional<Application> findApplication(const Mac& mac, const Volume& volume, const QString& name);
std::optional<Application> findApplicationByIdentifier(const Mac& mac, const Volume& volume,
                                                       const QString& bundleIdentifier);

} // namespace macsim
