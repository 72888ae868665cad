#pragma once

// What a compiled script is: expressions, which give values, and statements, which are run.
//
// Chains of operators, of `else if` and of `as` are flat, so that the depth of the tree is that of the
// nesting that the parser allows, and not the length of the script.

#include "simulator/applescript/Operators.h"
#include "simulator/applescript/Token.h"
#include "simulator/applescript/Value.h"

#include <memory>
#include <optional>
#include <variant>
#include <vector>

namespace macsim::applescript {

struct Expression;
using ExpressionPtr = std::unique_ptr<Expression>;

struct Literal {
    Value value;
};

struct Variable {
    QString name; ///< as it was written
};

/// What the condition of a `whose` is asked about: the owner of `name` in `whose name is "X"`.
struct TestedObject {};

/// `result`: the value of the statement before.
struct LastResult {};
/// `it`: what the innermost `tell` addresses. `me`: the script.
struct TellTarget {};
struct ScriptItself {};

struct ListDisplay {
    std::vector<ExpressionPtr> items;
};

struct RecordDisplay {
    struct Field {
        QString name;
        ExpressionPtr value;
    };
    std::vector<Field> fields;
};

/// Operators of one precedence, applied from left to right.
struct OperatorChain {
    struct Link {
        Operator operation;
        ExpressionPtr operand;
    };
    ExpressionPtr first;
    std::vector<Link> links;
};

struct Negative {
    ExpressionPtr operand;
};

struct Not {
    ExpressionPtr operand;
};

enum class TypeName { Text, Integer, Number, Boolean, List };

/// `x as list as text`
struct Coercion {
    ExpressionPtr operand;
    std::vector<TypeName> types;
};

struct PropertyOf {
    QString name;
    ExpressionPtr owner;
};

enum class ElementClass { Item, Character };
enum class ElementSelection { ByIndex, Last, Every };

struct ElementOf {
    ElementClass elements = ElementClass::Item;
    ElementSelection selection = ElementSelection::ByIndex;
    ExpressionPtr index; ///< only ByIndex
    ExpressionPtr owner;
};

/// Objects of the application that the innermost `tell` addresses.
struct ApplicationObjects {
    QString className;
    ElementSelection selection = ElementSelection::Every;
    ExpressionPtr index;     ///< only ByIndex: a number, or the name of an object
    ExpressionPtr condition; ///< of `whose`; may be null
};

struct MakeObject {
    QString className;
    ExpressionPtr properties; ///< may be null
};

/// `exists login item "X"`
struct Exists {
    ExpressionPtr object;
};

struct CountOf {
    ExpressionPtr owner;
};

struct ShellScript {
    ExpressionPtr line;
    ExpressionPtr prompt; ///< these three may be null
    ExpressionPtr userName;
    ExpressionPtr password;
    std::optional<bool> administratorPrivileges;
    std::optional<bool> alteringLineEndings;
};

struct Expression {
    Range range;
    std::variant<Literal, Variable, LastResult, TellTarget, TestedObject, ScriptItself, ListDisplay, RecordDisplay,
                 OperatorChain, Negative, Not, Coercion, PropertyOf, ElementOf, ApplicationObjects, MakeObject, Exists,
                 CountOf, ShellScript>
        node;
};

struct Statement;
using Block = std::vector<Statement>;

struct Evaluate {
    ExpressionPtr value;
};

struct Assign {
    QString variable;
    ExpressionPtr value;
};

/// `set hidden of x to true`
struct AssignProperty {
    QString name;
    ExpressionPtr owner;
    ExpressionPtr value;
};

struct DeleteObjects {
    ExpressionPtr objects;
};

/// A command of the application's dictionary: `empty trash`
struct PerformCommand {
    QString command;
    ExpressionPtr object; ///< may be null
};

struct Return {
    ExpressionPtr value; ///< may be null
};

struct If {
    struct Branch {
        ExpressionPtr condition;
        Block body;
    };
    std::vector<Branch> branches;
    Block otherwise;
};

struct Repeat {
    Block body;
};

struct RepeatTimes {
    ExpressionPtr count;
    Block body;
};

struct RepeatWhile {
    ExpressionPtr condition;
    bool untilTrue = false;
    Block body;
};

struct RepeatInList {
    QString variable;
    ExpressionPtr list;
    Block body;
};

struct RepeatInRange {
    QString variable;
    ExpressionPtr from;
    ExpressionPtr to;
    ExpressionPtr by; ///< may be null
    Block body;
};

struct ExitRepeat {};

struct Try {
    Block body;
    QString messageVariable; ///< empty where the handler names none
    QString numberVariable;
    Block handler;
};

struct RaiseError {
    ExpressionPtr message; ///< both may be null
    ExpressionPtr number;
};

struct Tell {
    std::optional<QString> application; ///< none: the script itself
    Block body;
};

/// `with timeout of 20 seconds`
struct WithTimeout {
    ExpressionPtr seconds;
    Block body;
};

struct Statement {
    Range range;
    std::variant<Evaluate, Assign, AssignProperty, DeleteObjects, PerformCommand, Return, If, Repeat, RepeatTimes,
                 RepeatWhile, RepeatInList, RepeatInRange, ExitRepeat, Try, RaiseError, Tell, WithTimeout>
        node;
};

} // namespace macsim::applescript
