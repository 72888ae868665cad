#include "simulator/tools/FileOperands.h"

#include "simulator/MacPaths.h"

namespace macsim {

std::optional<FileOperands> fileOperands(const ToolContext& context, const ToolOptions& options) {
    FileOperands operands{options.operands, {}, false};
    if (operands.sources.size() < 2) {
        return std::nullopt;
    }
    operands.target = operands.sources.takeLast();
    operands.isIntoFolder = context.volume.isFolder(context.absolutePath(operands.target));
    return operands.isIntoFolder || operands.sources.size() == 1 ? std::optional(operands) : std::nullopt;
}

QString placeInFolder(const QString& source, const QString& folder) {
    return pathInFolder(folder, lastPathComponent(withoutFinalSlashes(source)));
}

} // namespace macsim
