#include "simulator/shell/ShellEcho.h"

namespace macsim {

namespace {

constexpr QByteArrayView kLetters = "abeEfnrtv\\";
constexpr QByteArrayView kMeanings = "\a\b\033\033\f\n\r\t\v\\";

/// Reads up to a number of digits at a place, which it moves behind them; nothing when there is none.
QByteArray takeDigits(const QByteArray& text, qsizetype& at, qsizetype most, QByteArrayView digits) {
    const qsizetype start = at;
    while (at < text.size() && at - start < most && digits.contains(text[at])) {
        ++at;
    }
    return text.mid(start, at - start);
}

/// Appends what stands for a backslash sequence and moves behind it.
/// @param at  at the character behind the backslash
void appendSequence(QByteArray& made, const QByteArray& text, qsizetype& at) {
    const char letter = text[at++];
    if (const qsizetype index = kLetters.indexOf(letter); index >= 0) {
        made += kMeanings[index];
        return;
    }
    if (letter == '0') {
        made += static_cast<char>(takeDigits(text, at, 3, "01234567").toInt(nullptr, 8));
        return;
    }
    const QByteArray digits = letter == 'x' ? takeDigits(text, at, 2, "0123456789abcdefABCDEF") : QByteArray();
    if (digits.isEmpty()) {
        (made += '\\') += letter;
    } else {
        made += static_cast<char>(digits.toInt(nullptr, 16));
    }
}

} // namespace

QByteArray shellEchoText(const QStringList& arguments) {
    const QByteArray text = arguments.join(QChar(u' ')).toUtf8();
    QByteArray made;
    for (qsizetype at = 0; at < text.size();) {
        const char character = text[at++];
        if (character != '\\' || at == text.size()) {
            made += character;
        } else if (text[at] == 'c') {
            return made;
        } else {
            appendSequence(made, text, at);
        }
    }
    return made + '\n';
}

} // namespace macsim
