#pragma once

namespace macsim {

struct ToolContext;

/// tmutil: status, destinationinfo, enable, disable, stopbackup.
///
/// Subject "timeMachine":
///
///     {"running": false, "stopping": false, "phase": "Copying", "percent": "0.25",
///      "destination": {"name": "Backup", "kind": "Local", "mountPoint": "/Volumes/Backup", "id": "5B…"}}
///
/// "phase" and "percent" tell of a running backup; no "destination", or null, is a Mac without one. All are
/// optional. Whether backups are automatic is the boolean AutoBackup in
/// /Library/Preferences/com.apple.TimeMachine.plist, which nobody reads without Full Disk Access. enable and disable need
/// root and, root or not, Full Disk Access (subject "permissions"); status and destinationinfo need no right.
int runTmutil(ToolContext& context);

} // namespace macsim
