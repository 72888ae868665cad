#pragma once

#include "fakes/MacPicture.h"
#include "profiles/UnifiedProfile.h"
#include "simulator/Json.h"
#include "snapshots/SystemSnapshot.h"

#include <QList>
#include <QMap>
#include <QSet>
#include <QString>

namespace quorvane {

/// Of the three flows that a user has, "Undo Performance Tweaks" and "Apply Default" take the first.
enum class ReturnBy { Revert, Reinstate };

/// What is known of one round trip: capture, apply, the way back; and in between something happens to the Mac.
struct RoundTrip {                 // NOLINT(bugprone-exception-escape): the JSON class checks itself where it moves
    macsim::Json mac;              ///< the description of the Mac
    SystemSnapshot snapshot;       ///< what was captured
    QList<UnifiedProfile> applied; ///< in their order
    bool isOneWay = false;         ///< only the tweaks were applied, and only those that are selected
    ReturnBy wayBack = ReturnBy::Reinstate;
    bool mayAskSystemEvents = true; ///< at the capture and on the way back
    bool mayChangeBackups = true;   ///< the program has Full Disk Access from the capture to the way back
};

/// A kind of difference that the way back leaves, by design. docs/WAY-BACK.md tells the user of each under its name.
struct RoundTripException {
    const char16_t* name;
    const char* reason;
    bool (*covers)(const macsim::MacDifference& difference, const RoundTrip& trip);
};

/// True of what the program keeps for itself and needs for the way back.
bool isQuorvanesOwn(const macsim::MacDifference& difference);
/// True of what an undo of tweaks leaves as it finds it: what runs at login, and the network.
bool isOfStartup(const macsim::MacDifference& difference);

/// True of what a restart has loaded on a Mac without the program: what its user had stopped for the time being.
bool isLeftToTheNextStart(const macsim::MacDifference& difference, const RoundTrip& trip);

/// In the order of docs/WAY-BACK.md. No difference is covered by two of them.
const QList<RoundTripException>& roundTripExceptions();

// Differences of network services, which MacPicture tells apart by number and not by name.

inline const QString kService = QStringLiteral("network service ");

// Differences of login items, which MacPicture tells apart by name and not by file.

/// "login item /Applications/Chat.app", or by the name where macOS doesn't find the file.
QString loginItemKey(const macsim::Json& item);
inline const QString kLoginItem = QStringLiteral("login item ");
inline const QString kLoginItemOrder = QStringLiteral("order of the login items");

} // namespace quorvane
