// The first step of compiling: characters to tokens.
//
// A text literal knows five escapes and no others; a backslash before anything else is a compile error on a
// Mac, and the most frequent mistake of programs that paste shell lines into scripts. Line ends may be CR, LF
// or CRLF, may stand inside a literal as they are, and are hidden by a ¬ at the end of the line.

#include "simulator/applescript/Lexer.h"

#include <optional>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

bool isDigit(QChar c) {
    return c >= u'0' && c <= u'9';
}

bool startsWord(QChar c) {
    return (c >= u'a' && c <= u'z') || (c >= u'A' && c <= u'Z') || c == u'_';
}

bool isBlank(QChar c) {
    return c == u' ' || c == u'\t';
}

bool isLineEnd(QChar c) {
    return c == u'\n' || c == u'\r';
}

std::optional<QChar> escaped(QChar c) {
    switch (c.unicode()) {
    case u'\\':
    case u'"':
        return c;
    case u'n':
        return u'\n';
    case u'r':
        return u'\r';
    case u't':
        return u'\t';
    default:
        return std::nullopt;
    }
}

class Lexer {
public:
    explicit Lexer(const QString& source)
        : m_source(source) {}

    QList<Token> run() {
        while (!atEnd()) {
            scan();
        }
        add(TokenKind::EndOfScript, {}, m_source.size());
        return m_tokens;
    }

private:
    bool atEnd() const { return m_at >= m_source.size(); }
    QChar peek(qsizetype ahead = 0) const {
        return m_at + ahead < m_source.size() ? m_source.at(m_at + ahead) : QChar();
    }
    bool isAt(QStringView text) const { return QStringView(m_source).sliced(m_at).startsWith(text); }

    void add(TokenKind kind, const QString& text, qsizetype start) {
        m_tokens.append({kind, text, {static_cast<int>(start), static_cast<int>(m_at)}});
    }
    void breakOff(const QString& message, qsizetype start, qsizetype end) {
        m_at = end;
        add(TokenKind::Broken, message, start);
        m_at = m_source.size();
    }

    void scan() {
        const QChar c = peek();
        if (isBlank(c)) {
            ++m_at;
        } else if (isLineEnd(c)) {
            scanLineEnd();
        } else if (c == u'#' || isAt(u"--")) {
            skipLine();
        } else if (isAt(u"(*")) {
            skipComment();
        } else if (c == u'\u00ac') {
            scanContinuation();
        } else {
            scanVisible(c);
        }
    }

    void scanVisible(QChar c) {
        if (c == u'"') {
            scanText();
        } else if (c == u'|') {
            scanBarredName();
        } else if (isDigit(c) || (c == u'.' && isDigit(peek(1)))) {
            scanNumber();
        } else if (startsWord(c)) {
            scanWord();
        } else {
            scanSymbol();
        }
    }

    void skipLineEnd() { m_at += isAt(u"\r\n") ? 2 : 1; }

    void scanLineEnd() {
        const qsizetype start = m_at;
        skipLineEnd();
        add(TokenKind::EndOfLine, {}, start);
    }

    void skipLine() {
        while (!atEnd() && !isLineEnd(peek())) {
            ++m_at;
        }
    }

    void skipComment() {
        const qsizetype start = m_at;
        int depth = 0;
        do {
            const int step = isAt(u"(*") ? 1 : isAt(u"*)") ? -1 : 0;
            depth += step;
            m_at += step == 0 ? 1 : 2;
        } while (depth > 0 && !atEnd());
        if (depth > 0) {
            breakOff(u"Expected “*)” but found end of script."_s, start, m_source.size());
        }
    }

    void scanContinuation() {
        const qsizetype start = m_at++;
        while (isBlank(peek())) {
            ++m_at;
        }
        if (isLineEnd(peek())) {
            skipLineEnd();
        } else {
            add(TokenKind::Unknown, {}, start);
        }
    }

    void scanText() {
        const qsizetype start = m_at++;
        QString text;
        while (!atEnd() && peek() != u'"') {
            if (peek() == u'\\' && !unescape()) {
                return;
            }
            text += peek() == u'\\' ? *escaped(m_source.at(++m_at)) : peek();
            ++m_at;
        }
        if (atEnd()) {
            return breakOff(u"Expected “\"” but found end of script."_s, start, m_source.size());
        }
        ++m_at;
        add(TokenKind::Text, text, start);
    }

    // Whether the backslash here begins an escape; where not, the source ends here.
    bool unescape() {
        if (escaped(peek(1))) {
            return true;
        }
        breakOff(u"Expected “\"” but found unknown token."_s, m_at, m_at + 1);
        return false;
    }

    void scanBarredName() {
        const qsizetype start = m_at++;
        while (!atEnd() && peek() != u'|' && !isLineEnd(peek())) {
            ++m_at;
        }
        if (peek() != u'|') {
            return breakOff(u"Expected “|” but found end of line."_s, start, m_at);
        }
        ++m_at;
        add(TokenKind::BarredName, m_source.sliced(start + 1, m_at - start - 2), start);
    }

    void skipDigits() {
        while (isDigit(peek())) {
            ++m_at;
        }
    }

    void scanNumber() {
        const qsizetype start = m_at;
        skipDigits();
        const bool hasFraction = peek() == u'.' && isDigit(peek(1));
        if (hasFraction) {
            ++m_at;
            skipDigits();
        }
        const bool hasExponent = skipExponent();
        add(hasFraction || hasExponent ? TokenKind::Real : TokenKind::Integer, m_source.sliced(start, m_at - start),
            start);
    }

    bool skipExponent() {
        if (peek().toLower() != u'e') {
            return false;
        }
        const qsizetype signLength = peek(1) == u'+' || peek(1) == u'-' ? 1 : 0;
        if (!isDigit(peek(1 + signLength))) {
            return false;
        }
        m_at += 1 + signLength;
        skipDigits();
        return true;
    }

    void scanWord() {
        const qsizetype start = m_at;
        while (startsWord(peek()) || isDigit(peek())) {
            ++m_at;
        }
        add(TokenKind::Word, m_source.sliced(start, m_at - start), start);
    }

    void scanSymbol() {
        const qsizetype start = m_at;
        for (const QStringView symbol : {u"<=", u">=", u"/="}) {
            if (isAt(symbol)) {
                m_at += symbol.size();
                return add(TokenKind::Symbol, symbol.toString(), start);
            }
        }
        const QChar c = m_source.at(m_at++);
        const bool isKnown = QStringView(u"&+-*/÷=≠<>≤≥(){},:").contains(c);
        add(isKnown ? TokenKind::Symbol : TokenKind::Unknown, QString(c), start);
    }

    const QString& m_source;
    qsizetype m_at = 0;
    QList<Token> m_tokens;
};

} // namespace

QList<Token> tokensOf(const QString& source) {
    return Lexer(source).run();
}

} // namespace macsim::applescript
