#pragma once

#include <QString>

namespace quorvane {

// Text from profiles, tools and people reaches two languages: the shell, inside the administrator line, and
// AppleScript, around it. Each has one rule, and every text passes through it, character by character: QString::replace costs
// the square of a text that is full of what it replaces.

/// The inside of an AppleScript text literal: every backslash is doubled, then every double quote gets a
/// backslash.
QString appleScriptText(const QString& text);

/// A shell word in single quotes; a single quote inside becomes '\''.
QString shellQuoted(const QString& text);

/// A shell word: bare when it isn't empty, holds only ASCII letters, digits, ".", "_" and "-", and doesn't
/// begin with "-"; otherwise in single quotes.
QString shellWord(const QString& text);

} // namespace quorvane
