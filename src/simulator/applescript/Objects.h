#pragma once

#include "simulator/applescript/Value.h"

#include <optional>

namespace macsim::applescript {

/// What a script asks of applications and their objects. Everything throws ScriptError -1728 for an object that is gone
/// or has no such property, and whatever the application throws.

/// References to all objects of a class, as they are now. They stay good when other objects go.
List objectsOf(ScriptApplication& application, const QString& className);

/// The one at a place: `login item 2`, `login item -1`. Throws ScriptError -1719 where there is none.
Value objectAt(ScriptApplication& application, const QString& className, int index);
/// The same among some of them.
Value objectAt(const List& objects, int index, ScriptApplication& application, const QString& className);
/// The first of a name, in any case.
Value objectNamed(const List& objects, const QString& name, ScriptApplication& application, const QString& className);

/// What is in an object; nothing where it can't hold anything.
std::optional<List> itemsIn(const ObjectReference& container);

/// The property of an object, or of an application itself.
Value propertyOfObject(const ObjectReference& owner, const QString& name);

/// Throws ScriptError -10006 where it can't be written. Of a list, that of each object in it.
void setProperty(const Value& owner, const QString& name, const Value& value);

/// Deletes an object, or each of a list. A list is looked at in its order, and the first that is gone ends it.
void deleteObjects(const Value& objects);

/// Throws ScriptError -1708 where the command isn't meant for the object. @param object  none where the script names none
void performCommand(ScriptApplication& application, const QString& command, const std::optional<Value>& object);

/// What a variable holds of a value: an object is known by the name that the application gave it.
Value asKept(const Value& value);

/// Whether what an expression gave is there: a list of no objects is nothing.
bool isThere(const Value& value);

} // namespace macsim::applescript
