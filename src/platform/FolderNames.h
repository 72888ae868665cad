#pragma once

#include <QString>
#include <QStringList>

namespace quorvane {

class FileManager;

/// The names in a folder, in the order in which the system gives them; none where it is missing or can't be listed.
QStringList namesIn(const FileManager& files, const QString& folder);

/// The path itself where nothing stands at it; else the first of "{path}.1", "{path}.2" and so on where nothing does.
QString freePath(const FileManager& files, const QString& path);

} // namespace quorvane
