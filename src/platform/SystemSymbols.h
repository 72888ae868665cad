#pragma once

#include <QImage>

class QString;

// The symbols that come with the system, by its own names for them. Main thread.
namespace quorvane {

/// False for a name that this version of the system doesn't have.
bool hasSystemSymbol(const QString& name);

/// Black on nothing, in ARGB32_Premultiplied, square: the symbol in its own proportions, centred, as large as fits. Null for a
/// name that this version of the system doesn't have.
/// @param side  in pixels, at least 1
QImage systemSymbolPicture(const QString& name, int side);

} // namespace quorvane
