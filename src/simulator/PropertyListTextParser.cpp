#include "simulator/PropertyListText.h"

#include <QByteArray>

namespace macsim {

using namespace Qt::StringLiterals;

namespace {

bool isHexDigit(QChar character) {
    const char16_t unit = character.toLower().unicode();
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'f');
}

bool isUnquoted(QChar character) {
    return character.unicode() < 0x80 && (character.isLetterOrNumber() || u"_$/:.-"_s.contains(character));
}

/// Reads one value after the other, each from m_position on.
class TextParser {
public:
    explicit TextParser(QStringView text)
        : m_text(text) {}

    std::optional<PropertyList> wholeText() {
        std::optional<PropertyList> value = parsedValue(0);
        skipBlanks();
        return m_position == m_text.size() ? value : std::nullopt;
    }

private:
    std::optional<PropertyList> parsedValue(int depth) {
        skipBlanks();
        if (depth > kMaximumPropertyListDepth) {
            return std::nullopt;
        }
        if (takes(u'{')) {
            return parsedDictionary(depth);
        }
        if (takes(u'(')) {
            return parsedArray(depth);
        }
        if (takes(u'<')) {
            return parsedData();
        }
        const std::optional<QString> text = parsedString();
        return text ? std::optional(PropertyList(*text)) : std::nullopt;
    }

    /// Every pair ends in a semicolon, the last one too.
    std::optional<PropertyList> parsedDictionary(int depth) {
        PropertyList::Dictionary dictionary;
        while (!takes(u'}')) {
            const std::optional<QString> key = parsedString();
            if (!key || !takes(u'=')) {
                return std::nullopt;
            }
            std::optional<PropertyList> value = parsedValue(depth + 1);
            if (!value || !takes(u';')) {
                return std::nullopt;
            }
            dictionary.insert_or_assign(*key, *std::move(value));
        }
        return PropertyList(std::move(dictionary));
    }

    /// A comma behind the last item is fine.
    std::optional<PropertyList> parsedArray(int depth) {
        PropertyList::Array array;
        while (!takes(u')')) {
            std::optional<PropertyList> value = parsedValue(depth + 1);
            if (!value) {
                return std::nullopt;
            }
            array.push_back(*std::move(value));
            if (!takes(u',') && !isAt(u')')) {
                return std::nullopt;
            }
        }
        return PropertyList(std::move(array));
    }

    std::optional<PropertyList> parsedData() {
        QByteArray digits;
        while (!takes(u'>')) {
            if (m_position == m_text.size() || !isHexDigit(m_text[m_position])) {
                return std::nullopt;
            }
            digits += static_cast<char>(m_text[m_position++].unicode());
        }
        return digits.size() % 2 == 0 ? std::optional(PropertyList(QByteArray::fromHex(digits))) : std::nullopt;
    }

    std::optional<QString> parsedString() {
        skipBlanks();
        if (isAt(u'"') || isAt(u'\'')) {
            return parsedQuoted(m_text[m_position++]);
        }
        const qsizetype start = m_position;
        while (m_position < m_text.size() && isUnquoted(m_text[m_position])) {
            ++m_position;
        }
        return m_position > start ? std::optional(m_text.sliced(start, m_position - start).toString()) : std::nullopt;
    }

    std::optional<QString> parsedQuoted(QChar quote) {
        QString text;
        while (m_position < m_text.size()) {
            const QChar character = m_text[m_position++];
            if (character == quote) {
                return text;
            }
            text += character == u'\\' && m_position < m_text.size() ? parsedEscape() : character;
        }
        return std::nullopt;
    }

    /// What follows a backslash: a letter of C, U and hexadecimal or up to three octal digits, or the
    /// character itself.
    QChar parsedEscape() {
        const QChar character = m_text[m_position++];
        switch (character.unicode()) {
        case u'n':
            return u'\n';
        case u'r':
            return u'\r';
        case u't':
            return u'\t';
        case u'U':
            return parsedCode(16, 4);
        default:
            break;
        }
        if (character >= u'0' && character <= u'7') {
            --m_position;
            return parsedCode(8, 3);
        }
        return character;
    }

    QChar parsedCode(int base, int digits) {
        uint code = 0;
        for (; digits > 0 && m_position < m_text.size(); --digits, ++m_position) {
            bool isDigit = false;
            const uint digit = m_text.sliced(m_position, 1).toString().toUInt(&isDigit, base);
            if (!isDigit) {
                break;
            }
            code = code * static_cast<uint>(base) + digit;
        }
        return QChar(static_cast<char16_t>(code));
    }

    void skipBlanks() {
        while (m_position < m_text.size() && (m_text[m_position].isSpace() || skipsComment())) {
            ++m_position;
        }
    }

    /// Leaves the position at the comment's last character.
    bool skipsComment() {
        const QStringView rest = m_text.sliced(m_position);
        const bool isLine = rest.startsWith(u"//");
        if (!isLine && !rest.startsWith(u"/*")) {
            return false;
        }
        const qsizetype end = isLine ? m_text.indexOf(u'\n', m_position) : m_text.indexOf(u"*/"_s, m_position + 2);
        m_position = end < 0 ? m_text.size() - 1 : isLine ? end : end + 1;
        return true;
    }

    bool isAt(QChar character) {
        skipBlanks();
        return m_position < m_text.size() && m_text[m_position] == character;
    }

    bool takes(QChar character) {
        const bool is = isAt(character);
        m_position += is ? 1 : 0;
        return is;
    }

    QStringView m_text;
    qsizetype m_position = 0;
};

} // namespace

std::optional<PropertyList> parsePropertyListText(QStringView text) {
    return TextParser(text).wholeText();
}

} // namespace macsim
