#include "simulator/applescript/TokenStream.h"

#include "simulator/applescript/Errors.h"

#include <QSet>

#include <utility>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

constexpr int kDeepestNesting = 100;

// The words that AppleScript keeps for itself; between bars they are names like any other.
const QSet<QString>& reservedWords() {
    static const QSet<QString> words = [] {
        const QStringList list =
            u"about above after against and apart around as aside at back before beginning behind below "
            u"beneath "
            "beside between but by considering contain contains continue copy div do does eighth else end "
            "equal "
            "equals error every exit false fifth first for fourth from front get given global if ignoring in "
            "instead into is it its last local me middle mod my ninth not of on onto or out over prop "
            "property put "
            "ref reference repeat return returning script second set seventh since sixth some tell tenth "
            "that the "
            "then third through thru timeout times to transaction true try until use where while whose with "
            "without"_s.split(u' ');
        return QSet<QString>(list.begin(), list.end());
    }();
    return words;
}

bool isReserved(const Token& token) {
    return token.kind == TokenKind::Word && reservedWords().contains(token.text.toLower());
}

} // namespace

TokenStream::TokenStream(QList<Token> tokens)
    : m_tokens(std::move(tokens)) {}

Token TokenStream::take() {
    Token token = peek();
    if (token.kind != TokenKind::EndOfScript) {
        ++m_at;
    }
    return token;
}

bool TokenStream::matches(qsizetype at, QStringView word) const {
    const Token& token = m_tokens.at(at);
    const bool isWord = token.kind == TokenKind::Word || token.kind == TokenKind::Symbol;
    return isWord && word.compare(token.text, Qt::CaseInsensitive) == 0;
}

bool TokenStream::isAt(const QList<QString>& phrase) const {
    if (phrase.size() > m_tokens.size() - m_at) {
        return false;
    }
    for (qsizetype i = 0; i < phrase.size(); ++i) {
        if (!matches(m_at + i, phrase.at(i))) {
            return false;
        }
    }
    return true;
}

bool TokenStream::accept(const QList<QString>& phrase) {
    const bool isHere = isAt(phrase);
    m_at += isHere ? phrase.size() : 0;
    return isHere;
}

bool TokenStream::accept(QStringView word) {
    const bool isHere = isAt(word);
    m_at += isHere ? 1 : 0;
    return isHere;
}

void TokenStream::expect(QStringView word) {
    if (!accept(word)) {
        fail(u'“' + word.toString() + u'”');
    }
}

void TokenStream::expectEndOfLine() {
    if (!atEndOfLine()) {
        fail(u"end of line, etc."_s);
    }
    take();
}

void TokenStream::skipEmptyLines() {
    while (is(TokenKind::EndOfLine)) {
        take();
    }
}

bool TokenStream::atName() const {
    return is(TokenKind::BarredName) || (is(TokenKind::Word) && !isReserved(peek()));
}

QString TokenStream::takeName(QStringView role) {
    if (!atName()) {
        fail(role.toString());
    }
    return take().text;
}

QString TokenStream::found() const {
    const Token& token = peek();
    switch (token.kind) {
    case TokenKind::Text:
        return u"“\"”"_s;
    case TokenKind::Integer:
    case TokenKind::Real:
        return u"number"_s;
    case TokenKind::EndOfLine:
        return u"end of line"_s;
    case TokenKind::EndOfScript:
        return u"end of script"_s;
    case TokenKind::Symbol:
        return u'“' + token.text + u'”';
    case TokenKind::Word:
        return isReserved(token) ? u'“' + token.text.toLower() + u'”' : u"identifier"_s;
    case TokenKind::BarredName:
        return u"identifier"_s;
    default:
        return u"unknown token"_s;
    }
}

void TokenStream::fail(const QString& expected) const {
    const Token& token = peek();
    const QString message =
        token.kind == TokenKind::Broken ? token.text : u"Expected "_s + expected + u" but found "_s + found() + u'.';
    throw syntaxError(message, token.range);
}

Range TokenStream::rangeFrom(int start) const {
    return {start, m_at > 0 ? m_tokens.at(m_at - 1).range.end : start};
}

Nesting::Nesting(TokenStream& tokens)
    : m_tokens(tokens) {
    if (tokens.m_depth >= kDeepestNesting) {
        throw syntaxError(u"The script is nested too deeply."_s, tokens.peek().range);
    }
    ++tokens.m_depth;
}

} // namespace macsim::applescript
