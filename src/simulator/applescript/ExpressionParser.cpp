// Operators and how they bind, from weakest to strongest: or, and, not, equality and containment, order, as,
// &, sums, products, signs. Equality and order don't chain: `a = b = c` is no expression.

#include "simulator/applescript/ExpressionParser.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

bool canChain(Precedence precedence) {
    return precedence != Precedence::Equality && precedence != Precedence::Order;
}

const OperatorPhrase* acceptOperator(TokenStream& tokens, Precedence precedence) {
    const QList<OperatorPhrase>& phrases = operatorPhrases(precedence);
    const auto found =
        std::ranges::find_if(phrases, [&](const OperatorPhrase& phrase) { return tokens.accept(phrase.words); });
    return found == phrases.end() ? nullptr : &*found;
}

} // namespace

ExpressionPtr ExpressionParser::parse() {
    const Nesting nesting(m_tokens);
    return parseChain(Precedence::Or);
}

ExpressionPtr ExpressionParser::parseChain(Precedence precedence) {
    const int start = m_tokens.start();
    OperatorChain chain{parseOperand(precedence), {}};
    while (chain.links.empty() || canChain(precedence)) {
        const OperatorPhrase* phrase = acceptOperator(m_tokens, precedence);
        if (phrase == nullptr) {
            break;
        }
        chain.links.push_back({phrase->meaning, parseOperand(precedence)});
    }
    return chain.links.empty() ? std::move(chain.first) : make(start, std::move(chain));
}

ExpressionPtr ExpressionParser::parseOperand(Precedence precedence) {
    switch (precedence) {
    case Precedence::Or:
        return parseChain(Precedence::And);
    case Precedence::And:
        return parseNot();
    case Precedence::Equality:
        return parseChain(Precedence::Order);
    case Precedence::Order:
        return parseCoercion();
    case Precedence::Concatenation:
        return parseChain(Precedence::Sum);
    case Precedence::Sum:
        return parseChain(Precedence::Product);
    case Precedence::Product:
        break;
    }
    return parseSigned();
}

ExpressionPtr ExpressionParser::parseNot() {
    const int start = m_tokens.start();
    if (!m_tokens.accept(u"not")) {
        return parseChain(Precedence::Equality);
    }
    const Nesting nesting(m_tokens);
    Not node{parseNot()};
    return make(start, std::move(node));
}

ExpressionPtr ExpressionParser::parseCoercion() {
    const int start = m_tokens.start();
    Coercion coercion{parseChain(Precedence::Concatenation), {}};
    while (m_tokens.accept(u"as")) {
        coercion.types.push_back(parseTypeName());
    }
    return coercion.types.empty() ? std::move(coercion.operand) : make(start, std::move(coercion));
}

TypeName ExpressionParser::parseTypeName() {
    static constexpr std::pair<const char16_t*, TypeName> kTypes[] = {
        {u"text", TypeName::Text},     {u"string", TypeName::Text},     {u"integer", TypeName::Integer},
        {u"number", TypeName::Number}, {u"boolean", TypeName::Boolean}, {u"list", TypeName::List},
    };
    for (const auto& [word, type] : kTypes) {
        if (m_tokens.accept(word)) {
            return type;
        }
    }
    m_tokens.fail(u"class name"_s);
}

ExpressionPtr ExpressionParser::parseSigned() {
    const int start = m_tokens.start();
    const bool isNegative = m_tokens.isAt(u"-");
    if (!isNegative && !m_tokens.isAt(u"+")) {
        ExpressionPtr term = parseTerm();
        const bool asksForExistence = m_dictionary != nullptr && m_tokens.accept(u"exists");
        return asksForExistence ? make(start, Exists{std::move(term)}) : std::move(term);
    }
    m_tokens.take();
    const Nesting nesting(m_tokens);
    ExpressionPtr operand = parseSigned();
    return isNegative ? make(start, Negative{std::move(operand)}) : std::move(operand);
}

} // namespace macsim::applescript
