#include "simulator/tools/FileOperands.h"

#include "simulator/MacPaths.h"

#include <optional>

namespace macsim {

namespace {

/// None where the line asks for the usage.
std::optional<FileOperands> operandsOf(const ToolContext& context, const ToolOptions& options) {
    FileOperands operands{options.operands, {}, false};
    if (operands.sources.size() < 2) {
        return std::nullopt;
    }
    operands.target = operands.sources.takeLast();
    operands.isIntoFolder = context.volume.isFolder(context.absolutePath(operands.target));
    return operands.isIntoFolder || operands.sources.size() == 1 ? std::optional(operands) : std::nullopt;
}

} // namespace

int runOnFiles(ToolContext& context, const OptionRules& rules, FileAction& action) {
    const ToolOptions options = parseOptions(context.arguments, rules.letters);
    if (const std::optional<int> refused = refuseOptions(context, options, rules)) {
        return *refused;
    }
    const std::optional<FileOperands> operands = operandsOf(context, options);
    return operands ? action(context, options, *operands) : refuseWithUsage(context, rules);
}

QString placeInFolder(const QString& source, const QString& folder) {
    return pathInFolder(folder, lastPathComponent(withoutFinalSlashes(source)));
}

} // namespace macsim
