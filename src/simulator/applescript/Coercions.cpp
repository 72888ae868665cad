#include "simulator/applescript/Coercions.h"

#include "simulator/applescript/Errors.h"

#include <QRegularExpression>

#include <cmath>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

bool fitsInteger(double number) {
    return number >= kSmallestInteger && number <= kLargestInteger;
}

// The only item of a list, for every coercion that takes a list of one.
const Value* onlyItemOf(const Value& value) {
    const auto* list = value.get<List>();
    return list != nullptr && list->size() == 1 ? &contentsOf(list->at(0)) : nullptr;
}

std::optional<Number> numberIn(const QString& text) {
    static const QRegularExpression pattern(
        QRegularExpression::anchoredPattern(uR"([+-]?(\d+(\.\d*)?|\.\d+)([eE][+-]?\d+)?)"_s));
    const QString digits = text.trimmed();
    const QRegularExpressionMatch match = pattern.match(digits);
    if (!match.hasMatch()) {
        return std::nullopt;
    }
    const bool isInteger = !digits.contains(u'.') && match.captured(3).isEmpty();
    return Number{digits.toDouble(), isInteger};
}

std::optional<QString> joined(const List& list) {
    QString text;
    for (const Value& item : list.values()) {
        const std::optional<QString> itemText = textOf(item);
        if (!itemText) {
            return std::nullopt;
        }
        text += *itemText;
    }
    return text;
}

} // namespace

const Value& contentsOf(const Value& value) {
    const Value* contents = &value;
    while (const auto* reference = contents->get<ItemReference>()) {
        contents = &reference->list.at(reference->index);
    }
    return *contents;
}

std::optional<QString> textOf(const Value& value) {
    const Value& contents = contentsOf(value);
    if (const auto* text = contents.get<QString>()) {
        return *text;
    }
    if (const auto* list = contents.get<List>()) {
        return joined(*list);
    }
    if (contents.get<Record>() != nullptr || contents.get<ObjectReference>() != nullptr) {
        return std::nullopt;
    }
    return readableForm(contents);
}

std::optional<Number> numberOf(const Value& value) {
    const Value& contents = contentsOf(value);
    if (const auto* integer = contents.get<int>()) {
        return Number{static_cast<double>(*integer), true};
    }
    if (const auto* real = contents.get<double>()) {
        return Number{*real, false};
    }
    if (const auto* truth = contents.get<bool>()) {
        return Number{*truth ? 1.0 : 0.0, true};
    }
    if (const auto* text = contents.get<QString>()) {
        return numberIn(*text);
    }
    const Value* only = onlyItemOf(contents);
    return only != nullptr ? numberOf(*only) : std::nullopt;
}

std::optional<bool> booleanOf(const Value& value) {
    const Value& contents = contentsOf(value);
    if (const auto* truth = contents.get<bool>()) {
        return *truth;
    }
    if (const auto* integer = contents.get<int>(); integer != nullptr && (*integer == 0 || *integer == 1)) {
        return *integer == 1;
    }
    if (const auto* text = contents.get<QString>()) {
        const bool isTrue = text->compare(u"true", Qt::CaseInsensitive) == 0;
        const bool isFalse = text->compare(u"false", Qt::CaseInsensitive) == 0;
        return isTrue || isFalse ? std::optional(isTrue) : std::nullopt;
    }
    const Value* only = onlyItemOf(contents);
    return only != nullptr ? booleanOf(*only) : std::nullopt;
}

List listOf(const Value& value) {
    const Value& contents = contentsOf(value);
    if (const auto* list = contents.get<List>()) {
        return *list;
    }
    if (const auto* record = contents.get<Record>()) {
        return record->values();
    }
    List list;
    list.append(contents);
    return list;
}

QString toText(const Value& value) {
    if (const auto text = textOf(value)) {
        return *text;
    }
    throw cannotMake(value, u"Unicode text"_s);
}

Number toNumber(const Value& value) {
    if (const auto number = numberOf(value)) {
        return *number;
    }
    throw cannotMake(value, u"number"_s);
}

// Halves go to the even neighbour.
int toInteger(const Value& value) {
    const std::optional<Number> number = numberOf(value);
    if (!number || !fitsInteger(std::nearbyint(number->value))) {
        throw cannotMake(value, u"integer"_s);
    }
    return static_cast<int>(std::nearbyint(number->value));
}

bool toBoolean(const Value& value) {
    if (const auto truth = booleanOf(value)) {
        return *truth;
    }
    throw cannotMake(value, u"boolean"_s);
}

Value coerced(const Value& value, TypeName type) {
    switch (type) {
    case TypeName::Text:
        return Value(toText(value));
    case TypeName::Integer:
        return Value(toInteger(value));
    case TypeName::Number:
        return valueOf(toNumber(value));
    case TypeName::Boolean:
        return Value(toBoolean(value));
    case TypeName::List:
        break;
    }
    return Value(listOf(value));
}

Value valueOf(Number number) {
    if (!std::isfinite(number.value)) {
        throw numberTooLarge();
    }
    const bool isInteger = number.isInteger && fitsInteger(number.value);
    return isInteger ? Value(static_cast<int>(number.value)) : Value(number.value);
}

} // namespace macsim::applescript
