#include "ui/pieces/LongWords.h"

namespace quorvane {

QString withBreaksInLongWords(const QString& text) {
    constexpr int kLongWord = 24;
    constexpr QChar kBreak(0x200B); // a space without width
    QString broken;
    int length = 0;
    for (const QChar character : text) {
        length = character.isSpace() ? 0 : length + 1;
        if (length > kLongWord && !character.isLowSurrogate() && !character.isMark()) {
            broken.append(kBreak);
            length = 1;
        }
        broken.append(character);
    }
    return broken;
}

} // namespace quorvane
