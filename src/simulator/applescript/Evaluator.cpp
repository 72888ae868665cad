#include "simulator/applescript/Evaluator.h"

#include "simulator/applescript/Coercions.h"
#include "simulator/applescript/Elements.h"
#include "simulator/applescript/Errors.h"
#include "simulator/applescript/Objects.h"
#include "simulator/applescript/Operations.h"
#include "simulator/applescript/ShellCommand.h"

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

constexpr int kNoSuchObject = -1728;
constexpr int kInvalidIndex = -1719;

// `every login item` as it was written, and not a list that a variable holds: its properties are those of each.
bool namesSeveralObjects(const Expression& expression) {
    const auto* objects = std::get_if<ApplicationObjects>(&expression.node);
    return objects != nullptr && objects->selection == ElementSelection::Every;
}

Value propertyOfEach(const Value& owners, const QString& name) {
    const List list = listOf(owners);
    List values;
    for (const Value& owner : list.values()) {
        values.append(propertyOf(owner, name));
    }
    return Value(values);
}

// One object that a `whose` asks about, for as long as it lives.
class Testing {
public:
    Testing(Environment& environment, const Value& object)
        : m_environment(environment) {
        m_environment.testedObjects.push_back(object);
    }
    ~Testing() { m_environment.testedObjects.pop_back(); }
    Testing(const Testing&) = delete;
    Testing& operator=(const Testing&) = delete;

private:
    Environment& m_environment;
};

} // namespace

Value Evaluator::evaluate(const Expression& expression) {
    try {
        return std::visit(*this, expression.node);
    } catch (ScriptError& error) {
        if (error.end == 0) {
            error.start = expression.range.start;
            error.end = expression.range.end;
        }
        throw;
    }
}

Value Evaluator::operator()(const Variable& variable) const {
    const auto found = m_environment.variables.constFind(variable.name.toCaseFolded());
    if (found == m_environment.variables.constEnd()) {
        throw undefinedVariable(variable.name);
    }
    return *found;
}

Value Evaluator::operator()(const LastResult& /*node*/) const {
    if (!m_environment.result) {
        throw undefinedVariable(u"result"_s);
    }
    return *m_environment.result;
}

Value Evaluator::operator()(const TellTarget& /*node*/) const {
    return Value(ObjectReference{m_environment.target()});
}

Value Evaluator::operator()(const TestedObject& /*node*/) const {
    return m_environment.testedObjects.back();
}

Value Evaluator::operator()(const ScriptItself& /*node*/) const {
    return Value(ObjectReference{});
}

Value Evaluator::operator()(const ListDisplay& display) {
    List list;
    for (const ExpressionPtr& item : display.items) {
        list.append(evaluate(*item));
    }
    return Value(list);
}

Value Evaluator::operator()(const RecordDisplay& display) {
    Record record;
    for (const RecordDisplay::Field& field : display.fields) {
        record.insert(field.name, evaluate(*field.value));
    }
    return Value(record);
}

Value Evaluator::operator()(const OperatorChain& chain) {
    Value value = evaluate(*chain.first);
    for (const OperatorChain::Link& link : chain.links) {
        value = applied(link, std::move(value));
    }
    return value;
}

// The right side of `and` and `or` is looked at only where it decides.
Value Evaluator::applied(const OperatorChain::Link& link, Value left) {
    if (link.operation == Operator::And) {
        return Value(toBoolean(left) && toBoolean(evaluate(*link.operand)));
    }
    if (link.operation == Operator::Or) {
        return Value(toBoolean(left) || toBoolean(evaluate(*link.operand)));
    }
    return operate(link.operation, std::move(left), evaluate(*link.operand));
}

Value Evaluator::operator()(const Negative& node) {
    return negated(evaluate(*node.operand));
}

Value Evaluator::operator()(const Not& node) {
    return Value(!toBoolean(evaluate(*node.operand)));
}

Value Evaluator::operator()(const Coercion& coercion) {
    Value value = evaluate(*coercion.operand);
    for (const TypeName type : coercion.types) {
        value = coerced(value, type);
    }
    return value;
}

Value Evaluator::operator()(const PropertyOf& property) {
    const Value owner = evaluate(*property.owner);
    return namesSeveralObjects(*property.owner) ? propertyOfEach(owner, property.name)
                                                : propertyOf(owner, property.name);
}

Value Evaluator::operator()(const ElementOf& element) {
    const Value owner = evaluate(*element.owner);
    switch (element.selection) {
    case ElementSelection::Every:
        return everyElementOf(owner, element.elements);
    case ElementSelection::Last:
        return lastElementOf(owner, element.elements);
    case ElementSelection::ByIndex:
        break;
    }
    return elementOf(owner, element.elements, evaluate(*element.index));
}

Value Evaluator::operator()(const ApplicationObjects& node) {
    ScriptApplication& application = *m_environment.target();
    if (node.selection == ElementSelection::Every) {
        return Value(asked(node));
    }
    const Value index = node.index ? evaluate(*node.index) : Value(-1);
    if (const auto* name = contentsOf(index).get<QString>()) {
        return objectNamed(asked(node), *name, application, node.className);
    }
    return node.condition ? objectAt(asked(node), toInteger(index), application, node.className)
                          : objectAt(application, node.className, toInteger(index));
}

List Evaluator::asked(const ApplicationObjects& node) {
    const List all = objectsOf(*m_environment.target(), node.className);
    return node.condition ? passing(all, *node.condition) : all;
}

// The objects that a condition is true of.
List Evaluator::passing(const List& objects, const Expression& condition) {
    List found;
    for (const Value& object : objects.values()) {
        const Testing testing(m_environment, object);
        if (toBoolean(evaluate(condition))) {
            found.append(object);
        }
    }
    return found;
}

Value Evaluator::operator()(const MakeObject& node) {
    const Value properties = node.properties ? evaluate(*node.properties) : Value(Record());
    const auto* record = contentsOf(properties).get<Record>();
    if (record == nullptr) {
        throw cannotMake(properties, u"record"_s);
    }
    ScriptApplication* application = m_environment.target();
    const ScriptObject made = application->make(node.className, *record);
    return Value(ObjectReference{application, std::make_shared<const ScriptObject>(made)});
}

Value Evaluator::operator()(const Exists& node) {
    try {
        return Value(isThere(evaluate(*node.object)));
    } catch (const ScriptError& error) {
        if (error.number != kNoSuchObject && error.number != kInvalidIndex) {
            throw;
        }
        return Value(false);
    }
}

Value Evaluator::operator()(const CountOf& node) {
    return Value(countOf(evaluate(*node.owner)));
}

// An application that is told to run a line as root would have to get root itself, and does not: only the
// script can.
Value Evaluator::operator()(const ShellScript& command) {
    ShellScriptRequest request;
    request.line = toText(evaluate(*command.line));
    request.withAdministratorPrivileges = command.administratorPrivileges.value_or(false);
    request.prompt = optionalText(command.prompt);
    request.userName = optionalText(command.userName);
    request.password = optionalText(command.password);
    if (request.withAdministratorPrivileges && m_environment.target() != nullptr) {
        throw privilegeViolation();
    }
    const bool areAltered = command.alteringLineEndings.value_or(true);
    const LineEndings lineEndings = areAltered ? LineEndings::Altered : LineEndings::Kept;
    return Value(runShellScript(request, lineEndings, m_environment.host));
}

std::optional<QString> Evaluator::optionalText(const ExpressionPtr& expression) {
    return expression ? std::optional(toText(evaluate(*expression))) : std::nullopt;
}

} // namespace macsim::applescript
