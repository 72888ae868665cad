#pragma once

#include <QString>

namespace macsim::applescript {

/// Character offsets into the source, the end excluded.
struct Range {
    int start = 0;
    int end = 0;
};

enum class TokenKind {
    Word,       ///< a name or a word of the language, as it was written
    BarredName, ///< |any name|, without its bars
    Text,       ///< a text literal, without quotes and escapes
    Integer,
    Real,
    Symbol,
    EndOfLine,
    EndOfScript,
    Unknown, ///< a character that means nothing
    Broken,  ///< where a literal or comment went wrong; its text is the error message, and the source ends for
             ///< us
};

struct Token {
    TokenKind kind = TokenKind::EndOfScript;
    QString text;
    Range range;
};

} // namespace macsim::applescript
