#pragma once

#include "simulator/shell/ShellSyntax.h"

#include <optional>

namespace macsim {

// Questions about a word that was read, and what depends on where it stands.

/// The word's text when nothing in it is expanded.
std::optional<QString> literalShellText(const ShellWord& word);
/// The same, when nothing in it is quoted either.
std::optional<QString> unquotedShellText(const ShellWord& word);

/// Turns "~" and "~name" at the start of a word into parts of their own.
ShellWord withHomeAtStart(const ShellWord& word);
/// The same for the value of an assignment, where "~" also follows a colon ("PATH=~/bin:~/sbin").
ShellWord withHomesInValue(const ShellWord& value);

/// True for "{a,b}" and "{1..3}", from which the real shell makes several words.
bool hasBraceExpansion(const ShellWord& word);

/// A word before the command's name that sets a variable ("A=b"); nothing for any other word.
std::optional<ShellAssignment> assignmentFromWord(const ShellWord& word);

/// True for "A+=b" and "A[0]=b", which set variables in the real shell.
bool isUnsupportedShellAssignment(const ShellWord& word);

} // namespace macsim
