#include "rehearsal/Arguments.h"

#include <algorithm>
#include <array>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

struct Command {
    QStringView name;
    qsizetype fewestOperands;
    qsizetype mostOperands;
};

constexpr std::array<Command, 20> kCommands{
    {{u"new", 0, 1},       {u"shell", 1, 1},    {u"preview", 1, 1}, {u"apply", 1, 1},       {u"tweaks", 1, 1},
     {u"startup", 1, 1},   {u"discover", 0, 0}, {u"default", 0, 0}, {u"snapshot", 0, 1},    {u"revert", 0, 0},
     {u"reinstate", 0, 0}, {u"scan", 0, 0},     {u"verify", 1, 1},  {u"maintenance", 0, 0}, {u"network", 0, 0},
     {u"label", 4, 4},     {u"overlay", 0, 1},  {u"backup", 0, 0},  {u"backups", 0, 0},     {u"restore", 1, 1}}};

const Command& commandNamed(const QString& name) {
    for (const Command& command : kCommands) {
        if (command.name == name) {
            return command;
        }
    }
    throw UnusableInput(u"unknown command: "_s + name);
}

QString takeValue(QStringList& list, const QString& option) {
    if (list.isEmpty()) {
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
    const std::array<Switch, 10> switches{{{u"shell", u"--root", &arguments.asRoot},
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
    const Command& command = commandNamed(arguments.command);
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

QString usageText() {
    return uR"(usage: quorvane-rehearsal [OPTIONS] COMMAND

Runs Quorvane's flows on a simulated Mac: a folder that behaves like a Mac's disk. They touch nothing outside of it.

Options
  --mac FOLDER                    the simulated Mac; without it a temporary one, which is removed at the end
  --authorize allow|deny|cancel   the answer to every prompt for administrator rights; allow if not given
  --faults FILE                   what goes wrong on purpose
  --journal FILE                  records every command that the simulated Mac runs, one JSON object per line
  --json                          one JSON object instead of the log

Commands
  new [MAC.json]                  makes the simulated Mac in FOLDER; without a description a fresh one
  shell [--root] LINE             runs a line in the simulated Mac's shell
  discover                        what runs when the user logs in
  preview PROFILE.json            what an apply would change; changes nothing
  apply PROFILE.json              saves the profile on the Mac, shows the preview, applies it under one prompt and verifies it
  tweaks PROFILE.json             applies the selected tweaks and leaves all others as they are
  startup PROFILE.json            applies what the profile says of startup, and verifies it
  verify PROFILE.json             reads the system back without applying anything
  snapshot [LABEL] [--master]     saves this Mac's own settings as what the ways back restore; with --master also for good
  revert                          takes the program's applications out of the login items, and the tweaks back to the saved
                                  settings, or to the standard ones where none were saved
  reinstate                       the tweaks back likewise, and with saved settings also login items, network and launch items
  default                         as revert, makes Default the active profile, and scans
  scan                            which configuration this Mac is in: a saved profile, Default or none
  maintenance [--caches] [--trash] [--downloads]
                                  clears the caches, empties the Trash, purges the Downloads folder
  network [--flush] [--reset] [--disable] [--enable]
                                  flushes the caches of names and addresses, resets the name servers, switches all
                                  network services off or on
  label IMAGE OUT.jpg NAME WIDTHxHEIGHT
                                  puts the wallpaper label on one picture, for a display of that many pixels; touches no Mac
  overlay NAME | --off            shows a profile's name on the simulated displays' desktop pictures, or takes it away
  backup                          saves all profiles in the simulated iCloud Drive, the Default profile in two copies
  backups                         lists what was saved there: the name, what it is, what it holds
  restore NAME                    merges a backup's profiles into the Mac's own; NAME is as "backups" lists it

Options may stand behind the command, too.
Exit status: 0 done, and verified where the command verifies (of a scan: something fits); 1 not; 2 unusable arguments or files.
)"_s;
}

} // namespace quorvane
