// A statement is simple (it ends with its line) or a block (it ends with `end`). The one-line forms of `if`
// and `tell` are simple, and what follows their `then` and `to` is simple too.

#include "simulator/applescript/StatementParser.h"

#include "simulator/applescript/Lexer.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

Block parseScript(const QString& source, ScriptHost& host) {
    TokenStream tokens(tokensOf(source));
    return StatementParser(tokens, host).parseAll();
}

Block StatementParser::parseAll() {
    Block script = parseBlock({});
    if (!m_tokens.is(TokenKind::EndOfScript)) {
        m_tokens.fail(u"end of script"_s);
    }
    return script;
}

// Up to one of the words that can end it, which stays.
Block StatementParser::parseBlock(const QList<QStringView>& endings) {
    Block block;
    m_tokens.skipEmptyLines();
    const auto isHere = [this](QStringView ending) { return m_tokens.isAt(ending); };
    while (!m_tokens.is(TokenKind::EndOfScript) && std::ranges::none_of(endings, isHere)) {
        block.push_back(parseStatement());
        m_tokens.skipEmptyLines();
    }
    return block;
}

// The lines up to `end` and the end itself.
Block StatementParser::parseBody(QStringView keyword) {
    m_tokens.expectEndOfLine();
    Block body = parseBlock({u"end"});
    expectEnd(keyword);
    return body;
}

// `end` alone is enough; Script Editor writes the rest.
void StatementParser::expectEnd(QStringView keyword) {
    m_tokens.expect(u"end");
    if (!m_tokens.atEndOfLine()) {
        m_tokens.expect(keyword);
    }
}

Block StatementParser::parseOneLine() {
    Block block;
    block.push_back(parseSimple());
    return block;
}

Statement StatementParser::parseStatement() {
    const Nesting nesting(m_tokens);
    Statement statement = parseBlockOrSimple();
    m_tokens.expectEndOfLine();
    return statement;
}

Statement StatementParser::parseBlockOrSimple() {
    const int start = m_tokens.start();
    if (m_tokens.accept(u"repeat")) {
        return parseRepeat(start);
    }
    if (m_tokens.accept(u"try")) {
        return parseTry(start);
    }
    if (m_tokens.accept({u"with"_s, u"timeout"_s})) {
        return parseWithTimeout(start);
    }
    return parseSimple();
}

Statement StatementParser::parseSimple() {
    using Parse = Statement (StatementParser::*)(int);
    static constexpr std::pair<const char16_t*, Parse> kStatements[] = {
        {u"set", &StatementParser::parseSet},       {u"copy", &StatementParser::parseCopy},
        {u"return", &StatementParser::parseReturn}, {u"error", &StatementParser::parseError},
        {u"exit", &StatementParser::parseExit},     {u"if", &StatementParser::parseIf},
        {u"tell", &StatementParser::parseTell},     {u"get", &StatementParser::parseValue},
    };
    const Nesting nesting(m_tokens);
    const int start = m_tokens.start();
    for (const auto& [word, parse] : kStatements) {
        if (m_tokens.accept(word)) {
            return (this->*parse)(start);
        }
    }
    if (m_expressions.dictionary() != nullptr && m_tokens.accept(u"delete")) {
        return parseDelete(start);
    }
    if (const QString command = m_expressions.acceptCommand(); !command.isEmpty()) {
        return parseCommand(command, start);
    }
    return parseValue(start);
}

Statement StatementParser::parseValue(int start) {
    Evaluate node{m_expressions.parse()};
    return make(start, std::move(node));
}

Statement StatementParser::parseSet(int start) {
    if (m_expressions.atProperty()) {
        return parseSetProperty(start);
    }
    QString variable = m_expressions.takeVariableName();
    m_tokens.expect(u"to");
    Assign node{std::move(variable), m_expressions.parse()};
    return make(start, std::move(node));
}

Statement StatementParser::parseSetProperty(int start) {
    AssignProperty node{m_tokens.take().text, nullptr, nullptr};
    m_tokens.expect(u"of");
    node.owner = m_expressions.parseTerm();
    m_tokens.expect(u"to");
    node.value = m_expressions.parse();
    return make(start, std::move(node));
}

Statement StatementParser::parseDelete(int start) {
    DeleteObjects node{m_expressions.parse()};
    return make(start, std::move(node));
}

Statement StatementParser::parseCommand(const QString& command, int start) {
    PerformCommand node{command, nullptr};
    if (!m_tokens.atEndOfLine()) {
        node.object = m_expressions.parse();
    }
    return make(start, std::move(node));
}

Statement StatementParser::parseCopy(int start) {
    ExpressionPtr value = m_expressions.parse();
    m_tokens.expect(u"to");
    Assign node{m_expressions.takeVariableName(), std::move(value)};
    return make(start, std::move(node));
}

Statement StatementParser::parseReturn(int start) {
    Return node;
    if (!m_tokens.atEndOfLine()) {
        node.value = m_expressions.parse();
    }
    return make(start, std::move(node));
}

Statement StatementParser::parseError(int start) {
    RaiseError node;
    if (!m_tokens.atEndOfLine() && !m_tokens.isAt(u"number")) {
        node.message = m_expressions.parse();
    }
    if (m_tokens.accept(u"number")) {
        node.number = m_expressions.parse();
    }
    return make(start, std::move(node));
}

Statement StatementParser::parseExit(int start) {
    m_tokens.expect(u"repeat");
    if (m_loops == 0) {
        m_tokens.fail(u"“repeat” around “exit repeat”"_s);
    }
    return make(start, ExitRepeat{});
}

} // namespace macsim::applescript
