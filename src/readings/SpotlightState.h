#pragma once

#include <QList>
#include <QString>
#include <QStringView>

#include <optional>

namespace quorvane {

/// The volume that the user's files are on; "/" is the system's own, which nobody can write to.
inline constexpr QStringView kDataVolume = u"/System/Volumes/Data";

/// What Spotlight does with a volume.
enum class Indexing {
    On,
    Off,
    SearchOff, ///< off, and not even what was indexed can be searched
    Changing,  ///< on its way from one to another
    Unknown,   ///< every other state: no index, read only
};

struct IndexedVolume {
    QString path;
    Indexing indexing = Indexing::Unknown;

    bool operator==(const IndexedVolume&) const = default;
};

/// Reads the output of `mdutil -s`: each volume with the state beneath it, in their order. Empty for what names none.
QList<IndexedVolume> parsedIndexing(const QString& states);

/// True when every volume that is on or off is off, and that of the files is among them.
bool isIndexingOff(const QList<IndexedVolume>& volumes);
/// Whether the user's files are indexed; none where the volume that they are on is neither on nor off. Where that isn't listed the
/// startup volume speaks for it.
std::optional<bool> indexesFiles(const QList<IndexedVolume>& volumes);
/// True while one of them changes.
bool isChanging(const QList<IndexedVolume>& volumes);
/// True where macOS has switched off the startup volume and not that of the files.
bool keepsIndexingFiles(const QList<IndexedVolume>& volumes);

/// "on", "off" and "search off" as they stand in files; empty for a state that nobody can bring back.
QString indexingName(Indexing indexing);
/// Unknown for every other text.
Indexing indexingNamed(const QString& name);

} // namespace quorvane
