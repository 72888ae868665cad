#pragma once

#include "simulator/applescript/AppleScript.h"
#include "simulator/applescript/SyntaxTree.h"
#include "simulator/applescript/Value.h"

#include <QHash>

#include <chrono>
#include <optional>
#include <vector>

namespace macsim::applescript {

/// What a running script has: its variables (their case does not count), the value of the statement before,
/// and whom it is telling.
struct Environment {
    ScriptHost& host;
    QHash<QString, Value> variables = {};
    std::optional<Value> result = {};
    std::vector<ScriptApplication*> targets = {}; ///< of the open `tell`s, innermost last; null: the script itself

    std::chrono::seconds eventLimit = kEventLimit;

    std::vector<Value> testedObjects = {}; ///< by the `whose` that are running, innermost last

    void assign(const QString& variable, const Value& value) { variables[variable.toCaseFolded()] = value; }
    ScriptApplication* target() const { return targets.empty() ? nullptr : targets.back(); }
};

/// Gives the values of expressions. Throws ScriptError with the place of the innermost expression that
/// failed.
class Evaluator {
public:
    explicit Evaluator(Environment& environment)
        : m_environment(environment) {}

    Value evaluate(const Expression& expression);

    // One for each kind of expression.
    Value operator()(const Literal& literal) const { return literal.value; }
    Value operator()(const Variable& variable) const;
    Value operator()(const LastResult& node) const;
    Value operator()(const TellTarget& node) const;
    Value operator()(const TestedObject& node) const;
    Value operator()(const ScriptItself& node) const;
    Value operator()(const ListDisplay& display);
    Value operator()(const RecordDisplay& display);
    Value operator()(const OperatorChain& chain);
    Value operator()(const Negative& node);
    Value operator()(const Not& node);
    Value operator()(const Coercion& coercion);
    Value operator()(const PropertyOf& property);
    Value operator()(const ElementOf& element);
    Value operator()(const ApplicationObjects& node);
    Value operator()(const MakeObject& node);
    Value operator()(const Exists& node);
    Value operator()(const CountOf& node);
    Value operator()(const ShellScript& command);

private:
    Value applied(const OperatorChain::Link& link, Value left);
    List passing(const List& objects, const Expression& condition);
    List asked(const ApplicationObjects& node);
    std::optional<QString> optionalText(const ExpressionPtr& expression);

    Environment& m_environment;
};

} // namespace macsim::applescript
