#include "simulator/Tool.h"

#include "simulator/Faults.h"
#include "simulator/Journal.h"
#include "simulator/MacPaths.h"

#include <QElapsedTimer>
#include <QThread>

#include <csignal>
#include <unistd.h>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

CommandLookUp lookUpAt(const QString& path, const ToolContext& context) {
    if (context.volume.kind(path) == Volume::Kind::Missing && !context.volume.exists(path)) {
        return {};
    }
    const QString canonical = context.volume.canonicalPath(path);
    const auto tool = context.tools.constFind(canonical);
    if (context.volume.kind(canonical) != Volume::Kind::Tool || tool == context.tools.constEnd()) {
        return {CommandLookUp::Outcome::NotExecutable, canonical, nullptr};
    }
    return {CommandLookUp::Outcome::Found, canonical, *tool};
}

constexpr int kEndedByAlarm = 128 + SIGALRM; // as a shell tells of it

int runTool(const CommandLookUp& command, ToolContext& context) {
    try {
        return command.tool(context);
    } catch (const FileError& error) {
        const QString name = lastPathComponent(command.path);
        context.complain(name + u": "_s + error.path() + u": "_s + error.reason() + u'\n');
        return 1;
    }
}

int runWithFault(const Fault& fault, const CommandLookUp& command, ToolContext& context) {
    if (context.alarm && fault.delay >= *context.alarm) {
        return kEndedByAlarm;
    }
    QThread::msleep(static_cast<unsigned long>(fault.delay.count()));
    if (fault.hangs) {
        return hang(context);
    }
    if (fault.signal != 0) {
        ::raise(fault.signal);
    }
    if (fault.status) {
        context.output += fault.output;
        context.error += fault.error;
        return *fault.status;
    }
    if (fault.diskFull) {
        context.volume = context.volume.full();
    }
    return runTool(command, context);
}

} // namespace

QString ToolContext::absolutePath(const QString& path) const {
    return path.startsWith(u'/') || path.isEmpty() ? path : workingFolder + u'/' + path;
}

CommandLookUp findCommand(const QString& name, const ToolContext& context) {
    if (name.contains(u'/')) {
        return lookUpAt(context.absolutePath(name), context);
    }
    CommandLookUp best;
    const QStringList folders = context.environment.value(u"PATH"_s).split(u':', Qt::SkipEmptyParts);
    for (const QString& folder : folders) {
        const CommandLookUp found = name.isEmpty() ? CommandLookUp{} : lookUpAt(folder + u'/' + name, context);
        if (found.outcome == CommandLookUp::Outcome::Found) {
            return found;
        }
        if (found.outcome != CommandLookUp::Outcome::Missing) {
            best = found;
        }
    }
    return best;
}

int runCommand(const CommandLookUp& command, ToolContext& context) {
    const QStringList arguments = context.arguments;
    QElapsedTimer timer;
    timer.start();
    const Fault* fault = context.faults ? context.faults->find(command.path, arguments.mid(1)) : nullptr;
    const int status = fault ? runWithFault(*fault, command, context) : runTool(command, context);
    if (context.journal) {
        const std::chrono::duration<double, std::milli> duration(std::chrono::nanoseconds(timer.nsecsElapsed()));
        context.journal->recordCommand(context.actor(), QStringList{command.path} + arguments.mid(1), status, duration);
    }
    return status;
}

int hang(const ToolContext& context) {
    while (!context.alarm) {
        ::pause();
    }
    return kEndedByAlarm;
}

} // namespace macsim
