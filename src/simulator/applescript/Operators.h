#pragma once

#include <QList>
#include <QString>

namespace macsim::applescript {

enum class Operator {
    Or,
    And,
    Equal,
    NotEqual,
    Contains,
    DoesNotContain,
    IsIn,
    IsNotIn,
    StartsWith,
    EndsWith,
    Less,
    LessOrEqual,
    Greater,
    GreaterOrEqual,
    Concatenate,
    Add,
    Subtract,
    Multiply,
    Divide,
    IntegerDivide,
    Modulo,
};

/// How strongly an operator binds, the weakest first.
enum class Precedence { Or, And, Equality, Order, Concatenation, Sum, Product };

/// One way to write an operator. Most have several: `≤`, `is less than or equal to`, `does not come after`.
struct OperatorPhrase {
    QList<QString> words; ///< a symbol counts as a word
    Operator meaning;
};

/// The ways to write the operators of one precedence; of two that begin alike, the longer one comes first.
const QList<OperatorPhrase>& operatorPhrases(Precedence precedence);

} // namespace macsim::applescript
