#pragma once

#include "simulator/applescript/AppleScript.h"
#include "simulator/applescript/SyntaxTree.h"
#include "simulator/applescript/TokenStream.h"

namespace macsim::applescript {

/// Parses one expression at the place where the tokens are. Throws ScriptError -2741.
class ExpressionParser {
public:
    explicit ExpressionParser(TokenStream& tokens)
        : m_tokens(tokens) {}

    ExpressionPtr parse();
    /// One term: what operators stand between.
    ExpressionPtr parseTerm();

    /// The words that the application of the innermost `tell` adds; null for none.
    void setDictionary(const ScriptDictionary* dictionary) { m_dictionary = dictionary; }
    const ScriptDictionary* dictionary() const { return m_dictionary; }
    /// Whether a property of the dictionary stands here, as in `hidden of x` and in `whose hidden is true`.
    bool atProperty() const;
    /// Takes a command of the dictionary and gives it as the dictionary spells it; empty where none stands here.
    QString acceptCommand();

    /// Takes the name of a variable that is given a value. The language's own terms ("item", "length") are
    /// none.
    QString takeVariableName();

private:
    // Operators, from the weakest to the strongest.
    ExpressionPtr parseChain(Precedence precedence);
    ExpressionPtr parseOperand(Precedence precedence);
    ExpressionPtr parseNot();
    ExpressionPtr parseCoercion();
    ExpressionPtr parseSigned();
    TypeName parseTypeName();

    // Terms: what operators stand between.
    ExpressionPtr parseLanguageTerm();
    ExpressionPtr parseElements();
    ExpressionPtr parseElementAfter(ElementSelection selection, int start);
    ExpressionPtr parseElementIndex();
    ExpressionPtr parseOwner();
    ExpressionPtr parsePropertyOf(const QString& name, int start);
    ExpressionPtr parseCount(int start);
    ExpressionPtr parseNamed();
    ExpressionPtr parseUnnamed();
    ExpressionPtr parseNumber();
    ExpressionPtr parseParenthesis();
    ExpressionPtr parseBraces();
    ExpressionPtr parseList(int start);
    ExpressionPtr parseRecord(int start);

    // The words of a dictionary; each gives null where none of them stands here.
    const ScriptClass* acceptClass(QString ScriptClass::*words);
    ExpressionPtr parseObjects();
    ExpressionPtr parseObjectsAfter(ElementSelection selection, int start);
    ExpressionPtr parseSelected(const ScriptClass& objectClass, ElementSelection selection, ExpressionPtr index,
                                int start);
    ExpressionPtr parseCondition();
    ExpressionPtr parseImpliedProperty();
    ExpressionPtr parseObjectCommand();
    ExpressionPtr parseMake(int start);
    void parseLocation();

    // Commands of the language.
    ExpressionPtr parseShellScript(int start);
    bool parseShellParameter(ShellScript& command);
    bool parseShellOption(ShellScript& command);
    void parseOnce(ExpressionPtr& parameter);

    template <typename Node>
    ExpressionPtr make(int start, Node node) const {
        return std::make_unique<Expression>(Expression{m_tokens.rangeFrom(start), std::move(node)});
    }

    TokenStream& m_tokens;
    const ScriptDictionary* m_dictionary = nullptr;
    bool m_isInCondition = false; ///< of a `whose`: its properties and `it` belong to the object that is tested
};

} // namespace macsim::applescript
