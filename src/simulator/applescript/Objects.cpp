#include "simulator/applescript/Objects.h"

#include "simulator/applescript/AppleScript.h"
#include "simulator/applescript/Coercions.h"
#include "simulator/applescript/Errors.h"

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

// As an application writes it, which leaves out itself.
QString specifier(const ScriptObject& object) {
    return object.name.isEmpty() ? object.className : object.className + u' ' + sourceForm(Value(object.name));
}

// Throws where the value is no object.
const ObjectReference& objectIn(const Value& value, const QString& wanted) {
    const auto* reference = contentsOf(value).get<ObjectReference>();
    if (reference == nullptr || reference->object == nullptr) {
        throw cannotGet(wanted + sourceForm(value));
    }
    return *reference;
}

template <typename Act>
void forEachObject(const Value& objects, const QString& wanted, Act act) {
    const auto* list = contentsOf(objects).get<List>();
    if (list == nullptr) {
        return act(objectIn(objects, wanted));
    }
    for (const Value& each : list->values()) {
        act(objectIn(each, wanted));
    }
}

List referencesTo(const QList<ScriptObject>& objects, ScriptApplication& application) {
    List references;
    for (const ScriptObject& object : objects) {
        references.append(Value(ObjectReference{&application, std::make_shared<const ScriptObject>(object)}));
    }
    return references;
}

} // namespace

List objectsOf(ScriptApplication& application, const QString& className) {
    return referencesTo(application.objects(className), application);
}

std::optional<List> itemsIn(const ObjectReference& container) {
    if (container.object == nullptr) {
        return std::nullopt;
    }
    const auto objects = container.application->itemsIn(*container.object);
    return objects ? std::optional(referencesTo(*objects, *container.application)) : std::nullopt;
}

Value objectAt(ScriptApplication& application, const QString& className, int index) {
    const qsizetype position = index < 0 ? application.objects(className).size() + index : index - qsizetype(1);
    if (const auto object = application.objectAt(className, position)) {
        return Value(ObjectReference{&application, std::make_shared<const ScriptObject>(*object)});
    }
    throw invalidIndex(application, className + u' ' + QString::number(index));
}

Value objectAt(const List& objects, int index, ScriptApplication& application, const QString& className) {
    const qsizetype at = index < 0 ? objects.size() + index : index - 1;
    if (at < 0 || at >= objects.size()) {
        throw invalidIndex(application, className + u' ' + QString::number(index));
    }
    return objects.at(at);
}

Value objectNamed(const List& objects, const QString& name, ScriptApplication& application, const QString& className) {
    for (const Value& each : objects.values()) {
        const auto* reference = each.get<ObjectReference>();
        if (reference->object->name.compare(name, Qt::CaseInsensitive) == 0) {
            return each;
        }
    }
    throw cannotGetFrom(application, className + u' ' + sourceForm(Value(name)));
}

Value propertyOfObject(const ObjectReference& owner, const QString& name) {
    if (owner.object == nullptr) {
        if (name.compare(u"name", Qt::CaseInsensitive) == 0) {
            return Value(owner.application->name());
        }
        return owner.application->ownProperty(name.toLower());
    }
    if (name.compare(u"class", Qt::CaseInsensitive) == 0) {
        return Value(ClassName{owner.object->className});
    }
    if (const auto value = owner.application->property(*owner.object, name.toLower())) {
        return *value;
    }
    throw cannotGetFrom(*owner.application, name + u" of "_s + specifier(*owner.object));
}

void setProperty(const Value& owner, const QString& name, const Value& value) {
    forEachObject(owner, name + u" of "_s, [&](const ObjectReference& reference) {
        if (!reference.application->setProperty(*reference.object, name.toLower(), value)) {
            throw cannotSet(*reference.application, name + u" of "_s + specifier(*reference.object), value);
        }
    });
}

// Whether one `delete` takes a list of references is not established; one of a specifier does, and both are lists here.
void deleteObjects(const Value& objects) {
    forEachObject(objects, {}, [](const ObjectReference& reference) {
        if (!reference.application->remove(*reference.object)) {
            throw cannotGetFrom(*reference.application, specifier(*reference.object));
        }
    });
}

void performCommand(ScriptApplication& application, const QString& command, const std::optional<Value>& object) {
    if (!object) {
        application.perform(command, nullptr);
        return;
    }
    const ObjectReference& target = objectIn(*object, {});
    if (!application.perform(command, target.object.get())) {
        throw notUnderstood(application, specifier(*target.object), command);
    }
}

Value asKept(const Value& value) {
    if (const auto* list = value.get<List>()) {
        List kept;
        for (const Value& each : list->values()) {
            kept.append(asKept(each));
        }
        return Value(kept);
    }
    const auto* reference = value.get<ObjectReference>();
    if (reference == nullptr || reference->object == nullptr) {
        return value;
    }
    const ScriptObject kept = reference->application->asKept(*reference->object);
    return Value(ObjectReference{reference->application, std::make_shared<const ScriptObject>(kept)});
}

bool isThere(const Value& value) {
    const auto* list = contentsOf(value).get<List>();
    return list == nullptr || list->size() > 0;
}

} // namespace macsim::applescript
