#include "readings/PowerSettings.h"

#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

std::optional<QString> valueOf(const QString& field, const QStringList& lines) {
    for (const QString& line : lines) {
        const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
        if (!words.isEmpty() && words.first().startsWith(field)) {
            return words.last();
        }
    }
    return std::nullopt;
}

} // namespace

PowerSettings parsedPowerSettings(const QString& customSettings) {
    const QStringList lines = customSettings.split(u'\n', Qt::SkipEmptyParts);
    return {valueOf(u"standby"_s, lines), valueOf(u"disksleep"_s, lines), valueOf(u"sleep"_s, lines),
            valueOf(u"sms"_s, lines)};
}

} // namespace quorvane
