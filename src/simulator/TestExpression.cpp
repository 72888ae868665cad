#include "simulator/TestExpression.h"

#include "simulator/Tool.h"

#include <QString>

#include <stdexcept>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

constexpr QStringView kUnary = u"bcdefghknprstuwxzGLOS";
constexpr int kUnreadable = 2;

/// The expression can't be read; what() is the message.
class ExpressionError : public std::runtime_error {
public:
    explicit ExpressionError(const QString& message)
        : std::runtime_error(message.toStdString()) {}
};

bool isUnary(const QString& word) {
    return word.size() == 2 && word[0] == u'-' && kUnary.contains(word[1]);
}

bool isBinary(const QString& word) {
    static const QStringList kBinary{u"="_s,   u"=="_s,  u"!="_s,  u"<"_s,   u">"_s,   u"-eq"_s, u"-ne"_s,
                                     u"-lt"_s, u"-le"_s, u"-gt"_s, u"-ge"_s, u"-nt"_s, u"-ot"_s, u"-ef"_s};
    return kBinary.contains(word);
}

qint64 number(const QString& word) {
    bool isNumber = false;
    const qint64 value = word.trimmed().toLongLong(&isNumber, 10);
    if (!isNumber) {
        throw ExpressionError(word + u": bad number"_s);
    }
    return value;
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
    Evaluator(const QStringList& words, const ToolContext& context)
        : m_words(words)
        , m_context(context) {}

    bool evaluate() {
        if (m_words.size() <= 4) {
            return byCount(m_words);
        }
        const bool result = disjunction();
        if (m_next < m_words.size()) {
            throw ExpressionError(m_words[m_next] + u": unexpected operator"_s);
        }
        return result;
    }

private:
    bool byCount(const QStringList& words);
    bool byTwo(const QStringList& words);
    bool byThree(const QStringList& words);
    bool disjunction();
    bool conjunction();
    bool negation();
    bool primary();
    QString take();
    bool skip(const QString& word);
    bool unary(const QString& what, const QString& operand) const;
    bool binary(const QString& left, const QString& how, const QString& right) const;
    bool isReadable(const QString& path) const;
    bool isSameFile(const QString& left, const QString& right) const;

    const QStringList& m_words;
    const ToolContext& m_context;
    qsizetype m_next = 0;
};

bool Evaluator::byCount(const QStringList& words) {
    switch (words.size()) {
    case 0:
        return false;
    case 1:
        return !words[0].isEmpty();
    case 2:
        return byTwo(words);
    case 3:
        return byThree(words);
    default:
        if (words[0] == u"!"_s) {
            return !byThree(words.mid(1));
        }
        if (words[0] == u"("_s && words[3] == u")"_s) {
            return byTwo(words.mid(1, 2));
        }
        throw ExpressionError(words[1] + u": unexpected operator"_s);
    }
}

bool Evaluator::byTwo(const QStringList& words) {
    if (words[0] == u"!"_s) {
        return words[1].isEmpty();
    }
    if (!isUnary(words[0])) {
        throw ExpressionError(words[0] + u": unexpected operator"_s);
    }
    return unary(words[0], words[1]);
}

bool Evaluator::byThree(const QStringList& words) {
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
    throw ExpressionError(words[1] + u": unexpected operator"_s);
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
        const bool result = disjunction();
        if (!skip(u")"_s)) {
            throw ExpressionError(u"closing paren expected"_s);
        }
        return result;
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

QString Evaluator::take() {
    if (m_next >= m_words.size()) {
        throw ExpressionError(u"argument expected"_s);
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
        return isReadable(path);
    case u'x':
        return volume.exists(path) &&
               (volume.isFolder(path) || volume.kind(volume.canonicalPath(path)) == Volume::Kind::Tool);
    case u't':
        return false; // no run of the simulated Mac has a terminal
    default:
        throw ExpressionError(what + u": not simulated"_s);
    }
}

bool Evaluator::isReadable(const QString& path) const {
    try {
        if (m_context.volume.isFolder(path)) {
            m_context.volume.list(path);
        } else if (m_context.volume.kind(m_context.volume.canonicalPath(path)) != Volume::Kind::Tool) {
            m_context.volume.read(path);
        }
        return true;
    } catch (const FileError&) {
        return false;
    }
}

bool Evaluator::isSameFile(const QString& left, const QString& right) const {
    const Volume& volume = m_context.volume;
    const QString one = m_context.absolutePath(left);
    const QString other = m_context.absolutePath(right);
    return volume.exists(one) && volume.exists(other) &&
           volume.canonicalPath(one) == volume.canonicalPath(other);
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
        throw ExpressionError(how + u": not simulated"_s);
    }
    return compareNumbers(number(left), how, number(right));
}

} // namespace

int evaluateTest(const QStringList& arguments, const ToolContext& context, QByteArray& error) {
    try {
        return Evaluator(arguments, context).evaluate() ? 0 : 1;
    } catch (const ExpressionError& failure) {
        error += failure.what();
        error += '\n';
        return kUnreadable;
    }
}

} // namespace macsim
