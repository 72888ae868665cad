#pragma once

#include <QString>

namespace quorvane {

// A text from a file or a tool as it may stand among the program's own words: nobody's name may pass for them.

/// The text on one line: line ends, control characters and those that turn the direction of writing are blanks.
QString onOneLine(const QString& text);

/// The same for a name, which is also shortened in the middle ("…") where it is longer than 80 characters.
QString nameOnOneLine(const QString& name);

} // namespace quorvane
