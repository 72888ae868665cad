#pragma once

#include "simulator/shell/ShellCursor.h"
#include "simulator/shell/ShellSyntax.h"

#include <memory>

namespace macsim {

/// Who reads the commands that stand inside a word.
class ShellSubstitutionReader {
public:
    ShellSubstitutionReader() = default;
    ShellSubstitutionReader(const ShellSubstitutionReader&) = delete;
    ShellSubstitutionReader& operator=(const ShellSubstitutionReader&) = delete;
    virtual ~ShellSubstitutionReader() = default;

    /// Reads on at the cursor, behind "$(", up to and with the closing parenthesis.
    virtual std::shared_ptr<const ShellList> readUpToParenthesis() = 0;
    /// Reads the text that stood between backquotes, its backslashes already resolved.
    virtual std::shared_ptr<const ShellList> readBackquoted(const QString& text, int line) = 0;
};

/// Reads one word: its quotes, backslashes and expansions. A "~" is left as text: what it means depends on
/// where the word stands.
class ShellWordReader {
public:
    ShellWordReader(ShellCursor& cursor, ShellSubstitutionReader& substitutions)
        : m_cursor(cursor)
        , m_substitutions(substitutions) {}

    ShellWord read();

private:
    void readUnquoted();
    void readEscape();
    void readSingleQuotes();
    void readDoubleQuotes();
    void readEscapeInDoubleQuotes();
    void readDollar(bool isQuoted);
    void readBracedVariable(bool isQuoted);
    void readBackquotes(bool isInDoubleQuotes);
    QString readName();
    void addText(const QString& text, bool isQuoted);
    void addVariable(const QString& name, bool isQuoted);
    [[noreturn]] void failUnsupported(const QString& what) const;
    [[noreturn]] static void failUnterminated(char16_t closing, int line);

    ShellCursor& m_cursor;
    ShellSubstitutionReader& m_substitutions;
    ShellWord m_word;
};

} // namespace macsim
