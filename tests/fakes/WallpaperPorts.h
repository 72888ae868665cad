#pragma once

#include "platform/Host.h"
#include "wallpaper/WallpaperProfileOverlay.h"

namespace quorvane {

inline WallpaperPorts wallpaperPorts(const Host& host) {
    return {host.files, host.machine, host.propertyLists, host.displays, host.defaults, host.notifications};
}

} // namespace quorvane
