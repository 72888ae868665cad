#pragma once

#include <QByteArray>
#include <QStringList>

namespace macsim {

/// What echo prints in a Mac's /bin/sh. It is built to follow the XPG standard: backslash sequences have their
/// meaning (\a \b \c \e \f \n \r \t \v \\ \0nnn \xHH; \c ends the output, the line's end included), and there are
/// no options: "-n" is text. Bash and /bin/echo differ in both.
QByteArray shellEchoText(const QStringList& arguments);

} // namespace macsim
