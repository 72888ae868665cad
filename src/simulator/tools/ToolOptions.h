#pragma once

#include "simulator/Tool.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <vector>

namespace macsim {

/// What a tool of the BSD family makes of its command line, as getopt reads it: options stand before the
/// operands, may be written together (-rf), take their value from the same word or the next, and end at "--".
struct ToolOptions {
    struct Given {
        QChar letter;
        QString value;
    };
    std::vector<Given> given; ///< in the order of the line
    QStringList operands;
    QString complaint; ///< "illegal option -- q" or "option requires an argument -- m"; empty when all is well

    bool has(QChar letter) const;
    /// The value of the last option of this letter.
    QString value(QChar letter) const;
};

/// How a tool's options look.
struct OptionRules {
    QStringView letters;   ///< all letters that the real tool knows, ":" behind the ones with a value: "fm:p"
    QStringView simulated; ///< the letters that are simulated
    QStringView usage;     ///< printed on the error stream behind a complaint, lines ended
    int usageStatus = 64;
};

ToolOptions parseOptions(const QStringList& arguments, QStringView letters);

/// Refuses a line that the real tool refuses, and one that uses what isn't simulated.
/// @return the exit status; none when the line can be carried out
std::optional<int> refuseOptions(ToolContext& context, const ToolOptions& options, const OptionRules& rules);

/// The base name under which a tool was started.
QString toolName(const ToolContext& context);

/// Prints a tool's usage on its error stream. @return the status given
int refuseWithUsage(ToolContext& context, const OptionRules& rules);

/// Ends a tool at something that exists on a Mac and isn't simulated. No Mac prints this text or has this
/// status, so it can't be taken for a real outcome.
int notSimulated(ToolContext& context, const QString& what);

} // namespace macsim
