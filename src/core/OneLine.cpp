#include "core/OneLine.h"

namespace quorvane {

namespace {

constexpr qsizetype kLongestName = 80;

/// Of the format characters only those that turn the direction: others join the parts of one emoji or letter.
bool turnsText(QChar character) {
    const char16_t code = character.unicode();
    const bool turnsDirection = code == 0x061C || code == 0x200E || code == 0x200F ||
                                (code >= 0x202A && code <= 0x202E) || (code >= 0x2066 && code <= 0x2069);
    return turnsDirection || character.category() == QChar::Other_Control || character == QChar::LineSeparator ||
           character == QChar::ParagraphSeparator;
}

} // namespace

QString onOneLine(const QString& text) {
    QString plain = text;
    for (QChar& character : plain) {
        if (turnsText(character)) {
            character = u' ';
        }
    }
    return plain;
}

QString nameOnOneLine(const QString& name) {
    const QString plain = onOneLine(name);
    if (plain.size() <= kLongestName) {
        return plain;
    }
    // Between two characters: half of one would be none.
    qsizetype head = (kLongestName - 1) / 2;
    qsizetype tail = plain.size() - (kLongestName - 1 - head);
    head -= plain.at(head).isLowSurrogate() ? 1 : 0;
    tail += plain.at(tail).isLowSurrogate() ? 1 : 0;
    return plain.left(head) + u'…' + plain.mid(tail);
}

} // namespace quorvane
