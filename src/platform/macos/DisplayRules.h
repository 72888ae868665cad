#pragma once

#include "platform/Display.h"

#include <QList>

namespace quorvane {

/// A display's place on the desktop with the origin at the left above, as everywhere else in the program. AppKit has it at the
/// left below the first screen, and counts upwards.
/// @param frame             in AppKit's points
/// @param firstScreenHeight  of the screen with the menu bar
QRectF frameFromAbove(const QRectF& frame, double firstScreenHeight);

/// Where a display stands among those that are connected now: the one with its number. One without a number is the one that is
/// equal in everything. None for a display that has gone.
std::optional<qsizetype> placeOf(const Display& display, const QList<Display>& connected);

/// How long the longer side of a picture is in pixels, which is how large it is decoded; none for one that has no size, or
/// would need more memory than any picture may.
std::optional<int> decodedSide(double width, double height);

} // namespace quorvane
