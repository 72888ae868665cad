#pragma once

#include <QByteArray>
#include <QImage>

namespace quorvane {

/// The picture in the bytes of an image file, in its natural size and upright; the first one of a file that holds several.
/// Reads what Qt reads, and HEIC. Null for what can't be read, and for a picture of more than 1 GiB of pixels. Any thread.
QImage decodedPicture(const QByteArray& bytes);

} // namespace quorvane
