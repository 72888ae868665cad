#pragma once

#include <QString>

namespace macsim {

// Patterns as the shell matches them against the names in a folder: "*", "?", "[…]", and a backslash before a
// character that stands for itself.

/// Quoted text inside a pattern: every character stands for itself.
QString globQuoted(const QString& text);
/// Unquoted text inside a pattern: "*", "?" and "[" keep their meaning.
QString globUnquoted(const QString& text);
/// The text that a pattern was made of.
QString globText(const QString& pattern);

/// True when the pattern can match something else than its own text.
bool isGlob(const QString& pattern);

/// Whether a whole name matches. A leading dot of the name must stand in the pattern.
bool matchesGlob(const QString& pattern, const QString& name);

} // namespace macsim
