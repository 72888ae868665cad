#include "simulator/shell/ShellCursor.h"

namespace macsim {

QChar ShellCursor::look() {
    while (m_position + 1 < m_text.size() && m_text[m_position] == u'\\' && m_text[m_position + 1] == u'\n') {
        m_position += 2;
        ++m_line;
    }
    return lookRaw();
}

QChar ShellCursor::take() {
    const QChar taken = lookRaw();
    if (m_position < m_text.size()) {
        ++m_position;
    }
    if (taken == u'\n') {
        ++m_line;
    }
    return taken;
}

bool ShellCursor::takeIf(char16_t expected) {
    if (look() != expected) {
        return false;
    }
    take();
    return true;
}

bool ShellCursor::isAt(QStringView text) const {
    ShellCursor ahead = *this;
    return ahead.takeIf(text);
}

bool ShellCursor::takeIf(QStringView text) {
    const ShellCursor before = *this;
    for (const QChar character : text) {
        if (!takeIf(character.unicode())) {
            *this = before;
            return false;
        }
    }
    return true;
}

void ShellCursor::skipBlanks() {
    while (isShellBlank(look())) {
        take();
    }
}

bool endsShellWord(QChar character) {
    return character.isNull() || isShellBlank(character) || QStringView(u"\n;&|<>()").contains(character);
}

bool isShellBlank(QChar character) {
    return character == u' ' || character == u'\t';
}

bool startsShellName(QChar character) {
    return character == u'_' || (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

bool isInShellName(QChar character) {
    return startsShellName(character) || (character >= u'0' && character <= u'9');
}

} // namespace macsim
