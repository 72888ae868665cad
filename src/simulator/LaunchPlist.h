#pragma once

#include "simulator/Volume.h"

#include <QString>

#include <optional>

namespace macsim {

/// What a launch agent's or daemon's property list says about its job.
struct LaunchPlist {
    QString label;
    QString path; ///< of the property list itself, without links
    QString program;
    bool startsAtLoad = false; ///< RunAtLoad, or KeepAlive which implies it
    bool keepAlive = false;
    bool disabled = false; ///< counts where launchd has no override for the label
};

/// None when the file is missing or unreadable, is no property list, or has no label.
std::optional<LaunchPlist> readLaunchPlist(const Volume& volume, const QString& path);

} // namespace macsim
