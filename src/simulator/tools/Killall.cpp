#include "simulator/tools/Killall.h"

#include "simulator/LaunchdState.h"
#include "simulator/tools/ToolOptions.h"

#include <QRegularExpression>

#include <array>
#include <optional>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kKillallUsage = u"usage: killall [-delmsqvz] [-help] [-I]\n"
                                      u"               [-u user] [-t tty] [-c cmd] [-SIGNAL] [cmd]...\n"
                                      u"At least one option or argument to specify processes must be given.\n";

/// The signals of macOS; the place in the list is the number.
constexpr std::array<QStringView, 32> kSignals{
    u"0",    u"HUP", u"INT",  u"QUIT", u"ILL",    u"TRAP", u"ABRT",  u"EMT",  u"FPE",  u"KILL", u"BUS",
    u"SEGV", u"SYS", u"PIPE", u"ALRM", u"TERM",   u"URG",  u"STOP",  u"TSTP", u"CONT", u"CHLD", u"TTIN",
    u"TTOU", u"IO",  u"XCPU", u"XFSZ", u"VTALRM", u"PROF", u"WINCH", u"INFO", u"USR1", u"USR2"};

struct Request {
    int signal = 15;
    bool showsOnly = false;
    bool isQuiet = false;
    bool namesAreExpressions = false;
    QStringList names;
};

std::optional<int> signalNumber(const QString& word) {
    bool isNumber = false;
    const int number = word.toInt(&isNumber);
    if (isNumber) {
        return number >= 0 && number < int(kSignals.size()) ? std::optional(number) : std::nullopt;
    }
    const QString upper = word.toUpper();
    const QString name = upper.startsWith(u"SIG"_s) ? upper.mid(3) : upper;
    for (size_t at = 1; at < kSignals.size(); ++at) {
        if (name == kSignals[at]) {
            return static_cast<int>(at);
        }
    }
    return std::nullopt;
}

/// "TERM".
QString signalName(int number) {
    return kSignals[static_cast<size_t>(number)].toString();
}

int refuseSignal(ToolContext& context, const QString& word) {
    context.complain(u"killall: unknown signal "_s + word + u"; valid signals:\n"_s);
    for (size_t at = 1; at < kSignals.size(); ++at) {
        const bool endsLine = at % 16 == 15 || at + 1 == kSignals.size();
        context.complain(kSignals[at].toString().toLower() + (endsLine ? u"\n"_s : u" "_s));
    }
    return 1;
}

int refuseLine(ToolContext& context) {
    context.complain(kKillallUsage.toString());
    return 1;
}

/// Reads one word that begins with "-": letters that can stand together, or a signal.
std::optional<int> readOption(ToolContext& context, const QString& word, Request& request) {
    const QString letters = word.mid(1);
    static const QRegularExpression kFlags(u"^[sqm]+$"_s);
    if (kFlags.match(letters).hasMatch()) {
        request.showsOnly = request.showsOnly || letters.contains(u's');
        request.isQuiet = request.isQuiet || letters.contains(u'q');
        request.namesAreExpressions = request.namesAreExpressions || letters.contains(u'm');
        return std::nullopt;
    }
    if (const auto number = signalNumber(letters)) {
        request.signal = *number;
        return std::nullopt;
    }
    static const QRegularExpression kOthers(u"^([delvzutcI]|help)$"_s);
    return kOthers.match(letters).hasMatch() ? notSimulated(context, word) : refuseSignal(context, letters);
}

bool isNamed(const Process& process, const QString& name, bool isExpression) {
    return isExpression ? QRegularExpression(name).match(process.name).hasMatch() : process.name == name;
}

std::vector<Process> matches(const ToolContext& context, const Request& request) {
    std::vector<Process> found;
    const std::vector<Process> processes = ProcessTable(context.mac.state()).list();
    for (const Process& process : processes) {
        if (!context.isRoot() && process.userId != context.mac.machine().userId) {
            continue;
        }
        for (const QString& name : request.names) {
            if (isNamed(process, name, request.namesAreExpressions)) {
                found.push_back(process);
                break;
            }
        }
    }
    return found;
}

/// Signals that a process survives: the ones without effect, and a hang-up where it is a request to start
/// over inside.
bool survives(const Process& process, int signal) {
    static const QStringList kHarmless{u"0"_s, u"URG"_s, u"STOP"_s, u"CONT"_s, u"CHLD"_s, u"WINCH"_s, u"INFO"_s};
    const QString name = signalName(signal);
    return kHarmless.contains(name) || (name == u"HUP"_s && process.name == u"mDNSResponder"_s);
}

/// @return false when the system doesn't permit it
bool send(ToolContext& context, const Process& process, int signal) {
    if (process.isProtected) {
        context.complain(u"killall: warning: kill -"_s + signalName(signal).toLower() + u' ' +
                         QString::number(process.pid) + u": Operation not permitted\n"_s);
        return false;
    }
    if (!survives(process, signal)) {
        LaunchdState(context.mac).endProcess(process, signal);
    }
    return true;
}

int handle(ToolContext& context, const Request& request) {
    const std::vector<Process> found = matches(context, request);
    if (found.empty() && !request.isQuiet) {
        context.complain(context.isRoot() ? u"No matching processes were found\n"_s
                                          : u"No matching processes belonging to you were found\n"_s);
    }
    bool succeeded = !found.empty();
    for (const Process& process : found) {
        if (request.showsOnly) {
            context.print(u"kill -"_s + signalName(request.signal) + u' ' + QString::number(process.pid) + u'\n');
        } else {
            succeeded = send(context, process, request.signal) && succeeded;
        }
    }
    return succeeded ? 0 : 1;
}

} // namespace

int runKillall(ToolContext& context) {
    Request request;
    QStringList words = context.arguments.mid(1);
    while (!words.isEmpty() && words.first().startsWith(u'-') && words.first().size() > 1) {
        const QString word = words.takeFirst();
        if (word == u"--"_s) {
            break;
        }
        if (const auto status = readOption(context, word, request)) {
            return *status;
        }
    }
    request.names = words;
    return words.isEmpty() ? refuseLine(context) : handle(context, request);
}

} // namespace macsim
