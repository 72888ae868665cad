#pragma once

#include "rehearsal/Arguments.h"

namespace quorvane {

/// Puts a label on one picture, as it would stand on a display of that size, and writes it as a JPEG file. No Mac is
/// needed for it. Paths are the host's.
/// @param arguments  with four operands: the picture, the file to make, the name, and the size in pixels: "3024x1964"
/// @return the exit status; there is a line on the error stream when the file can't be made, or when not every letter of the name
///         has a font. Throws UnusableInput for a size
///         or a picture that can't be used.
int labelPicture(const Arguments& arguments);

} // namespace quorvane
