#include "simulator/tools/Perl.h"

#include "simulator/tools/ToolOptions.h"

namespace macsim {

using namespace Qt::StringLiterals;

int runPerl(ToolContext& context) {
    const QStringList words = context.arguments.mid(1);
    bool isNumber = false;
    const int seconds = words.value(2).toInt(&isNumber);
    const bool limits =
        words.mid(0, 2) == QStringList{u"-e"_s, u"alarm shift; exec @ARGV"_s} && isNumber && seconds > 0;
    if (!limits || words.size() < 4) {
        return notSimulated(context, words.join(u' '));
    }
    context.arguments = words.mid(3);
    context.alarm = std::chrono::seconds(seconds);
    const CommandLookUp command = findCommand(context.arguments.first(), context);
    return command.outcome == CommandLookUp::Outcome::Found ? runCommand(command, context) : 0;
}

} // namespace macsim
