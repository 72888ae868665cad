#pragma once

#include "simulator/applescript/Token.h"

#include <QList>

namespace macsim::applescript {

/// The tokens of a source, read from left to right. Failing throws ScriptError -2741 at the token that stands
/// there.
class TokenStream {
public:
    explicit TokenStream(QList<Token> tokens);

    const Token& peek() const { return m_tokens.at(m_at); }
    bool is(TokenKind kind) const { return peek().kind == kind; }
    bool atEndOfLine() const { return is(TokenKind::EndOfLine) || is(TokenKind::EndOfScript); }
    Token take();

    /// Whether words (or symbols) in any case stand here, one after the other.
    bool isAt(const QList<QString>& phrase) const;
    bool isAt(QStringView word) const { return matches(m_at, word); }
    bool accept(const QList<QString>& phrase);
    bool accept(QStringView word);
    void expect(QStringView word);
    void expectEndOfLine();
    void skipEmptyLines();

    /// Whether the word here can be the name of a variable or of a property.
    bool atName() const;
    /// Whether a name and a colon stand here, as in a record.
    bool atLabel() const { return atName() && matches(m_at + 1, u":"); }
    /// @param role  what the error calls it: "variable name", "property"
    QString takeName(QStringView role);

    [[noreturn]] void fail(const QString& expected) const;

    int start() const { return peek().range.start; }
    /// From an earlier start to the end of the last token that was taken.
    Range rangeFrom(int start) const;

private:
    friend class Nesting;
    bool matches(qsizetype at, QStringView word) const;
    QString found() const;

    QList<Token> m_tokens;
    qsizetype m_at = 0;
    int m_depth = 0;
};

/// One level of nesting, for as long as it lives. Too many of them are an error, not an overflowing stack.
class Nesting {
public:
    explicit Nesting(TokenStream& tokens);
    ~Nesting() { --m_tokens.m_depth; }
    Nesting(const Nesting&) = delete;
    Nesting& operator=(const Nesting&) = delete;

private:
    TokenStream& m_tokens;
};

} // namespace macsim::applescript
