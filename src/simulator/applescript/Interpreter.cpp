#include "simulator/applescript/Interpreter.h"

#include "simulator/applescript/Coercions.h"
#include "simulator/applescript/Elements.h"
#include "simulator/applescript/Errors.h"
#include "simulator/applescript/Objects.h"

#include <utility>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

using Flow = Interpreter::Flow;

ScriptError located(ScriptError error, Range range) {
    if (error.end == 0) {
        error.start = range.start;
        error.end = range.end;
    }
    return error;
}

// One target of `tell`, for as long as it lives.
class Telling {
public:
    Telling(Environment& environment, ScriptApplication* target)
        : m_environment(environment) {
        m_environment.targets.push_back(target);
    }
    ~Telling() { m_environment.targets.pop_back(); }
    Telling(const Telling&) = delete;
    Telling& operator=(const Telling&) = delete;

private:
    Environment& m_environment;
};

// How long events may take, for as long as it lives.
class EventLimit {
public:
    EventLimit(Environment& environment, std::chrono::seconds limit)
        : m_environment(environment)
        , m_outer(std::exchange(environment.eventLimit, limit)) {
        m_environment.host.limitEvents(limit);
    }
    ~EventLimit() {
        m_environment.eventLimit = m_outer;
        m_environment.host.limitEvents(m_outer);
    }
    EventLimit(const EventLimit&) = delete;
    EventLimit& operator=(const EventLimit&) = delete;

private:
    Environment& m_environment;
    std::chrono::seconds m_outer;
};

// What a loop makes of the flow out of its body.
Flow afterLoop(Flow flow) {
    return flow == Flow::ExitRepeat ? Flow::Next : flow;
}

} // namespace

Flow Interpreter::run(const Block& block) {
    for (const Statement& statement : block) {
        const Flow flow = run(statement);
        if (flow != Flow::Next) {
            return flow;
        }
    }
    return Flow::Next;
}

Flow Interpreter::run(const Statement& statement) {
    try {
        return std::visit(*this, statement.node);
    } catch (const ScriptError& error) {
        throw located(error, statement.range);
    }
}

// A coercion that fails is reported at the expression that gave the value.
template <typename Coerce>
auto Interpreter::evaluateTo(Coerce coerce, const ExpressionPtr& expression) {
    const Value value = evaluate(expression);
    try {
        return coerce(value);
    } catch (const ScriptError& error) {
        throw located(error, expression->range);
    }
}

bool Interpreter::isTrue(const ExpressionPtr& condition) {
    return evaluateTo(toBoolean, condition);
}

int Interpreter::integer(const ExpressionPtr& expression) {
    return evaluateTo(toInteger, expression);
}

Flow Interpreter::operator()(const Evaluate& node) {
    m_environment.result = evaluate(node.value);
    return Flow::Next;
}

Flow Interpreter::operator()(const Assign& node) {
    const Value value = asKept(evaluate(node.value));
    m_environment.assign(node.variable, value);
    m_environment.result = value;
    return Flow::Next;
}

Flow Interpreter::operator()(const AssignProperty& node) {
    const Value owner = evaluate(node.owner);
    const Value value = contentsOf(evaluate(node.value));
    setProperty(owner, node.name, value);
    m_environment.result = value;
    return Flow::Next;
}

Flow Interpreter::operator()(const DeleteObjects& node) {
    deleteObjects(evaluate(node.objects));
    m_environment.result.reset();
    return Flow::Next;
}

Flow Interpreter::operator()(const PerformCommand& node) {
    const std::optional<Value> object = node.object ? std::optional(evaluate(node.object)) : std::nullopt;
    performCommand(*m_environment.target(), node.command, object);
    m_environment.result.reset();
    return Flow::Next;
}

Flow Interpreter::operator()(const Return& node) {
    m_environment.result = node.value ? std::optional(evaluate(node.value)) : std::nullopt;
    return Flow::Return;
}

Flow Interpreter::operator()(const If& node) {
    for (const If::Branch& branch : node.branches) {
        if (isTrue(branch.condition)) {
            return run(branch.body);
        }
    }
    return run(node.otherwise);
}

Flow Interpreter::operator()(const Repeat& node) {
    Flow flow = Flow::Next;
    while (flow == Flow::Next) {
        flow = run(node.body);
    }
    return afterLoop(flow);
}

Flow Interpreter::operator()(const RepeatTimes& node) {
    Flow flow = Flow::Next;
    for (int left = integer(node.count); left > 0 && flow == Flow::Next; --left) {
        flow = run(node.body);
    }
    return afterLoop(flow);
}

Flow Interpreter::operator()(const RepeatWhile& node) {
    Flow flow = Flow::Next;
    while (flow == Flow::Next && isTrue(node.condition) != node.untilTrue) {
        flow = run(node.body);
    }
    return afterLoop(flow);
}

// A text is the list of its characters here.
Flow Interpreter::operator()(const RepeatInList& node) {
    const auto itemsOf = [](const Value& value) { return everyElementOf(value, ElementClass::Item); };
    const List list = listOf(asKept(evaluateTo(itemsOf, node.list)));
    Flow flow = Flow::Next;
    for (qsizetype i = 0; i < list.size() && flow == Flow::Next; ++i) {
        m_environment.assign(node.variable, Value(ItemReference{list, i}));
        flow = run(node.body);
    }
    return afterLoop(flow);
}

Flow Interpreter::operator()(const RepeatInRange& node) {
    const int from = integer(node.from);
    const int to = integer(node.to);
    const int by = node.by ? integer(node.by) : 1;
    Flow flow = Flow::Next;
    for (int i = from; (by < 0 ? i >= to : i <= to) && flow == Flow::Next; i += by) {
        m_environment.assign(node.variable, Value(i));
        flow = run(node.body);
    }
    return afterLoop(flow);
}

Flow Interpreter::operator()(const ExitRepeat& /*node*/) {
    return Flow::ExitRepeat;
}

Flow Interpreter::operator()(const Try& node) {
    try {
        return run(node.body);
    } catch (const ScriptError& error) {
        return handle(node, error);
    }
}

Flow Interpreter::handle(const Try& node, const ScriptError& error) {
    if (!node.messageVariable.isEmpty()) {
        m_environment.assign(node.messageVariable, Value(error.message));
    }
    if (!node.numberVariable.isEmpty()) {
        m_environment.assign(node.numberVariable, Value(error.number));
    }
    return run(node.handler);
}

Flow Interpreter::operator()(const RaiseError& node) {
    ScriptError error = numberedError(node.number ? integer(node.number) : kUnnumberedError);
    if (node.message) {
        error.message = evaluateTo(toText, node.message);
    }
    throw error;
}

Flow Interpreter::operator()(const Tell& node) {
    const Telling telling(m_environment, findTarget(node));
    return run(node.body);
}

Flow Interpreter::operator()(const WithTimeout& node) {
    const EventLimit limit(m_environment, std::chrono::seconds(integer(node.seconds)));
    return run(node.body);
}

ScriptApplication* Interpreter::findTarget(const Tell& node) {
    if (!node.application) {
        return nullptr;
    }
    ScriptApplication* application = m_environment.host.findApplication(*node.application);
    if (application == nullptr) {
        throw cannotGet(u"application "_s + sourceForm(Value(*node.application)));
    }
    return application;
}

} // namespace macsim::applescript
