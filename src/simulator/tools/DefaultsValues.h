#pragma once

#include "simulator/tools/DefaultsArguments.h"

namespace macsim {

struct DefaultsValue {
    DefaultsCommand::Change change = DefaultsCommand::Change::Replace;
    PropertyList value;
};

/// Reads the value of `defaults write` from the rest of its arguments: a type flag and what belongs to it, or
/// a single argument without a flag. Throws DefaultsMisuse.
DefaultsValue parseDefaultsValue(const QStringList& arguments);

/// A value without a type flag. It is a text, unless a quote, a bracket, a brace or an angle bracket in it
/// says that it is a property list, old-style or XML; then it must be a well-formed one. Throws
/// DefaultsMisuse.
PropertyList parseDefaultsRepresentation(const QString& text);

} // namespace macsim
