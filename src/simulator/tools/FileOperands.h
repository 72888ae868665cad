#pragma once

#include "simulator/tools/ToolOptions.h"

#include <QString>
#include <QStringList>

#include <optional>

namespace macsim {

/// What cp and mv are given: "source target", or "source ... folder".
struct FileOperands {
    QStringList sources;
    QString target;
    bool isIntoFolder = false;
};

/// None for a line that the tools answer with their usage: there is no target, or several sources are to become one file.
std::optional<FileOperands> fileOperands(const ToolContext& context, const ToolOptions& options);

/// Where a source goes in a folder: under its own name.
QString placeInFolder(const QString& source, const QString& folder);

} // namespace macsim
