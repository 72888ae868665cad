// The statements that contain others.

#include "simulator/applescript/StatementParser.h"

using namespace Qt::StringLiterals;

namespace macsim::applescript {

Statement StatementParser::parseIf(int start) {
    If node;
    ExpressionPtr condition = m_expressions.parse();
    m_tokens.expect(u"then");
    if (!m_tokens.atEndOfLine()) {
        node.branches.push_back({std::move(condition), parseOneLine()});
        return make(start, std::move(node));
    }
    m_tokens.take();
    node.branches.push_back({std::move(condition), parseBlock({u"else", u"end"})});
    while (m_tokens.accept({u"else"_s, u"if"_s})) {
        node.branches.push_back(parseBranch());
    }
    if (m_tokens.accept(u"else")) {
        m_tokens.expectEndOfLine();
        node.otherwise = parseBlock({u"end"});
    }
    expectEnd(u"if");
    return make(start, std::move(node));
}

If::Branch StatementParser::parseBranch() {
    ExpressionPtr condition = m_expressions.parse();
    m_tokens.expect(u"then");
    m_tokens.expectEndOfLine();
    return {std::move(condition), parseBlock({u"else", u"end"})};
}

Statement StatementParser::parseRepeat(int start) {
    if (m_tokens.atEndOfLine()) {
        return make(start, Repeat{parseLoopBody()});
    }
    if (m_tokens.accept(u"while")) {
        return parseRepeatWhile(start, false);
    }
    if (m_tokens.accept(u"until")) {
        return parseRepeatWhile(start, true);
    }
    return m_tokens.accept(u"with") ? parseRepeatWith(start) : parseRepeatTimes(start);
}

Statement StatementParser::parseRepeatTimes(int start) {
    ExpressionPtr count = m_expressions.parse();
    m_tokens.expect(u"times");
    RepeatTimes node{std::move(count), parseLoopBody()};
    return make(start, std::move(node));
}

Statement StatementParser::parseRepeatWhile(int start, bool untilTrue) {
    ExpressionPtr condition = m_expressions.parse();
    RepeatWhile node{std::move(condition), untilTrue, parseLoopBody()};
    return make(start, std::move(node));
}

Statement StatementParser::parseRepeatWith(int start) {
    QString variable = m_expressions.takeVariableName();
    if (m_tokens.accept(u"from")) {
        RepeatInRange node = parseRange(std::move(variable));
        return make(start, std::move(node));
    }
    m_tokens.expect(u"in");
    ExpressionPtr list = m_expressions.parse();
    RepeatInList node{std::move(variable), std::move(list), parseLoopBody()};
    return make(start, std::move(node));
}

RepeatInRange StatementParser::parseRange(QString variable) {
    RepeatInRange node{std::move(variable), m_expressions.parse(), nullptr, nullptr, {}};
    m_tokens.expect(u"to");
    node.to = m_expressions.parse();
    if (m_tokens.accept(u"by")) {
        node.by = m_expressions.parse();
    }
    node.body = parseLoopBody();
    return node;
}

Block StatementParser::parseLoopBody() {
    ++m_loops;
    Block body = parseBody(u"repeat");
    --m_loops;
    return body;
}

Statement StatementParser::parseTry(int start) {
    Try node;
    m_tokens.expectEndOfLine();
    node.body = parseBlock({u"on", u"end"});
    if (m_tokens.accept({u"on"_s, u"error"_s})) {
        if (!m_tokens.atEndOfLine() && !m_tokens.isAt(u"number")) {
            node.messageVariable = m_expressions.takeVariableName();
        }
        if (m_tokens.accept(u"number")) {
            node.numberVariable = m_expressions.takeVariableName();
        }
        m_tokens.expectEndOfLine();
        node.handler = parseBlock({u"end"});
    }
    expectEnd(u"try");
    return make(start, std::move(node));
}

Statement StatementParser::parseTell(int start) {
    Tell node{parseTellTarget(), {}};
    const Range range = m_tokens.rangeFrom(start);
    node.body = parseTold(node.application ? m_host.findDictionary(*node.application) : nullptr);
    return {range, std::move(node)};
}

// What is told, in the words of the innermost `tell` only.
Block StatementParser::parseTold(const ScriptDictionary* dictionary) {
    const ScriptDictionary* outer = m_expressions.dictionary();
    m_expressions.setDictionary(dictionary);
    Block body = m_tokens.accept(u"to") ? parseOneLine() : parseBody(u"tell");
    m_expressions.setDictionary(outer);
    return body;
}

// `with timeout` has been taken.
Statement StatementParser::parseWithTimeout(int start) {
    m_tokens.expect(u"of");
    ExpressionPtr seconds = m_expressions.parse();
    if (!m_tokens.accept(u"second")) {
        m_tokens.expect(u"seconds");
    }
    WithTimeout node{std::move(seconds), parseBody(u"timeout")};
    return make(start, std::move(node));
}

std::optional<QString> StatementParser::parseTellTarget() {
    if (m_tokens.accept(u"me")) {
        return std::nullopt;
    }
    if (!m_tokens.accept(u"application")) {
        m_tokens.fail(u"“application”"_s);
    }
    if (!m_tokens.is(TokenKind::Text)) {
        m_tokens.fail(u"“\"”"_s);
    }
    return m_tokens.take().text;
}

} // namespace macsim::applescript
