#pragma once

#include "simulator/applescript/Token.h"

#include <QList>

namespace macsim::applescript {

/// Splits a source into tokens; the last one is EndOfScript. It never fails: what is wrong becomes a token
/// (Unknown, Broken), so that the error that comes first in the source is the one that is reported.
QList<Token> tokensOf(const QString& source);

} // namespace macsim::applescript
