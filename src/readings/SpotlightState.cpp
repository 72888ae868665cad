#include "readings/SpotlightState.h"

#include <QStringList>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

Indexing indexingIn(const QString& state) {
    const QString text = state.trimmed().toLower();
    if (text.startsWith(u"indexing enabled"_s)) {
        return Indexing::On;
    }
    if (text.startsWith(u"indexing disabled"_s)) {
        return Indexing::Off;
    }
    if (text.startsWith(u"indexing and searching disabled"_s)) {
        return Indexing::SearchOff;
    }
    return text.contains(u"transitioning"_s) ? Indexing::Changing : Indexing::Unknown;
}

bool isOff(Indexing indexing) {
    return indexing == Indexing::Off || indexing == Indexing::SearchOff;
}

Indexing indexingOf(const QString& path, const QList<IndexedVolume>& volumes) {
    const auto found = std::find_if(volumes.begin(), volumes.end(),
                                    [&path](const IndexedVolume& volume) { return volume.path == path; });
    return found == volumes.end() ? Indexing::Unknown : found->indexing;
}

bool lists(const QString& path, const QList<IndexedVolume>& volumes) {
    return std::any_of(volumes.begin(), volumes.end(),
                       [&path](const IndexedVolume& volume) { return volume.path == path; });
}

const QString kStartupVolume = u"/"_s;
const QString kFiles = kDataVolume.toString();

} // namespace

QList<IndexedVolume> parsedIndexing(const QString& states) {
    QList<IndexedVolume> volumes;
    for (const QString& line : states.split(u'\n', Qt::SkipEmptyParts)) {
        if (line.startsWith(u'/') && line.endsWith(u':')) {
            volumes.append({line.chopped(1)});
        } else if (line.startsWith(u'\t') && !volumes.isEmpty()) {
            volumes.last().indexing = indexingIn(line);
        }
    }
    return volumes;
}

bool isIndexingOff(const QList<IndexedVolume>& volumes) {
    return isOff(indexingOf(kFiles, volumes)) &&
           std::none_of(volumes.begin(), volumes.end(),
                        [](const IndexedVolume& volume) { return volume.indexing == Indexing::On; });
}

std::optional<bool> indexesFiles(const QList<IndexedVolume>& volumes) {
    const Indexing indexing = indexingOf(lists(kFiles, volumes) ? kFiles : kStartupVolume, volumes);
    if (indexing == Indexing::On) {
        return true;
    }
    return isOff(indexing) ? std::optional(false) : std::nullopt;
}

bool isChanging(const QList<IndexedVolume>& volumes) {
    return std::any_of(volumes.begin(), volumes.end(),
                       [](const IndexedVolume& volume) { return volume.indexing == Indexing::Changing; });
}

bool keepsIndexingFiles(const QList<IndexedVolume>& volumes) {
    return isOff(indexingOf(kStartupVolume, volumes)) && indexingOf(kFiles, volumes) == Indexing::On;
}

QString indexingName(Indexing indexing) {
    switch (indexing) {
    case Indexing::On:
        return u"on"_s;
    case Indexing::Off:
        return u"off"_s;
    case Indexing::SearchOff:
        return u"search off"_s;
    case Indexing::Changing:
    case Indexing::Unknown:
        break;
    }
    return {};
}

Indexing indexingNamed(const QString& name) {
    for (const Indexing indexing : {Indexing::On, Indexing::Off, Indexing::SearchOff}) {
        if (name == indexingName(indexing)) {
            return indexing;
        }
    }
    return Indexing::Unknown;
}

} // namespace quorvane
