#pragma once

#include <QByteArray>
#include <QString>

#include <optional>

namespace quorvane {

class FileManager;

/// Writes a file that its user has chosen, and reads it again. @return what went wrong; none where it holds what was written
std::optional<QString> problemOfExporting(FileManager& files, const QString& path, const QByteArray& bytes);

} // namespace quorvane
