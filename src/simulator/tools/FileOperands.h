#pragma once

#include "simulator/tools/ToolOptions.h"

#include <QString>
#include <QStringList>

namespace macsim {

/// What cp and mv are given: "source target", or "source ... folder".
struct FileOperands {
    QStringList sources;
    QString target;
    bool isIntoFolder = false;
};

/// What a tool does with its operands. @return the exit status
using FileAction = int(ToolContext& context, const ToolOptions& options, const FileOperands& operands);

/// Reads the line of such a tool and has it carried out. It is answered with the usage when there is no target, or when
/// several sources are to become one file.
int runOnFiles(ToolContext& context, const OptionRules& rules, FileAction& action);

/// Where a source goes in a folder: under its own name.
QString placeInFolder(const QString& source, const QString& folder);

} // namespace macsim
