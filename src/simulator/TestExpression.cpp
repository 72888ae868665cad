#include "simulator/TestExpression.h"

#include "simulator/Tool.h"

#include <QString>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kUnary = u"bcdefghknprstuwxzGLOS";
constexpr int kUnreadable = 2;

constexpr int kDeepestGroup = 200; // keeps a hostile line from using up the stack

/// The expression can't be read.
struct ExpressionError {
    QString message;
};

[[noreturn]] void fail(QStringView wording, const QString& word = {}) {
    throw ExpressionError{wording.toString().replace(u"%1"_s, word)};
}

bool isUnary(const QString& word) {
    return word.size() == 2 && word[0] == u'-' && kUnary.contains(word[1]);
}

bool isBinary(const QString& word) {
    static const QStringList kBinary{u"="_s,   u"=="_s,  u"!="_s,  u"<"_s,   u">"_s,   u"-eq"_s, u"-ne"_s,
                                     u"-lt"_s, u"-le"_s, u"-gt"_s, u"-ge"_s, u"-nt"_s, u"-ot"_s, u"-ef"_s};
    return kBinary.contains(word);
}

bool compareNumbers(qint64 left, const QString& how, qint64 right) {
    switch (how[1].unicode()) {
    case u'e':
        return left == right;
    case u'n':
        return left != right;
    case u'l':
        return how == u"-lt"_s ? left < right : left <= right;
    default:
        return how == u"-gt"_s ? left > right : left >= right;
    }
}

class Evaluator {
public:
    Evaluator(const QStringList& words, const ToolContext& context, const TestWording& wording)
        : m_words(words)
        , m_context(context)
        , m_wording(wording) {}

    bool evaluate() {
        switch (m_words.size()) {
        case 0:
            return false;
        case 1:
            return !m_words[0].isEmpty();
        case 2:
            return byTwo(m_words);
        case 3:
            return byThree(m_words);
        case 4:
            return byFour(m_words);
        default:
            return byGrammar();
        }
    }

private:
    bool byTwo(const QStringList& words) const;
    bool byThree(const QStringList& words) const;
    bool byFour(const QStringList& words);
    bool byGrammar();
    bool disjunction();
    bool conjunction();
    bool negation();
    bool primary();
    bool group();
    QString take();
    bool skip(const QString& word);
    bool unary(const QString& what, const QString& operand) const;
    bool binary(const QString& left, const QString& how, const QString& right) const;
    qint64 number(const QString& word) const;
    bool isExecutable(const QString& path) const;
    bool isSameFile(const QString& left, const QString& right) const;

    const QStringList& m_words;
    const ToolContext& m_context;
    const TestWording& m_wording;
    qsizetype m_next = 0;
    int m_depth = 0; ///< of groups
};

bool Evaluator::byTwo(const QStringList& words) const {
    if (words[0] == u"!"_s) {
        return words[1].isEmpty();
    }
    if (!isUnary(words[0])) {
        fail(m_wording.notUnary, words[0]);
    }
    return unary(words[0], words[1]);
}

bool Evaluator::byThree(const QStringList& words) const {
    if (isBinary(words[1])) {
        return binary(words[0], words[1], words[2]);
    }
    if (words[1] == u"-a"_s || words[1] == u"-o"_s) {
        const bool left = !words[0].isEmpty();
        const bool right = !words[2].isEmpty();
        return words[1] == u"-a"_s ? left && right : left || right;
    }
    if (words[0] == u"!"_s) {
        return !byTwo(words.mid(1));
    }
    if (words[0] == u"("_s && words[2] == u")"_s) {
        return !words[1].isEmpty();
    }
    fail(m_wording.notBinary, words[1]);
}

bool Evaluator::byFour(const QStringList& words) {
    if (words[0] == u"!"_s) {
        return !byThree(words.mid(1));
    }
    if (words[0] == u"("_s && words[3] == u")"_s) {
        return byTwo(words.mid(1, 2));
    }
    return byGrammar();
}

bool Evaluator::byGrammar() {
    const bool result = disjunction();
    if (m_next < m_words.size()) {
        fail(m_wording.leftOver, m_words[m_next]);
    }
    return result;
}

bool Evaluator::disjunction() {
    bool result = conjunction();
    while (skip(u"-o"_s)) {
        const bool right = conjunction();
        result = result || right;
    }
    return result;
}

bool Evaluator::conjunction() {
    bool result = negation();
    while (skip(u"-a"_s)) {
        const bool right = negation();
        result = result && right;
    }
    return result;
}

bool Evaluator::negation() {
    bool inverted = false;
    while (m_next + 1 < m_words.size() && skip(u"!"_s)) {
        inverted = !inverted;
    }
    return primary() != inverted;
}

bool Evaluator::primary() {
    const bool isOperand = m_next + 2 < m_words.size() && isBinary(m_words[m_next + 1]);
    if (!isOperand && skip(u"("_s)) {
        return group();
    }
    const QString first = take();
    if (isOperand) {
        const QString how = take();
        return binary(first, how, take());
    }
    if (isUnary(first) && m_next < m_words.size()) {
        return unary(first, take());
    }
    return !first.isEmpty();
}

bool Evaluator::group() {
    if (++m_depth > kDeepestGroup) {
        fail(u"too many groups in each other");
    }
    const bool result = disjunction();
    --m_depth;
    if (!skip(u")"_s)) {
        fail(m_wording.unclosedGroup);
    }
    return result;
}

QString Evaluator::take() {
    if (m_next >= m_words.size()) {
        fail(u"argument expected");
    }
    return m_words[m_next++];
}

bool Evaluator::skip(const QString& word) {
    if (m_next >= m_words.size() || m_words[m_next] != word) {
        return false;
    }
    ++m_next;
    return true;
}

bool Evaluator::unary(const QString& what, const QString& operand) const {
    const QString path = m_context.absolutePath(operand);
    const Volume& volume = m_context.volume;
    switch (what[1].unicode()) {
    case u'n':
        return !operand.isEmpty();
    case u'z':
        return operand.isEmpty();
    case u'e':
        return volume.exists(path);
    case u'd':
        return volume.isFolder(path);
    case u'f':
        return volume.exists(path) && !volume.isFolder(path);
    case u's':
        return volume.exists(path) && (volume.isFolder(path) || volume.size(path) > 0);
    case u'h':
    case u'L':
        return volume.kind(path) == Volume::Kind::Link;
    case u'r':
        return volume.isReadable(path);
    case u'w':
        return volume.isWritable(path);
    case u'x':
        return isExecutable(path);
    case u't':
        return false; // no run of the simulated Mac has a terminal
    default:
        fail(u"%1: not simulated", what);
    }
}

/// Who may not read a folder of a Mac may not enter it either.
bool Evaluator::isExecutable(const QString& path) const {
    const Volume& volume = m_context.volume;
    return volume.isReadable(path) &&
           (volume.isFolder(path) || volume.kind(volume.canonicalPath(path)) == Volume::Kind::Tool);
}

bool Evaluator::isSameFile(const QString& left, const QString& right) const {
    const Volume& volume = m_context.volume;
    const QString one = m_context.absolutePath(left);
    const QString other = m_context.absolutePath(right);
    return volume.exists(one) && volume.exists(other) && volume.canonicalPath(one) == volume.canonicalPath(other);
}

bool Evaluator::binary(const QString& left, const QString& how, const QString& right) const {
    if (how == u"="_s || how == u"=="_s) {
        return left == right;
    }
    if (how == u"!="_s) {
        return left != right;
    }
    if (how == u"<"_s || how == u">"_s) {
        return how == u"<"_s ? left < right : left > right;
    }
    if (how == u"-ef"_s) {
        return isSameFile(left, right);
    }
    if (how == u"-nt"_s || how == u"-ot"_s) {
        fail(u"%1: not simulated", how);
    }
    return compareNumbers(number(left), how, number(right));
}

qint64 Evaluator::number(const QString& word) const {
    bool isNumber = false;
    const qint64 value = word.trimmed().toLongLong(&isNumber, 10);
    if (!isNumber) {
        fail(m_wording.notANumber, word);
    }
    return value;
}

} // namespace

int evaluateTest(const QStringList& arguments, const ToolContext& context, QString& error, const TestWording& wording) {
    try {
        return Evaluator(arguments, context, wording).evaluate() ? 0 : 1;
    } catch (const ExpressionError& failure) {
        error = failure.message;
        return kUnreadable;
    }
}

} // namespace macsim
