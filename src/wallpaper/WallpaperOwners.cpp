#include "wallpaper/WallpaperOwners.h"

#include "wallpaper/WallpaperFiles.h"

#include <QHash>
#include <QSet>

#include <algorithm>
#include <optional>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using Kind = ShownWallpaper::Kind;

/// The beginning of an identifier that stands for no display: a number follows.
const QString kAway = u"away-"_s;

/// Why a display may have a record, the best reason first.
enum class Reason {
    ShowsOwnFile, ///< it shows a file of the record of its number
    ShowsAnothersFile,
    HasItsNumber,
};

struct OwnerClaim {
    Reason reason;
    qsizetype record; ///< its place in the manifest
    ShownWallpaper display;
};

/// A manifest of an earlier version doesn't know the display's make.
bool mayBeSameScreen(const ScreenWallpaperRecord& record, const ShownWallpaper& display) {
    return record.screenIdentifier == display.screenIdentifier &&
           record.screen.value_or(display.screen) == display.screen;
}

/// Whether the record is about a label of the display that may still stand on another Space of it.
bool mayStandElsewhere(const ScreenWallpaperRecord& record, const ShownWallpaper& display, Spaces spaces) {
    const bool isAboutALabel = !record.shownAs.value_or(QStringList()).isEmpty();
    return spaces != Spaces::TheSame && display.kind == Kind::Users && isAboutALabel;
}

template <typename Condition>
std::optional<qsizetype> placeWhere(const WallpaperManifest& manifest, Condition condition) {
    const auto found = std::find_if(manifest.screens.cbegin(), manifest.screens.cend(), condition);
    return found == manifest.screens.cend() ? std::nullopt : std::optional(found - manifest.screens.cbegin());
}

std::optional<OwnerClaim> claimOf(const ShownWallpaper& display, const WallpaperManifest& manifest, Spaces spaces) {
    const auto shows = [&display](const ScreenWallpaperRecord& record) {
        return display.kind == Kind::Ours && isShownAs(record, display.file);
    };
    const auto isOwn = [&display](const ScreenWallpaperRecord& record) {
        return record.screenIdentifier == display.screenIdentifier;
    };
    if (const auto place = placeWhere(manifest, [&](const auto& record) { return isOwn(record) && shows(record); })) {
        return OwnerClaim{Reason::ShowsOwnFile, *place, display};
    }
    if (const auto place = placeWhere(manifest, shows)) {
        return OwnerClaim{Reason::ShowsAnothersFile, *place, display};
    }
    const auto isOfItsNumber = [&](const ScreenWallpaperRecord& record) {
        return mayBeSameScreen(record, display) && !mayStandElsewhere(record, display, spaces);
    };
    if (const auto place = placeWhere(manifest, isOfItsNumber)) {
        return OwnerClaim{Reason::HasItsNumber, *place, display};
    }
    return std::nullopt;
}

QList<OwnerClaim> claimsOf(const QList<ShownWallpaper>& displays, const WallpaperManifest& manifest, Spaces spaces) {
    QList<OwnerClaim> claims;
    for (const ShownWallpaper& display : displays) {
        if (const std::optional<OwnerClaim> claim = claimOf(display, manifest, spaces)) {
            claims.append(*claim);
        }
    }
    std::stable_sort(claims.begin(), claims.end(),
                     [](const OwnerClaim& one, const OwnerClaim& other) { return one.reason < other.reason; });
    return claims;
}

ScreenWallpaperRecord recordFor(const OwnerClaim& claim, ScreenWallpaperRecord record) {
    record.screenIdentifier = claim.display.screenIdentifier;
    record.screen = claim.display.screen;
    record.mayBeReplaced = false;
    if (claim.display.kind == Kind::Users) {
        record.shownAs = QStringList();
    } else if (claim.reason != Reason::HasItsNumber) {
        record.shownAs = QStringList(claim.display.file);
    }
    return record;
}

bool isAway(const QString& identifier) {
    bool isNumbered = false;
    identifier.mid(kAway.size()).toUInt(&isNumbered);
    return isNumbered && identifier.startsWith(kAway);
}

/// Whether the record's display has been given what another one shows.
bool isReplaced(const ScreenWallpaperRecord& record, const QList<OwnerClaim>& others) {
    return std::any_of(others.cbegin(), others.cend(),
                       [&record](const OwnerClaim& other) { return mayBeSameScreen(record, other.display); });
}

/// Whether somebody may look for a record that no display has.
bool isStillWanted(const ScreenWallpaperRecord& record, const QList<OwnerClaim>& others, Spaces spaces) {
    const bool wasReplaced = record.mayBeReplaced && spaces == Spaces::TheSame;
    return record.shownAs != QStringList() && !isReplaced(record, others) && !wasReplaced;
}

bool mayBeReplaced(const ScreenWallpaperRecord& record, const QList<ShownWallpaper>& displays, Spaces spaces) {
    const bool isCovered =
        record.mayBeReplaced || std::any_of(displays.cbegin(), displays.cend(), [&](const ShownWallpaper& display) {
            return mayBeSameScreen(record, display) && mayStandElsewhere(record, display, spaces);
        });
    return spaces == Spaces::Unknown && isCovered;
}

/// Identifiers that no display has.
class FreeIdentifiers {
public:
    explicit FreeIdentifiers(const WallpaperManifest& manifest) {
        for (const ScreenWallpaperRecord& record : manifest.screens) {
            m_taken.insert(record.screenIdentifier);
        }
    }
    QString next() {
        do {
            ++m_number;
        } while (m_taken.contains(kAway + QString::number(m_number)));
        return kAway + QString::number(m_number);
    }

private:
    QSet<QString> m_taken;
    int m_number = 0;
};

} // namespace

bool isShownAs(const ScreenWallpaperRecord& record, const QString& file) {
    const bool isLabel =
        record.shownAs ? record.shownAs->contains(file) : WallpaperFiles::isComposited(file, record.screenIdentifier);
    return isLabel || WallpaperFiles::nameOf(record.originalImagePath) == file;
}

bool isShownElsewhere(const WallpaperManifest& manifest, const QString& file, const QString& screenIdentifier) {
    return std::any_of(manifest.screens.cbegin(), manifest.screens.cend(), [&](const ScreenWallpaperRecord& record) {
        return record.screenIdentifier != screenIdentifier && isShownAs(record, file);
    });
}

bool isCopyElsewhere(const WallpaperManifest& manifest, const QString& path, const QString& screenIdentifier) {
    return std::any_of(manifest.screens.cbegin(), manifest.screens.cend(), [&](const ScreenWallpaperRecord& record) {
        return record.screenIdentifier != screenIdentifier && record.originalImagePath == path;
    });
}

WallpaperManifest settledManifest(const WallpaperManifest& manifest, const QList<ShownWallpaper>& displays,
                                  Spaces spaces) {
    QHash<qsizetype, OwnerClaim> owners; // by their records
    QList<OwnerClaim> others;            // who show the record of another display that still shows it
    for (const OwnerClaim& claim : claimsOf(displays, manifest, spaces)) {
        if (!owners.contains(claim.record)) {
            owners.insert(claim.record, claim);
        } else if (claim.reason == Reason::ShowsAnothersFile) {
            others.append(claim);
        }
    }
    WallpaperManifest settled;
    FreeIdentifiers identifiers(manifest);
    for (qsizetype place = 0; place < manifest.screens.size(); ++place) {
        ScreenWallpaperRecord record = manifest.screens[place];
        if (const auto owner = owners.constFind(place); owner != owners.cend()) {
            settled.screens.append(recordFor(*owner, record));
        } else if (isStillWanted(record, others, spaces)) {
            record.mayBeReplaced = mayBeReplaced(record, displays, spaces);
            record.screenIdentifier = isAway(record.screenIdentifier) ? record.screenIdentifier : identifiers.next();
            settled.screens.append(record);
        }
    }
    for (const OwnerClaim& other : others) {
        settled.screens.append(recordFor(other, manifest.screens[other.record]));
    }
    return settled;
}

} // namespace quorvane
