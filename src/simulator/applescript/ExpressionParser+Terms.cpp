// Terms: literals, names, `X of Y`, elements of lists and texts.

#include "simulator/applescript/ExpressionParser.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

std::optional<ElementClass> acceptElementClass(TokenStream& tokens, const QString& ending = {}) {
    if (tokens.accept(u"item"_s + ending)) {
        return ElementClass::Item;
    }
    if (tokens.accept(u"character"_s + ending)) {
        return ElementClass::Character;
    }
    return std::nullopt;
}

Value numberFrom(const Token& token) {
    bool isSmall = false;
    const int number = token.text.toInt(&isSmall);
    const bool isInteger = token.kind == TokenKind::Integer && isSmall && number <= kLargestInteger;
    return isInteger ? Value(number) : Value(token.text.toDouble());
}

} // namespace

QString ExpressionParser::takeVariableName() {
    static constexpr const char16_t* kTerms[] = {
        u"item",   u"items",    u"character", u"characters",  u"count", u"length",
        u"result", u"contents", u"quoted",    u"application", u"app",
    };
    const auto isHere = [this](const char16_t* term) { return m_tokens.isAt(term); };
    if (std::ranges::any_of(kTerms, isHere) || atProperty()) {
        m_tokens.fail(u"variable name"_s);
    }
    return m_tokens.takeName(u"variable name");
}

ExpressionPtr ExpressionParser::parseTerm() {
    m_tokens.accept(u"the");
    if (ExpressionPtr term = parseLanguageTerm()) {
        return term;
    }
    if (ExpressionPtr term = parseObjectCommand()) {
        return term;
    }
    if (ExpressionPtr term = parseObjects()) {
        return term;
    }
    if (ExpressionPtr term = parseElements()) {
        return term;
    }
    if (ExpressionPtr term = parseImpliedProperty()) {
        return term;
    }
    return m_tokens.atName() ? parseNamed() : parseUnnamed();
}

ExpressionPtr ExpressionParser::parseLanguageTerm() {
    const int start = m_tokens.start();
    if (m_tokens.accept({u"do"_s, u"shell"_s, u"script"_s})) {
        return parseShellScript(start);
    }
    if (m_tokens.accept({u"quoted"_s, u"form"_s})) {
        return parsePropertyOf(u"quoted form"_s, start);
    }
    if (m_tokens.accept({u"missing"_s, u"value"_s})) {
        return make(start, Literal{});
    }
    if (m_tokens.isAt(u"length") || m_tokens.isAt(u"contents")) {
        return parsePropertyOf(m_tokens.take().text.toLower(), start);
    }
    if (m_tokens.isAt(u"true") || m_tokens.isAt(u"false")) {
        const bool truth = m_tokens.take().text.compare(u"true", Qt::CaseInsensitive) == 0;
        return make(start, Literal{Value(truth)});
    }
    if (m_tokens.accept(u"count")) {
        return parseCount(start);
    }
    if (m_tokens.accept(u"result")) {
        return make(start, LastResult{});
    }
    if (m_tokens.accept(u"it")) {
        return m_isInCondition ? make(start, TestedObject{}) : make(start, TellTarget{});
    }
    return m_tokens.accept(u"me") ? make(start, ScriptItself{}) : nullptr;
}

// `item 2 of x`, `first item of x`, `items of x`; null where no elements are named.
ExpressionPtr ExpressionParser::parseElements() {
    const int start = m_tokens.start();
    ElementOf node;
    if (m_tokens.accept(u"every")) {
        return parseElementAfter(ElementSelection::Every, start);
    }
    if (m_tokens.accept(u"last")) {
        return parseElementAfter(ElementSelection::Last, start);
    }
    if (m_tokens.accept(u"first")) {
        return parseElementAfter(ElementSelection::ByIndex, start);
    }
    if (const auto plural = acceptElementClass(m_tokens, u"s"_s)) {
        node.elements = *plural;
        node.selection = ElementSelection::Every;
    } else if (const auto singular = acceptElementClass(m_tokens)) {
        node.elements = *singular;
        node.index = parseElementIndex();
    } else {
        return nullptr;
    }
    node.owner = parseOwner();
    return make(start, std::move(node));
}

// The word before the class ("every", "last", "first") has been taken.
ExpressionPtr ExpressionParser::parseElementAfter(ElementSelection selection, int start) {
    if (ExpressionPtr objects = parseObjectsAfter(selection, start)) {
        return objects;
    }
    const auto elements = acceptElementClass(m_tokens);
    if (!elements) {
        m_tokens.fail(u"class name"_s);
    }
    ExpressionPtr index;
    if (selection == ElementSelection::ByIndex) {
        index = make(start, Literal{Value(1)});
    }
    ElementOf node{*elements, selection, std::move(index), parseOwner()};
    return make(start, std::move(node));
}

// A literal, a variable or a parenthesis: `of` belongs to the element.
ExpressionPtr ExpressionParser::parseElementIndex() {
    const int start = m_tokens.start();
    if (m_tokens.accept(u"-")) {
        ExpressionPtr number = parseNumber();
        return make(start, Negative{std::move(number)});
    }
    if (m_tokens.atName()) {
        QString name = m_tokens.take().text;
        return make(start, Variable{std::move(name)});
    }
    return parseUnnamed();
}

// `of` and `in` are the same here.
ExpressionPtr ExpressionParser::parseOwner() {
    if (!m_tokens.accept(u"in")) {
        m_tokens.expect(u"of");
    }
    const Nesting nesting(m_tokens);
    return parseTerm();
}

ExpressionPtr ExpressionParser::parsePropertyOf(const QString& name, int start) {
    PropertyOf node{name, parseOwner()};
    return make(start, std::move(node));
}

ExpressionPtr ExpressionParser::parseCount(int start) {
    m_tokens.accept(u"of");
    const Nesting nesting(m_tokens);
    CountOf node{parseTerm()};
    return make(start, std::move(node));
}

ExpressionPtr ExpressionParser::parseNamed() {
    const int start = m_tokens.start();
    const QString name = m_tokens.takeName(u"expression");
    return m_tokens.isAt(u"of") ? parsePropertyOf(name, start) : make(start, Variable{name});
}

ExpressionPtr ExpressionParser::parseUnnamed() {
    if (m_tokens.isAt(u"(")) {
        return parseParenthesis();
    }
    if (m_tokens.isAt(u"{")) {
        return parseBraces();
    }
    if (m_tokens.is(TokenKind::Text)) {
        const int start = m_tokens.start();
        const Token token = m_tokens.take();
        return make(start, Literal{Value(token.text)});
    }
    return parseNumber();
}

ExpressionPtr ExpressionParser::parseNumber() {
    if (!m_tokens.is(TokenKind::Integer) && !m_tokens.is(TokenKind::Real)) {
        m_tokens.fail(u"expression"_s);
    }
    const int start = m_tokens.start();
    const Token token = m_tokens.take();
    return make(start, Literal{numberFrom(token)});
}

ExpressionPtr ExpressionParser::parseParenthesis() {
    m_tokens.expect(u"(");
    ExpressionPtr inner = parse();
    m_tokens.expect(u")");
    return inner;
}

ExpressionPtr ExpressionParser::parseBraces() {
    const int start = m_tokens.start();
    m_tokens.expect(u"{");
    if (m_tokens.accept(u"}")) {
        return make(start, ListDisplay{});
    }
    return m_tokens.atLabel() ? parseRecord(start) : parseList(start);
}

ExpressionPtr ExpressionParser::parseList(int start) {
    ListDisplay list;
    do {
        list.items.push_back(parse());
    } while (m_tokens.accept(u","));
    m_tokens.expect(u"}");
    return make(start, std::move(list));
}

ExpressionPtr ExpressionParser::parseRecord(int start) {
    RecordDisplay record;
    do {
        QString name = m_tokens.takeName(u"property");
        m_tokens.expect(u":");
        record.fields.push_back({std::move(name), parse()});
    } while (m_tokens.accept(u","));
    m_tokens.expect(u"}");
    return make(start, std::move(record));
}

} // namespace macsim::applescript
