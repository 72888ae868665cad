// Text compares without regard to case. Values of different types are not equal, and that is no error; where
// an operator needs one type, the right value is made into the type of the left one.

#include "simulator/applescript/Operations.h"

#include "simulator/applescript/Coercions.h"
#include "simulator/applescript/Errors.h"

#include <algorithm>
#include <cmath>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

bool areEqual(const Value& left, const Value& right);

bool areEqualLists(const List& left, const List& right) {
    return std::ranges::equal(left.values(), right.values(), areEqual);
}

bool areEqualRecords(const Record& left, const Record& right) {
    return left.names().size() == right.names().size() && std::ranges::all_of(left.names(), [&](const QString& name) {
               const Value* other = right.find(name);
               return other != nullptr && areEqual(*left.find(name), *other);
           });
}

// One value of each alternative with the same type on both sides.
struct Equality {
    bool operator()(MissingValue, MissingValue) const { return true; }
    bool operator()(bool left, bool right) const { return left == right; }
    bool operator()(const QString& left, const QString& right) const {
        return left.compare(right, Qt::CaseInsensitive) == 0;
    }
    bool operator()(const List& left, const List& right) const { return areEqualLists(left, right); }
    bool operator()(const Record& left, const Record& right) const { return areEqualRecords(left, right); }
    bool operator()(const ItemReference& left, const ItemReference& right) const {
        return left.index == right.index && areEqualLists(left.list, right.list);
    }
    bool operator()(const ObjectReference& left, const ObjectReference& right) const {
        const bool areObjects = left.object != nullptr && right.object != nullptr;
        return left.application == right.application &&
               (areObjects ? *left.object == *right.object : left.object == right.object);
    }
    bool operator()(const ClassName& left, const ClassName& right) const { return left.name == right.name; }
    template <typename Left, typename Right>
    bool operator()(const Left& left, const Right& right) const {
        if constexpr (isNumber<Left> && isNumber<Right>) {
            return std::equal_to<double>()(left, right);
        } else {
            return false;
        }
    }
    template <typename T>
    static constexpr bool isNumber = std::is_same_v<T, int> || std::is_same_v<T, double>;
};

bool areEqual(const Value& left, const Value& right) {
    return std::visit(Equality(), left.data(), right.data());
}

// Less than 0, 0, or greater than 0.
int compared(const Value& left, const Value& right) {
    if (const auto* text = contentsOf(left).get<QString>()) {
        return text->compare(toText(right), Qt::CaseInsensitive);
    }
    const double first = toNumber(left).value;
    const double second = toNumber(right).value;
    return first < second ? -1 : first > second ? 1 : 0;
}

bool holdsAt(const List& whole, qsizetype at, const List& part) {
    for (qsizetype i = 0; i < part.size(); ++i) {
        if (!areEqual(whole.at(at + i), part.at(i))) {
            return false;
        }
    }
    return true;
}

bool holds(const List& whole, const List& part) {
    for (qsizetype at = 0; at + part.size() <= whole.size(); ++at) {
        if (holdsAt(whole, at, part)) {
            return true;
        }
    }
    return false;
}

bool holds(const Record& whole, const Record& part) {
    return std::ranges::all_of(part.names(), [&](const QString& name) {
        const Value* value = whole.find(name);
        return value != nullptr && areEqual(*value, *part.find(name));
    });
}

bool contains(const Value& whole, const Value& part) {
    const Value& container = contentsOf(whole);
    if (const auto* list = container.get<List>()) {
        return holds(*list, listOf(part));
    }
    if (const auto* record = container.get<Record>()) {
        const auto* other = contentsOf(part).get<Record>();
        return other != nullptr && holds(*record, *other);
    }
    return toText(container).contains(toText(part), Qt::CaseInsensitive);
}

bool startsWith(const Value& whole, const Value& part) {
    if (const auto* list = contentsOf(whole).get<List>()) {
        const List beginning = listOf(part);
        return beginning.size() <= list->size() && holdsAt(*list, 0, beginning);
    }
    return toText(whole).startsWith(toText(part), Qt::CaseInsensitive);
}

bool endsWith(const Value& whole, const Value& part) {
    if (const auto* list = contentsOf(whole).get<List>()) {
        const List ending = listOf(part);
        return ending.size() <= list->size() && holdsAt(*list, list->size() - ending.size(), ending);
    }
    return toText(whole).endsWith(toText(part), Qt::CaseInsensitive);
}

// Texts join to a text when the right side has one, records to a record; anything else becomes a list. The
// left value is changed in place: a long chain takes time in proportion to its length.
Value concatenated(Value left, const Value& right) {
    Value joined = contentsOf(left);
    left = Value();
    if (auto* text = joined.get<QString>()) {
        if (const auto addition = textOf(right)) {
            *text += *addition;
            return joined;
        }
    }
    auto* record = joined.get<Record>();
    const auto* otherRecord = contentsOf(right).get<Record>();
    if (record != nullptr && otherRecord != nullptr) {
        record->insert(*otherRecord);
        return joined;
    }
    if (auto* list = joined.get<List>()) {
        list->append(listOf(right));
        return joined;
    }
    List list = listOf(joined);
    list.append(listOf(right));
    return Value(list);
}

Number quotient(Operator operation, Number left, Number right) {
    if (right.value == 0.0) {
        throw dividedByZero(readableForm(operation == Operator::Divide ? Value(left.value) : valueOf(left)));
    }
    switch (operation) {
    case Operator::IntegerDivide:
        return {std::trunc(left.value / right.value), true};
    case Operator::Modulo:
        return {std::fmod(left.value, right.value), left.isInteger && right.isInteger};
    default:
        return {left.value / right.value, false};
    }
}

Value calculated(Operator operation, const Value& leftValue, const Value& rightValue) {
    const Number left = toNumber(leftValue);
    const Number right = toNumber(rightValue);
    const bool areIntegers = left.isInteger && right.isInteger;
    switch (operation) {
    case Operator::Add:
        return valueOf({left.value + right.value, areIntegers});
    case Operator::Subtract:
        return valueOf({left.value - right.value, areIntegers});
    case Operator::Multiply:
        return valueOf({left.value * right.value, areIntegers});
    default:
        return valueOf(quotient(operation, left, right));
    }
}

bool isTrue(Operator question, const Value& left, const Value& right) {
    switch (question) {
    case Operator::Equal:
        return areEqual(left, right);
    case Operator::NotEqual:
        return !areEqual(left, right);
    case Operator::Contains:
        return contains(left, right);
    case Operator::DoesNotContain:
        return !contains(left, right);
    case Operator::IsIn:
        return contains(right, left);
    case Operator::IsNotIn:
        return !contains(right, left);
    case Operator::StartsWith:
        return startsWith(left, right);
    case Operator::EndsWith:
        return endsWith(left, right);
    case Operator::Less:
        return compared(left, right) < 0;
    case Operator::LessOrEqual:
        return compared(left, right) <= 0;
    case Operator::Greater:
        return compared(left, right) > 0;
    default:
        return compared(left, right) >= 0;
    }
}

} // namespace

Value operate(Operator operation, Value left, const Value& right) {
    switch (operation) {
    case Operator::Concatenate:
        return concatenated(std::move(left), right);
    case Operator::Add:
    case Operator::Subtract:
    case Operator::Multiply:
    case Operator::Divide:
    case Operator::IntegerDivide:
    case Operator::Modulo:
        return calculated(operation, left, right);
    default:
        return Value(isTrue(operation, left, right));
    }
}

Value negated(const Value& value) {
    const Number number = toNumber(value);
    return valueOf({-number.value, number.isInteger});
}

} // namespace macsim::applescript
