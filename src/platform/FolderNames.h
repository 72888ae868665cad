#pragma once

#include <QStringList>

namespace quorvane {

class FileManager;

/// The names in a folder, in the order in which the system gives them; none where it is missing or can't be listed.
QStringList namesIn(const FileManager& files, const QString& folder);

} // namespace quorvane
