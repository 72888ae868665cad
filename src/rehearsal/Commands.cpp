#include "rehearsal/Commands.h"

#include "rehearsal/LabelCommand.h"
#include "rehearsal/MacCommands.h"
#include "rehearsal/ManualCommand.h"

#include <algorithm>
#include <array>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const std::array<RehearsalCommand, 26> kCommands{{
    {u"new", u"[MAC.json]", 0, 1, &makeNewMac, u"makes the simulated Mac in FOLDER; without a description a fresh one"},
    {u"shell", u"[--root] LINE", 1, 1, &runShell, u"runs a line in the simulated Mac's shell"},
    {u"discover", u"", 0, 0, &Rehearsal::discover, u"what runs when the user logs in"},
    {u"preview", u"PROFILE.json", 1, 1, &Rehearsal::preview, u"what an apply would change; changes nothing"},
    {u"apply", u"PROFILE.json [--replace]", 1, 1, &Rehearsal::apply,
     u"saves the profile on the Mac, shows the preview, applies it under one prompt and verifies it;\n"
     "another profile of that name is replaced only with --replace"},
    {u"tweaks", u"PROFILE.json", 1, 1, &Rehearsal::applyTweaks,
     u"applies the selected tweaks and leaves all others as they are"},
    {u"startup", u"PROFILE.json", 1, 1, &Rehearsal::applyStartup,
     u"applies what the profile says of startup, and verifies it"},
    {u"verify", u"PROFILE.json", 1, 1, &Rehearsal::verify, u"reads the system back without applying anything"},
    {u"snapshot", u"[LABEL] [--master]", 0, 1, &Rehearsal::saveSnapshot,
     u"saves this Mac's own settings as what the ways back restore; with --master also for good"},
    {u"revert", u"", 0, 0, &Rehearsal::undoTweaks,
     u"takes the program's applications out of the login items, and the tweaks back to the saved\n"
     "settings, or to the standard ones where none were saved"},
    {u"reinstate", u"", 0, 0, &Rehearsal::reinstate,
     u"the tweaks back likewise, and with saved settings also login items, network and launch items"},
    {u"default", u"", 0, 0, &Rehearsal::restoreDefault, u"as revert, makes Default the active profile, and scans"},
    {u"resume", u"", 0, 0, &Rehearsal::resume, u"finishes an apply or a way back that was interrupted, and scans"},
    {u"rollback", u"", 0, 0, &Rehearsal::rollBack,
     u"back to what was there before an apply that was interrupted; a way back is finished"},
    {u"scan", u"", 0, 0, &Rehearsal::scan, u"which configuration this Mac is in: a saved profile, Default or none"},
    {u"maintenance", u"[--caches] [--trash] [--downloads]", 0, 0, &Rehearsal::maintain,
     u"clears the caches, empties the Trash, purges the Downloads folder"},
    {u"network", u"[--flush] [--reset] [--disable] [--enable]", 0, 0, &Rehearsal::operateNetwork,
     u"flushes the caches of names and addresses, resets the name servers, switches all\n"
     "network services off or on"},
    {u"label", u"IMAGE OUT.jpg NAME WIDTHxHEIGHT", 4, 4, &labelPicture,
     u"puts the wallpaper label on one picture, for a display of that many pixels; touches no Mac"},
    {u"overlay", u"NAME | --off", 0, 1, &Rehearsal::changeOverlay,
     u"shows a profile's name on the simulated displays' desktop pictures, or takes it away"},
    {u"backup", u"", 0, 0, &Rehearsal::backUpProfiles,
     u"saves all profiles in the simulated iCloud Drive, the Default profile in two copies"},
    {u"backups", u"", 0, 0, &Rehearsal::listBackups,
     u"lists what was saved there: the name, what it is, what it holds"},
    {u"restore", u"NAME", 1, 1, &Rehearsal::restoreBackup,
     u"merges a backup's profiles into the Mac's own; NAME is as \"backups\" lists it"},
    {u"logs", u"[NUMBER]", 0, 1, &Rehearsal::showLogs,
     u"lists the runs whose logs are kept on the Mac, the newest first, or prints one of them"},
    {u"baselines", u"", 0, 0, &Rehearsal::listBaselines,
     u"lists what the ways back could go back to, with what differs from now"},
    {u"use-baseline", u"N", 1, 1, &Rehearsal::useBaseline,
     u"has the ways back go back to that one; N is as \"baselines\" lists it, 0 the latest"},
    {u"manual", u"FILE.md", 1, 1, &printManual,
     u"prints the page that the manual's converter makes of a file; touches no Mac"},
}};

/// Beside the command where it is short enough, else beneath it.
QString helpOf(const RehearsalCommand& command) {
    constexpr qsizetype kColumn = 34;
    const QString indent(kColumn, u' ');
    const QString usage = u"  "_s + QString(command.name.toString() + u' ' + command.operands.toString()).trimmed();
    const QString head = usage.size() < kColumn ? usage.leftJustified(kColumn) : usage + u'\n' + indent;
    return head + command.help.toString().replace(u'\n', u'\n' + indent) + u'\n';
}

} // namespace

std::span<const RehearsalCommand> rehearsalCommands() {
    return kCommands;
}

const RehearsalCommand& commandNamed(const QString& name) {
    const auto found = std::find_if(kCommands.begin(), kCommands.end(),
                                    [&name](const RehearsalCommand& command) { return command.name == name; });
    if (found == kCommands.end()) {
        throw UnusableInput(u"unknown command: "_s + name);
    }
    return *found;
}

QString usageText() {
    QString commands;
    for (const RehearsalCommand& command : kCommands) {
        commands += helpOf(command);
    }
    return uR"(usage: quorvane-rehearsal [OPTIONS] COMMAND

Runs Quorvane's flows on a simulated Mac: a folder that behaves like a Mac's disk. They touch nothing outside of it.

Options
  --mac FOLDER                    the simulated Mac; without it a temporary one, which is removed at the end
  --authorize allow|deny|cancel   the answer to every prompt for administrator rights; allow if not given
  --faults FILE                   what goes wrong on purpose
  --journal FILE                  records every command that the simulated Mac runs, one JSON object per line
  --json                          one JSON object instead of the log

Commands
)"_s + commands +
           uR"(
Options may stand behind the command, too.
Exit status: 0 done, and verified where the command verifies (of a scan: something fits); 1 not; 2 unusable arguments or files.
)"_s;
}

} // namespace quorvane
