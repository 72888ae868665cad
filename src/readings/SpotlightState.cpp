#include "readings/SpotlightState.h"

#include <QStringList>

namespace quorvane {

using namespace Qt::StringLiterals;

std::optional<bool> parsedSpotlightState(const QString& state) {
    const QStringList lines = state.toLower().split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QString text = line.trimmed();
        if (text.startsWith(u"indexing enabled"_s)) {
            return true;
        }
        if (text.startsWith(u"indexing disabled"_s) || text.startsWith(u"indexing and searching disabled"_s)) {
            return false;
        }
    }
    return std::nullopt;
}

} // namespace quorvane
