#pragma once

#include "simulator/applescript/ExpressionParser.h"
#include "simulator/applescript/SyntaxTree.h"
#include "simulator/applescript/TokenStream.h"

namespace macsim::applescript {

/// Compiles a source: parses all of it, or throws ScriptError -2741 for its first mistake.
/// @param host  whose dictionaries give the words inside a `tell`
Block parseScript(const QString& source, ScriptHost& host);

/// Parses statements: one to a line, and blocks up to their `end`.
class StatementParser {
public:
    StatementParser(TokenStream& tokens, ScriptHost& host)
        : m_tokens(tokens)
        , m_host(host)
        , m_expressions(tokens) {}

    Block parseAll();

private:
    Statement parseStatement();
    Statement parseSimple();
    Statement parseBlockOrSimple();

    Block parseBlock(const QList<QStringView>& endings);
    Block parseBody(QStringView keyword);
    Block parseOneLine();
    void expectEnd(QStringView keyword);

    Statement parseValue(int start);
    Statement parseSet(int start);
    Statement parseSetProperty(int start);
    Statement parseDelete(int start);
    Statement parseCommand(const QString& command, int start);
    Statement parseCopy(int start);
    Statement parseReturn(int start);
    Statement parseError(int start);
    Statement parseExit(int start);

    Statement parseIf(int start);
    If::Branch parseBranch();
    Statement parseRepeat(int start);
    Statement parseRepeatTimes(int start);
    Statement parseRepeatWhile(int start, bool untilTrue);
    Statement parseRepeatWith(int start);
    RepeatInRange parseRange(QString variable);
    Block parseLoopBody();
    Statement parseTry(int start);
    Statement parseTell(int start);
    Statement parseWithTimeout(int start);
    std::optional<QString> parseTellTarget();
    Block parseTold(const ScriptDictionary* dictionary);

    template <typename Node>
    Statement make(int start, Node node) const {
        return {m_tokens.rangeFrom(start), std::move(node)};
    }

    TokenStream& m_tokens;
    ScriptHost& m_host;
    ExpressionParser m_expressions;
    int m_loops = 0; ///< how many `repeat` are open
};

} // namespace macsim::applescript
