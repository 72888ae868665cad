#pragma once

#include <QByteArray>

namespace macsim {

/// libplist 2.2 reads, copies and frees a list by recursion, and it repeats what a binary list refers to
/// twice, so a few hundred bytes can exhaust its stack or the memory. These look at outside bytes before
/// libplist does. Both take linear time and stop at the first excess.

/// XML without its comments and in UTF-8, or empty bytes: where it isn't well formed, is nested too deeply,
/// or has processing instructions or entities of its own, which no property list has.
QByteArray soundXmlPropertyList(const QByteArray& bytes);

/// Whether a binary list's references stay inside it and unfold to a list of reasonable depth and size.
bool isSoundBinaryPropertyList(const QByteArray& bytes);

} // namespace macsim
