#include "readings/PowerSettings.h"

#include <QStringList>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

std::optional<QString> valueOf(const QString& field, const QStringList& lines) {
    for (const QString& line : lines) {
        const QStringList words = line.split(u' ', Qt::SkipEmptyParts);
        if (words.size() > 1 && words.first() == field) {
            return words.last();
        }
    }
    return std::nullopt;
}

/// The heading of a power source ("AC Power:") is none.
bool isSetting(const QString& line) {
    const QString text = line.trimmed();
    return text.contains(u' ') && !text.endsWith(u':');
}

} // namespace

std::optional<PowerSettings> parsedPowerSettings(const QString& customSettings) {
    const QStringList lines = customSettings.split(u'\n', Qt::SkipEmptyParts);
    if (std::none_of(lines.begin(), lines.end(), isSetting)) {
        return std::nullopt;
    }
    return PowerSettings{valueOf(u"standby"_s, lines), valueOf(u"disksleep"_s, lines), valueOf(u"sleep"_s, lines),
                         valueOf(u"sms"_s, lines)};
}

} // namespace quorvane
