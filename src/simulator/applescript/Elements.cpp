#include "simulator/applescript/Elements.h"

#include "simulator/applescript/Coercions.h"
#include "simulator/applescript/Errors.h"
#include "simulator/applescript/Objects.h"

#include <QTextBoundaryFinder>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

QString className(ElementClass elements) {
    return elements == ElementClass::Item ? u"item"_s : u"character"_s;
}

List charactersOf(const QString& text) {
    List characters;
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (qsizetype start = 0, end = 0; (end = finder.toNextBoundary()) > 0; start = end) {
        characters.append(Value(text.sliced(start, end - start)));
    }
    return characters;
}

// Nothing where a value of this type has no such elements.
std::optional<List> elementsOf(const Value& owner, ElementClass elements) {
    const Value& contents = contentsOf(owner);
    if (const auto* text = contents.get<QString>()) {
        return charactersOf(*text);
    }
    if (elements != ElementClass::Item) {
        return std::nullopt;
    }
    if (const auto* container = contents.get<ObjectReference>()) {
        return itemsIn(*container);
    }
    const auto* list = contents.get<List>();
    return list != nullptr ? std::optional(*list) : std::nullopt;
}

QString quotedForm(const Value& owner) {
    const auto* text = contentsOf(owner).get<QString>();
    if (text == nullptr) {
        throw cannotGet(u"quoted form of "_s + sourceForm(owner));
    }
    return u'\'' + QString(*text).replace(u'\'', u"'\\''"_s) + u'\'';
}

const Value* fieldOf(const Value& owner, const QString& name) {
    const auto* record = contentsOf(owner).get<Record>();
    return record != nullptr ? record->find(name) : nullptr;
}

} // namespace

Value propertyOf(const Value& owner, const QString& name) {
    if (const Value* field = fieldOf(owner, name)) {
        return *field;
    }
    if (name == u"contents") {
        return contentsOf(owner);
    }
    const auto* reference = contentsOf(owner).get<ObjectReference>();
    if (reference != nullptr && reference->application != nullptr) {
        return propertyOfObject(*reference, name);
    }
    if (name == u"length") {
        return Value(countOf(owner));
    }
    if (name == u"quoted form") {
        return Value(quotedForm(owner));
    }
    throw cannotGet(name + u" of "_s + sourceForm(owner));
}

Value everyElementOf(const Value& owner, ElementClass elements) {
    if (auto all = elementsOf(owner, elements)) {
        return Value(*std::move(all));
    }
    throw cannotGet(u"every "_s + className(elements) + u" of "_s + sourceForm(owner));
}

Value lastElementOf(const Value& owner, ElementClass elements) {
    const auto all = elementsOf(owner, elements);
    if (!all || all->size() == 0) {
        throw cannotGet(u"last "_s + className(elements) + u" of "_s + sourceForm(owner));
    }
    return all->at(all->size() - 1);
}

Value elementOf(const Value& owner, ElementClass elements, const Value& index) {
    const auto all = elementsOf(owner, elements);
    const bool isName = contentsOf(index).get<QString>() != nullptr;
    const qsizetype number = isName ? 0 : toInteger(index);
    const qsizetype count = all ? all->size() : 0;
    const qsizetype at = number < 0 ? count + number : number - 1;
    if (at < 0 || at >= count) {
        throw cannotGet(className(elements) + u' ' + sourceForm(index) + u" of "_s + sourceForm(owner));
    }
    return all->at(at);
}

int countOf(const Value& owner) {
    const Value& contents = contentsOf(owner);
    if (const auto all = elementsOf(contents, ElementClass::Item)) {
        return static_cast<int>(all->size());
    }
    if (const auto* record = contents.get<Record>()) {
        return static_cast<int>(record->names().size());
    }
    throw cannotGet(u"length of "_s + sourceForm(owner));
}

} // namespace macsim::applescript
