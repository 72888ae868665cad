#pragma once

#include "simulator/applescript/SyntaxTree.h"
#include "simulator/applescript/Value.h"

namespace macsim::applescript {

/// What `X of Y` means for each kind of value. Everything throws ScriptError -1728 where there is no such
/// thing.

/// A field of a record, the length of a text or list, the quoted form of a text, the contents of a reference,
/// a property of an application's object.
/// @param name  in any case, for the terms of the language: "length", "quoted form", "contents"
Value propertyOf(const Value& owner, const QString& name);

/// The items of a list, the characters of a text (as people see them: a letter with its accents is one).
Value everyElementOf(const Value& owner, ElementClass elements);
Value lastElementOf(const Value& owner, ElementClass elements);
/// @param index  from 1, or from -1 backwards
Value elementOf(const Value& owner, ElementClass elements, const Value& index);

/// How many items, characters or fields a value has.
int countOf(const Value& owner);

} // namespace macsim::applescript
