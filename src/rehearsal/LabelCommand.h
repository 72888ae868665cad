#pragma once

#include <QString>

namespace quorvane {

/// Puts a label on one picture, as it would stand on a display of that size, and writes it as a JPEG file. No Mac is
/// needed for it. Paths are the host's.
/// @param size  "3024x1964", in pixels
/// @return false, with a line on the error stream, when the file can't be made. Throws UnusableInput for a size or a
///         picture that can't be used.
bool labelPicture(const QString& image, const QString& outFile, const QString& name, const QString& size);

} // namespace quorvane
