#include "simulator/shell/ShellWordReader.h"

#include "simulator/shell/ShellParser.h"
#include "simulator/shell/ShellVocabulary.h"

namespace macsim {

using namespace Qt::StringLiterals;

ShellWord ShellWordReader::read() {
    m_word.clear();
    while (!endsShellWord(m_cursor.look())) {
        readUnquoted();
    }
    return std::move(m_word);
}

void ShellWordReader::readUnquoted() {
    switch (m_cursor.look().unicode()) {
    case u'\'':
        return readSingleQuotes();
    case u'"':
        return readDoubleQuotes();
    case u'\\':
        return readEscape();
    case u'$':
        return readDollar(false);
    case u'`':
        return readBackquotes(false);
    default:
        return addText(m_cursor.take(), false);
    }
}

void ShellWordReader::readEscape() {
    const QChar backslash = m_cursor.take();
    addText(m_cursor.lookRaw().isNull() ? backslash : m_cursor.take(), true);
}

void ShellWordReader::readSingleQuotes() {
    const int line = m_cursor.line();
    m_cursor.take();
    QString text;
    while (m_cursor.lookRaw() != u'\'') {
        if (m_cursor.lookRaw().isNull()) {
            failUnterminated(u'\'', line);
        }
        text += m_cursor.take();
    }
    m_cursor.take();
    addText(text, true);
}

void ShellWordReader::readDoubleQuotes() {
    const int line = m_cursor.line();
    m_cursor.take();
    addText({}, true); // "" is a word, an empty one
    while (!m_cursor.takeIf(u'"')) {
        switch (m_cursor.look().unicode()) {
        case u'\0':
            failUnterminated(u'"', line);
        case u'\\':
            readEscapeInDoubleQuotes();
            break;
        case u'$':
            readDollar(true);
            break;
        case u'`':
            readBackquotes(true);
            break;
        default:
            addText(m_cursor.take(), true);
        }
    }
}

void ShellWordReader::readEscapeInDoubleQuotes() {
    const QChar backslash = m_cursor.take();
    const bool protects = !m_cursor.lookRaw().isNull() && QStringView(u"$`\"\\").contains(m_cursor.lookRaw());
    addText(protects ? m_cursor.take() : backslash, true);
}

void ShellWordReader::readDollar(bool isQuoted) {
    m_cursor.take();
    const QChar next = m_cursor.look();
    if (startsShellName(next)) {
        return addVariable(readName(), isQuoted);
    }
    if (next == u'?' || next == u'$') {
        return addVariable(m_cursor.take(), isQuoted);
    }
    if (m_cursor.takeIf(u'{')) {
        return readBracedVariable(isQuoted);
    }
    if (m_cursor.takeIf(u'(')) {
        if (m_cursor.look() == u'(') {
            failUnsupported(u"$(("_s);
        }
        m_word.push_back({ShellWordPart::Kind::Substitution, isQuoted, {}, m_substitutions.readUpToParenthesis()});
        return;
    }
    const bool startsQuote = !isQuoted && (next == u'\'' || next == u'"');
    const bool isParameter = next.isDigit() || (!next.isNull() && QStringView(u"#@*!-[").contains(next));
    if (startsQuote || isParameter) {
        failUnsupported(u'$' + QString(next));
    }
    addText(u"$"_s, isQuoted);
}

void ShellWordReader::readBracedVariable(bool isQuoted) {
    const int line = m_cursor.line();
    const QString name = startsShellName(m_cursor.look()) ? readName() : QString();
    if (m_cursor.isAtEnd()) {
        failUnterminated(u'}', line);
    }
    if (name.isEmpty() || m_cursor.look() != u'}') {
        failUnsupported(u"${"_s + name + m_cursor.look());
    }
    m_cursor.take();
    addVariable(name, isQuoted);
}

void ShellWordReader::readBackquotes(bool isInDoubleQuotes) {
    const int line = m_cursor.line();
    const QStringView protectable = isInDoubleQuotes ? QStringView(u"$`\\\"") : QStringView(u"$`\\");
    m_cursor.take();
    QString text;
    while (m_cursor.lookRaw() != u'`') {
        if (m_cursor.lookRaw().isNull()) {
            failUnterminated(u'`', line);
        }
        const QChar character = m_cursor.take();
        const bool protects =
            character == u'\\' && !m_cursor.lookRaw().isNull() && protectable.contains(m_cursor.lookRaw());
        text += protects ? m_cursor.take() : character;
    }
    m_cursor.take();
    m_word.push_back(
        {ShellWordPart::Kind::Substitution, isInDoubleQuotes, {}, m_substitutions.readBackquoted(text, line)});
}

QString ShellWordReader::readName() {
    QString name;
    while (isInShellName(m_cursor.look())) {
        name += m_cursor.take();
    }
    return name;
}

void ShellWordReader::addText(const QString& text, bool isQuoted) {
    if (!m_word.empty() && m_word.back().kind == ShellWordPart::Kind::Text && m_word.back().isQuoted == isQuoted) {
        m_word.back().text += text;
    } else {
        m_word.push_back({ShellWordPart::Kind::Text, isQuoted, text, nullptr});
    }
}

void ShellWordReader::addVariable(const QString& name, bool isQuoted) {
    if (isUnsupportedShellVariable(name)) {
        failUnsupported(u'$' + name);
    }
    m_word.push_back({ShellWordPart::Kind::Variable, isQuoted, name, nullptr});
}

void ShellWordReader::failUnsupported(const QString& what) const {
    throw ShellSyntaxError::notSupported(what, m_cursor.line());
}

void ShellWordReader::failUnterminated(char16_t closing, int line) {
    throw ShellSyntaxError(u"unexpected EOF while looking for matching `"_s + QChar(closing) + u'\'', line);
}

} // namespace macsim
