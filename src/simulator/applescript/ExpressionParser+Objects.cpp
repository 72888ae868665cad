// The words of the application that the innermost `tell` addresses: its classes, their properties, and the commands
// that every application with objects has.

#include "simulator/applescript/ExpressionParser.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

bool ExpressionParser::atProperty() const {
    if (m_dictionary == nullptr || !m_tokens.is(TokenKind::Word)) {
        return false;
    }
    const QString& word = m_tokens.peek().text;
    const auto hasIt = [&word](const ScriptClass& each) { return each.properties.contains(word, Qt::CaseInsensitive); };
    return m_dictionary->properties.contains(word, Qt::CaseInsensitive) ||
           std::ranges::any_of(m_dictionary->classes, hasIt);
}

QString ExpressionParser::acceptCommand() {
    if (m_dictionary == nullptr) {
        return {};
    }
    const auto isHere = [this](const QString& command) { return m_tokens.accept(command); };
    const auto found = std::ranges::find_if(m_dictionary->commands, isHere);
    return found == m_dictionary->commands.end() ? QString() : *found;
}

const ScriptClass* ExpressionParser::acceptClass(QString ScriptClass::*words) {
    if (m_dictionary == nullptr) {
        return nullptr;
    }
    const auto isHere = [&](const ScriptClass& each) { return m_tokens.accept((each.*words).split(u' ')); };
    const auto found = std::ranges::find_if(m_dictionary->classes, isHere);
    return found == m_dictionary->classes.end() ? nullptr : &*found;
}

// `login items`, `login item 2`, `login item "X"`
ExpressionPtr ExpressionParser::parseObjects() {
    const int start = m_tokens.start();
    if (const ScriptClass* objectClass = acceptClass(&ScriptClass::plural)) {
        return parseSelected(*objectClass, ElementSelection::Every, nullptr, start);
    }
    if (const ScriptClass* objectClass = acceptClass(&ScriptClass::name)) {
        ExpressionPtr index = parseElementIndex();
        return make(start, ApplicationObjects{objectClass->name, ElementSelection::ByIndex, std::move(index), nullptr});
    }
    return nullptr;
}

// `every`, `first` or `last` has been taken.
ExpressionPtr ExpressionParser::parseObjectsAfter(ElementSelection selection, int start) {
    const ScriptClass* objectClass = acceptClass(&ScriptClass::name);
    if (objectClass == nullptr) {
        return nullptr;
    }
    ExpressionPtr index;
    if (selection == ElementSelection::ByIndex) {
        index = make(start, Literal{Value(1)});
    }
    return parseSelected(*objectClass, selection, std::move(index), start);
}

ExpressionPtr ExpressionParser::parseSelected(const ScriptClass& objectClass, ElementSelection selection,
                                              ExpressionPtr index, int start) {
    ApplicationObjects node{objectClass.name, selection, std::move(index), parseCondition()};
    return make(start, std::move(node));
}

ExpressionPtr ExpressionParser::parseCondition() {
    if (!m_tokens.accept(u"whose") && !m_tokens.accept(u"where")) {
        return nullptr;
    }
    const bool wasInCondition = std::exchange(m_isInCondition, true);
    ExpressionPtr condition = parse();
    m_isInCondition = wasInCondition;
    return condition;
}

// A property without an owner is that of the object that is tested, or else of the application.
ExpressionPtr ExpressionParser::parseImpliedProperty() {
    const int start = m_tokens.start();
    if (!atProperty()) {
        return nullptr;
    }
    const QString name = m_tokens.take().text;
    if (m_tokens.isAt(u"of")) {
        return parsePropertyOf(name, start);
    }
    ExpressionPtr owner = m_isInCondition ? make(start, TestedObject{}) : make(start, TellTarget{});
    return make(start, PropertyOf{name, std::move(owner)});
}

ExpressionPtr ExpressionParser::parseObjectCommand() {
    const int start = m_tokens.start();
    if (m_dictionary == nullptr) {
        return nullptr;
    }
    if (m_tokens.accept(u"make")) {
        return parseMake(start);
    }
    if (m_tokens.accept(u"exists")) {
        const Nesting nesting(m_tokens);
        Exists node{parseTerm()};
        return make(start, std::move(node));
    }
    return nullptr;
}

ExpressionPtr ExpressionParser::parseMake(int start) {
    m_tokens.accept(u"new");
    const ScriptClass* objectClass = acceptClass(&ScriptClass::name);
    if (objectClass == nullptr) {
        m_tokens.fail(u"class name"_s);
    }
    MakeObject node{objectClass->name, nullptr};
    if (m_tokens.accept(u"at")) {
        parseLocation();
    }
    if (m_tokens.accept({u"with"_s, u"properties"_s})) {
        node.properties = parse();
    }
    return make(start, std::move(node));
}

// New objects only ever come at the end.
void ExpressionParser::parseLocation() {
    m_tokens.accept(u"the");
    m_tokens.expect(u"end");
    if (m_tokens.accept(u"of") && acceptClass(&ScriptClass::plural) == nullptr) {
        m_tokens.fail(u"class name"_s);
    }
}

} // namespace macsim::applescript
