#pragma once

#include "network/NetworkServices.h"
#include "readings/CurrentSettings.h"
#include "readings/ExportedPreferences.h"
#include "snapshots/SystemSnapshot.h"
#include "startup/items/LoginItem.h"

#include <QList>
#include <QString>

#include <optional>

namespace quorvane {

/// One of the user's own settings beside what this Mac has now.
struct ComparedSetting {
    enum class State {
        Back,
        Missing,
        LeftAlone, ///< somebody else decides, or it isn't there now: nothing that the program could bring back
    };
    QString name; ///< a tweak's; with the source of power or the volume, where that is what differs
    State state = State::Back;
    QString what{}; ///< of one that isn't back

    bool isBack() const { return state == State::Back; }
    bool operator==(const ComparedSetting&) const = default;
};

/// What was captured, compared with one look at the Mac: each tweak, and then login items and network services. A preference is back
/// where its value and its type are, or where it means the same and a type isn't known. Of what wasn't captured nothing is said, but
/// for preferences that the way back would remove.
/// @param current   with every volume, where the snapshot knows each
/// @param typed     empty where nobody asked
/// @param loginItems, services  none where they aren't compared; no services at all means that they can't be listed
QList<ComparedSetting> comparedWith(const SystemSnapshot& snapshot, const CurrentSettings& current,
                                    const TypedReadings& typed, const std::optional<QList<LoginItem>>& loginItems,
                                    const std::optional<QList<NetworkServiceState>>& services);

/// The tweaks compared with what a fresh macOS has.
QList<ComparedSetting> comparedWithStandard(const CurrentSettings& current);

/// The preferences whose types a comparison needs.
QList<MacPreference> preferencesToCompareByType(const SystemSnapshot& snapshot, const CurrentSettings& current);
/// With each value of another type than the captured one as XML, since a text alone would be taken for the same.
CurrentSettings tellingTypes(CurrentSettings current, const SystemSnapshot& snapshot, const TypedReadings& typed);

/// True where another look at Spotlight may tell more: a volume isn't as it was, or hasn't come to its state yet.
/// @param snapshot  none for a fresh macOS
bool mayIndexingStillChange(const std::optional<SystemSnapshot>& snapshot, const CurrentSettings& current);

/// Those that are missing, by their names.
QStringList namesOfMissing(const QList<ComparedSetting>& settings);

} // namespace quorvane
