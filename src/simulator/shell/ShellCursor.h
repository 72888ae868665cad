#pragma once

#include <QStringView>

namespace macsim {

/// A place in a shell text. It can be copied to look ahead.
class ShellCursor {
public:
    ShellCursor(QStringView text, int line)
        : m_text(text)
        , m_line(line) {}

    /// The next character; null at the end. A backslash before a line's end joins the lines and isn't seen.
    QChar look();
    /// The next character as it stands there; null at the end.
    QChar lookRaw() const { return m_position < m_text.size() ? m_text[m_position] : QChar(); }
    /// Passes over the next character.
    QChar take();
    bool takeIf(char16_t expected);
    /// True when a text comes next.
    bool isAt(QStringView text) const;
    bool takeIf(QStringView text);
    void skipBlanks();
    bool isAtEnd() { return look().isNull(); }
    int line() const { return m_line; }

private:
    QStringView m_text;
    qsizetype m_position = 0;
    int m_line;
};

/// Ends an unquoted word: a blank, a line's end, the start of an operator, or the end of the text.
bool endsShellWord(QChar character);
bool isShellBlank(QChar character);
bool startsShellName(QChar character);
bool isInShellName(QChar character);

} // namespace macsim
