#pragma once

#include <QString>

namespace macsim {

// The words that mean something to the real shell and that this one refuses rather than mistakes.

/// "if", "while", … where a command could start.
bool isShellReservedWord(const QString& word);

/// A command inside the real shell that this one lacks: "eval", "set", …
bool isUnsupportedShellBuiltin(const QString& name);

/// A variable that the real shell fills, or whose value changes how it works: "RANDOM", "IFS", …
bool isUnsupportedShellVariable(const QString& name);

} // namespace macsim
