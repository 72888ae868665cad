#pragma once

#include "simulator/Json.h"

#include <QString>
#include <QStringList>

namespace macsim {

// A Mac to simulate is described by one JSON object:
//
//     "machine"      which machine it is; see machineFromJson. Its "password" is what its user types when a script asks
//                    for administrator rights; nobody's real one belongs there
//     "preferences"  {"user" | "root": {"com.apple.dock": {"autohide": true}, …},
//                     "userCurrentHost": {…},                       per-host preferences of the user
//                     "files": {"/Library/Preferences/com.apple.TimeMachine": {…}},
//                     "managed" | "managedUser": {…}}               what an organization has decided for this Mac, for its user
//                    JSON's types become those of property lists; see propertyListFromJson
//     "folders"      ["/Users/alex/Music/Ableton", …]
//     "files"        [{"path": "/…", "text": "…"}, {"path": "/…", "base64": "…"},
//                     {"path": "/…", "propertyList": {…}, "format": "xml" | "binary"}]
//     "links"        [{"path": "/…", "target": "/…"}]
//     "ownedByRoot"  ["/Applications/Live.app", …]                 these files, and folders with all that is in them, are
//                    root's; what isn't named belongs to whom its place says (see Volume)
//
// Every other key is a subject of the Mac's state and is kept as it stands: "power", "spotlight", "timeMachine",
// "launchd", "processes", "permissions", "loginItems", "cloud", … Each is described where it is used. "//" holds a remark.
//
// What applications registered from their bundles is told by its records alone (BackgroundTasks.h); launchd has loaded it,
// as far as it would start (StartupServices.h). Of plists in the launch folders those run that "launchd" tells of.

/// Reads a description. Throws std::runtime_error that names the file and what is wrong.
Json macDescriptionFromFile(const QString& hostPath);

/// Makes the Mac of a description in a folder of the host, which must be missing or empty.
/// @param commands  where the Mac's commands stand: "/usr/bin/defaults"
/// @param program   the program on the host that is every command
/// Throws std::runtime_error; what was made until then is removed.
void createMac(const QString& hostFolder, const Json& description, const QStringList& commands, const QString& program);

} // namespace macsim
