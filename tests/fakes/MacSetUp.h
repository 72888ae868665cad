#pragma once

#include "simulator/Mac.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace macsim {

/// Writes a file anywhere on the Mac's disk, as an installer does: neither the sealed system nor App Management
/// stands against it. It belongs to whom its place says.
inline void installFile(const Mac& mac, const QString& path, const QByteArray& bytes) {
    QFile file(mac.hostFolder() + path);
    ASSERT_TRUE(QDir().mkpath(QFileInfo(file.fileName()).path()));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write(bytes);
}

/// Switches one of the permissions of the program on this Mac: "appManagement", "fullDiskAccess", "downloads".
inline void setPermission(const Mac& mac, const char* name, bool isGranted) {
    mac.state().update("permissions", [&](Json& permissions) { permissions[name] = isGranted; });
}

} // namespace macsim
