#include "simulator/tools/Sfltool.h"

#include "simulator/BackgroundTaskDump.h"
#include "simulator/Journal.h"
#include "simulator/tools/ToolOptions.h"

#include <algorithm>
#include <unistd.h>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

bool isWedged(const ToolContext& context) {
    const Json state = context.mac.state().read("sfltool");
    return state.is_object() && state.value("hangs", false);
}

/// The dialog in which it would ask for an administrator is nobody's to answer here.
int refuseUser(ToolContext& context) {
    if (context.journal) {
        context.journal->recordDialog(toolName(context));
    }
    const qint64 pid = ::getpid();
    context.complain(u"sfltool["_s + QString::number(pid) + u':' + QString::number(pid * 16) +
                     u"] authorization failed\n"_s);
    return 1;
}

int dumpBackgroundTasks(ToolContext& context) {
    if (!context.isRoot()) {
        return refuseUser(context);
    }
    if (isWedged(context)) {
        return hang(context);
    }
    const std::vector<BackgroundTask> tasks = backgroundTasks(context.mac.state());
    const auto unknown = std::find_if(tasks.begin(), tasks.end(), [](const BackgroundTask& task) {
        return !backgroundTaskTypeBits(task.type).has_value();
    });
    if (unknown != tasks.end()) {
        return notSimulated(context, u"a background task of the type \""_s + unknown->type + u'"');
    }
    context.print(backgroundTaskDump(tasks, context.mac.machine()));
    return 0;
}

} // namespace

int runSfltool(ToolContext& context) {
    const QStringList words = context.arguments.mid(1);
    const bool knowsDumps = context.mac.machine().systemVersion.section(u'.', 0, 0).toInt() >= kFirstDumpingSystem;
    if (words != QStringList{u"dumpbtm"_s} || !knowsDumps) {
        return notSimulated(context, words.isEmpty() ? u"the list of subcommands"_s : words.join(u' '));
    }
    return dumpBackgroundTasks(context);
}

} // namespace macsim
