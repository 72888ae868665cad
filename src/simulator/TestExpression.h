#pragma once

#include <QByteArray>
#include <QStringList>

namespace macsim {

struct ToolContext;

/// Judges an expression of test(1): what stands between "[" and "]".
///
/// Up to four words are read by their number, as POSIX has it; longer ones as -o below -a below ! below a
/// primary or a group in parentheses. Paths are taken from the working folder of the context and judged by
/// its actor's rights.
/// @return 0 true, 1 false, 2 an expression that can't be read or asks what isn't simulated: then `error` has
/// the
///         message, without the tool's name and with its line end
int evaluateTest(const QStringList& arguments, const ToolContext& context, QByteArray& error);

} // namespace macsim
