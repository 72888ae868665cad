#include "rehearsal/Arguments.h"

#include "rehearsal/Commands.h"

#include <algorithm>
#include <array>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

QString takeValue(QStringList& list, const QString& option) {
    if (list.isEmpty() || list.first().isEmpty()) {
        throw UnusableInput(option + u": a value is missing"_s);
    }
    return list.takeFirst();
}

macsim::Authorization authorizationFrom(const QString& text) {
    const auto authorization = macsim::authorizationNamed(text.toStdString());
    if (!authorization) {
        throw UnusableInput(u"--authorize: allow, deny or cancel, not "_s + text);
    }
    return *authorization;
}

/// What an option of the command's own switches on; null when the command has no such option.
bool* switchOf(Arguments& arguments, const QString& option) {
    struct Switch {
        QStringView command;
        QStringView option;
        bool* value;
    };
    const std::array<Switch, 11> switches{{{u"shell", u"--root", &arguments.asRoot},
                                           {u"apply", u"--replace", &arguments.replaces},
                                           {u"overlay", u"--off", &arguments.withoutOverlay},
                                           {u"snapshot", u"--master", &arguments.asMaster},
                                           {u"maintenance", u"--caches", &arguments.maintenance.clearCache},
                                           {u"maintenance", u"--trash", &arguments.maintenance.cleanTrash},
                                           {u"maintenance", u"--downloads", &arguments.maintenance.purgeDownloads},
                                           {u"network", u"--flush", &arguments.network.flushDNS},
                                           {u"network", u"--reset", &arguments.network.resetConfig},
                                           {u"network", u"--disable", &arguments.network.disableAll},
                                           {u"network", u"--enable", &arguments.network.enableAll}}};
    const auto found = std::find_if(switches.begin(), switches.end(), [&](const Switch& each) {
        return each.command == arguments.command && each.option == option;
    });
    return found == switches.end() ? nullptr : found->value;
}

/// Before the command there are the program's options, behind it these and the command's own.
void takeOptions(QStringList& list, Arguments& arguments) {
    while (!list.isEmpty() && list.first().startsWith(u"--"_s)) {
        const QString option = list.takeFirst();
        if (bool* const value = switchOf(arguments, option)) {
            *value = true;
        } else if (option == u"--mac"_s) {
            arguments.macFolder = takeValue(list, option);
        } else if (option == u"--authorize"_s) {
            arguments.authorization = authorizationFrom(takeValue(list, option));
        } else if (option == u"--faults"_s) {
            arguments.faultsFile = takeValue(list, option);
        } else if (option == u"--journal"_s) {
            arguments.journalFile = takeValue(list, option);
        } else if (option == u"--json"_s) {
            arguments.json = true;
        } else {
            throw UnusableInput(u"unknown option: "_s + option);
        }
    }
}

} // namespace

Arguments parsedArguments(const QStringList& list) {
    QStringList rest = list;
    Arguments arguments;
    takeOptions(rest, arguments);
    if (rest.isEmpty()) {
        throw UnusableInput(u"a command is missing; --help tells of them"_s);
    }
    arguments.command = rest.takeFirst();
    const RehearsalCommand& command = commandNamed(arguments.command);
    takeOptions(rest, arguments);
    while (arguments.operands.size() < command.mostOperands && !rest.isEmpty()) {
        arguments.operands.append(rest.takeFirst());
        takeOptions(rest, arguments);
    }
    if (arguments.operands.size() < command.fewestOperands) {
        throw UnusableInput(arguments.command + u": an operand is missing"_s);
    }
    if (!rest.isEmpty()) {
        throw UnusableInput(arguments.command + u": superfluous argument: "_s + rest.first());
    }
    if (arguments.command == u"new"_s && arguments.macFolder.isEmpty()) {
        throw UnusableInput(u"new: --mac says where to make the Mac"_s);
    }
    if (arguments.command == u"overlay"_s && arguments.withoutOverlay != arguments.operands.isEmpty()) {
        throw UnusableInput(u"overlay: either a name or --off"_s);
    }
    return arguments;
}

} // namespace quorvane
