#include "simulator/applescript/Operators.h"

#include <QHash>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace macsim::applescript {

namespace {

struct Row {
    const char16_t* words;
    Operator meaning;
    Precedence precedence;
};

constexpr Row kRows[] = {
    {u"or", Operator::Or, Precedence::Or},
    {u"and", Operator::And, Precedence::And},

    {u"=", Operator::Equal, Precedence::Equality},
    {u"is", Operator::Equal, Precedence::Equality},
    {u"equals", Operator::Equal, Precedence::Equality},
    {u"equal to", Operator::Equal, Precedence::Equality},
    {u"is equal to", Operator::Equal, Precedence::Equality},
    {u"≠", Operator::NotEqual, Precedence::Equality},
    {u"/=", Operator::NotEqual, Precedence::Equality},
    {u"is not", Operator::NotEqual, Precedence::Equality},
    {u"is not equal to", Operator::NotEqual, Precedence::Equality},
    {u"does not equal", Operator::NotEqual, Precedence::Equality},
    {u"contains", Operator::Contains, Precedence::Equality},
    {u"does not contain", Operator::DoesNotContain, Precedence::Equality},
    {u"is in", Operator::IsIn, Precedence::Equality},
    {u"is contained by", Operator::IsIn, Precedence::Equality},
    {u"is not in", Operator::IsNotIn, Precedence::Equality},
    {u"is not contained by", Operator::IsNotIn, Precedence::Equality},
    {u"starts with", Operator::StartsWith, Precedence::Equality},
    {u"begins with", Operator::StartsWith, Precedence::Equality},
    {u"ends with", Operator::EndsWith, Precedence::Equality},

    {u"<", Operator::Less, Precedence::Order},
    {u"less than", Operator::Less, Precedence::Order},
    {u"is less than", Operator::Less, Precedence::Order},
    {u"comes before", Operator::Less, Precedence::Order},
    {u"is not greater than or equal to", Operator::Less, Precedence::Order},
    {u"≤", Operator::LessOrEqual, Precedence::Order},
    {u"<=", Operator::LessOrEqual, Precedence::Order},
    {u"less than or equal to", Operator::LessOrEqual, Precedence::Order},
    {u"is less than or equal to", Operator::LessOrEqual, Precedence::Order},
    {u"is not greater than", Operator::LessOrEqual, Precedence::Order},
    {u"does not come after", Operator::LessOrEqual, Precedence::Order},
    {u">", Operator::Greater, Precedence::Order},
    {u"greater than", Operator::Greater, Precedence::Order},
    {u"is greater than", Operator::Greater, Precedence::Order},
    {u"comes after", Operator::Greater, Precedence::Order},
    {u"is not less than or equal to", Operator::Greater, Precedence::Order},
    {u"≥", Operator::GreaterOrEqual, Precedence::Order},
    {u">=", Operator::GreaterOrEqual, Precedence::Order},
    {u"greater than or equal to", Operator::GreaterOrEqual, Precedence::Order},
    {u"is greater than or equal to", Operator::GreaterOrEqual, Precedence::Order},
    {u"is not less than", Operator::GreaterOrEqual, Precedence::Order},
    {u"does not come before", Operator::GreaterOrEqual, Precedence::Order},

    {u"&", Operator::Concatenate, Precedence::Concatenation},
    {u"+", Operator::Add, Precedence::Sum},
    {u"-", Operator::Subtract, Precedence::Sum},
    {u"*", Operator::Multiply, Precedence::Product},
    {u"/", Operator::Divide, Precedence::Product},
    {u"÷", Operator::Divide, Precedence::Product},
    {u"div", Operator::IntegerDivide, Precedence::Product},
    {u"mod", Operator::Modulo, Precedence::Product},
};

QHash<Precedence, QList<OperatorPhrase>> phrasesByPrecedence() {
    QHash<Precedence, QList<OperatorPhrase>> phrases;
    for (const Row& row : kRows) {
        phrases[row.precedence].append({QString::fromUtf16(row.words).split(u' '), row.meaning});
    }
    for (QList<OperatorPhrase>& ofOne : phrases) {
        std::ranges::stable_sort(ofOne, std::greater(), [](const auto& phrase) { return phrase.words.size(); });
    }
    return phrases;
}

} // namespace

const QList<OperatorPhrase>& operatorPhrases(Precedence precedence) {
    static const QHash<Precedence, QList<OperatorPhrase>> phrases = phrasesByPrecedence();
    return *phrases.constFind(precedence);
}

} // namespace macsim::applescript
