#pragma once

#include <QImage>

class QString;

// What a platform draws symbols from: a Mac has them itself, elsewhere a set of SVG files stands for them.
namespace quorvane {

/// The shape of a symbol, black on nothing, in ARGB32_Premultiplied: square, centred, as large as fits. Null for a name that
/// the platform doesn't have. Main thread; whoever asks keeps it.
/// @param side  in pixels, at least 1
QImage symbolShape(const QString& name, int side);

/// True for a name that has a shape. Quicker than to draw it.
bool hasSymbolShape(const QString& name);

} // namespace quorvane
