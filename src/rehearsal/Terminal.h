#pragma once

#include <QString>

namespace quorvane {

// The terminal's two streams. Of a line that holds somebody's name or file the program's words are what the reader takes them
// for: it is one line, without characters that move the cursor or turn the text.

/// Prints a line, and before it the empty ones that it begins with. @return false when nobody reads any more
bool printLine(const QString& line);
/// Prints what a machine reads, as it is. @return false when it couldn't be written
bool printReport(const QByteArray& report);
/// Says on the error stream what went wrong.
void complain(const QString& text);

} // namespace quorvane
