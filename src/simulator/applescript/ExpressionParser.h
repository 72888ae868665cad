#pragma once

#include "simulator/applescript/SyntaxTree.h"
#include "simulator/applescript/TokenStream.h"

namespace macsim::applescript {

/// Parses one expression at the place where the tokens are. Throws ScriptError -2741.
class ExpressionParser {
public:
    explicit ExpressionParser(TokenStream& tokens)
        : m_tokens(tokens) {}

    ExpressionPtr parse();

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
    ExpressionPtr parseTerm();
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
    ExpressionPtr parseShellScript(int start);
    bool parseShellParameter(ShellScript& command);
    bool parseShellOption(ShellScript& command);
    void parseOnce(ExpressionPtr& parameter);

    template <typename Node>
    ExpressionPtr make(int start, Node node) const {
        return std::make_unique<Expression>(Expression{m_tokens.rangeFrom(start), std::move(node)});
    }

    TokenStream& m_tokens;
};

} // namespace macsim::applescript
