#pragma once

#include <QStringList>

namespace quorvane {

class FileManager;

/// The names in a folder, as it lists them; none where it doesn't exist or can't be listed.
QStringList namesIn(const FileManager& files, const QString& folder);

} // namespace quorvane
