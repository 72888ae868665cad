#pragma once

#include "startup/items/LoginItem.h"

#include <QString>

namespace quorvane {

// What System Events is asked about login items. It compares texts without regard to case.

/// Prints a line "{name}|{path}|{hidden}" for each login item, or "ERROR|" and a message.
QString readLoginItemsScript();
/// Does nothing; fails where the program may not talk to System Events.
QString systemEventsProbeScript();
/// Prints "ok", "missing" or "error:" and a message.
QString removeLoginItemByNameScript(const QString& name);
/// As by name.
QString removeLoginItemAtPathScript(const QString& path);
/// Prints "ok", "exists" or "error:" and a message.
QString addLoginItemScript(const QString& path, bool hidden);

/// Reads what the reading script printed. A line with fewer than three fields is dropped; a "|" in a name shifts the
/// fields of its line. Output of which no line is an item tells nothing, nor does no output at all: the tool ends even an
/// empty reply with a line end.
LoginItemList parsedLoginItems(const QString& output);

/// Of a name that holds a "|" or a line end, which no field of the list can show: what the output shows from it on, to the
/// end of its line; empty when it doesn't, and for any other name.
QString shownLine(const LoginItemList& list, const QString& name);

} // namespace quorvane
