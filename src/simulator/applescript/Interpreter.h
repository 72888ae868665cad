#pragma once

#include "simulator/applescript/Evaluator.h"
#include "simulator/applescript/SyntaxTree.h"

namespace macsim::applescript {

/// Runs statements. Throws ScriptError where one fails and no `try` is around it.
class Interpreter {
public:
    /// Where it goes on after a statement.
    enum class Flow { Next, ExitRepeat, Return };

    explicit Interpreter(Environment& environment)
        : m_environment(environment)
        , m_evaluator(environment) {}

    Flow run(const Block& block);

    // One for each kind of statement.
    Flow operator()(const Evaluate& node);
    Flow operator()(const Assign& node);
    Flow operator()(const AssignProperty& node);
    Flow operator()(const DeleteObjects& node);
    Flow operator()(const PerformCommand& node);
    Flow operator()(const Return& node);
    Flow operator()(const If& node);
    Flow operator()(const Repeat& node);
    Flow operator()(const RepeatTimes& node);
    Flow operator()(const RepeatWhile& node);
    Flow operator()(const RepeatInList& node);
    Flow operator()(const RepeatInRange& node);
    Flow operator()(const ExitRepeat& node);
    Flow operator()(const Try& node);
    Flow operator()(const RaiseError& node);
    Flow operator()(const Tell& node);
    Flow operator()(const WithTimeout& node);

private:
    Flow run(const Statement& statement);
    Flow handle(const Try& node, const ScriptError& error);
    ScriptApplication* findTarget(const Tell& node);
    Value evaluate(const ExpressionPtr& expression) { return m_evaluator.evaluate(*expression); }
    template <typename Coerce>
    auto evaluateTo(Coerce coerce, const ExpressionPtr& expression);
    bool isTrue(const ExpressionPtr& condition);
    int integer(const ExpressionPtr& expression);

    Environment& m_environment;
    Evaluator m_evaluator;
};

} // namespace macsim::applescript
