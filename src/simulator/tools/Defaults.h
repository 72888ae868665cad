#pragma once

namespace macsim {

struct ToolContext;

/// defaults: help, domains, read, read-type, write, rename, delete (also remove, delete-all), with
/// -currentHost and with -host for this machine's own name; export, to the output alone. find, import and -app fail loudly.
/// Status 0, 1 for what could not be done (explained on the error stream in the form of the system log) and 255 for
/// a wrong command line (the usage text, on the output).
///
/// Everyone reads and writes their own preferences: run by root it is root's that change, not the user's.
int runDefaults(ToolContext& context);

} // namespace macsim
