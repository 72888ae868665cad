#pragma once

#include "snapshots/ChosenBaseline.h"
#include "snapshots/MasterSystemBaseline.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

/// What a way back goes by.
enum class RestoreSource {
    StandardDefaults, ///< what a fresh macOS has: nothing was captured
    Snapshot,         ///< the latest local snapshot
    Baseline,         ///< the protected master baseline
    First,            ///< what the program captured by itself, before its first change
    Chosen,           ///< the one that the user wants
};

/// The settings that a way back restores.
struct RestoreBaseline {
    SystemSnapshot snapshot;
    RestoreSource source = RestoreSource::Snapshot;
    bool isNewer = false; ///< the protected baseline was taken though there is a local snapshot
    QString otherMac{};   ///< the one that the baseline was saved on; empty where that is this one

    bool operator==(const RestoreBaseline&) const = default;
};

Json encodeJson(const RestoreBaseline& baseline);
/// Throws DecodingError.
void decodeJson(const Json& json, RestoreBaseline& baseline);

/// The newer of the two; the local snapshot when they are of one time, and always where the baseline is another Mac's.
std::optional<RestoreBaseline> chosenRestoreBaseline(const std::optional<SystemSnapshot>& local,
                                                     const std::optional<LatestBaseline>& master);

/// All that there is to go back to on a Mac.
struct KeptCaptures {
    std::optional<SystemSnapshot> local;
    std::optional<LatestBaseline> master;
    std::optional<MasterSystemBaseline> first; ///< this Mac's own
    std::optional<ChosenBaseline> chosen;
};

/// What the user has chosen, until a snapshot or baseline of this Mac is captured after that; then the newest of these; then what the
/// program has captured by itself; then another Mac's.
std::optional<RestoreBaseline> restoreBaselineOf(const KeptCaptures& kept, const MacIdentity& mac);

/// The moment of the newest snapshot or protected baseline of this Mac; invalid without any.
QDateTime newestCapture(const KeptCaptures& kept);

/// What a search for something to go back to came to. A flow that is given one searches no second time: the user was asked
/// about what was found.
struct FoundBaseline {
    std::optional<RestoreBaseline> baseline;
};

/// The applications that go from the login items with the tweaks: those that the program has put there and those that a
/// saved profile opens, but for the user's own. Where it isn't known which those are, only what the program has put there.
/// @param managed     paths of the former
/// @param ofProfiles  paths of the latter
QSet<QString> startupAppsThatGo(const QSet<QString>& managed, const QSet<QString>& ofProfiles,
                                const std::optional<RestoreBaseline>& baseline);

/// What a way back came to: every caller finds its own words in it.
struct RestoreOutcome {
    bool succeeded = false; ///< all was carried out, and everything was read back
    RestoreSource source = RestoreSource::StandardDefaults;
    QStringList
        missing{}; ///< names of what isn't back although all was carried out; empty where the password was refused

    bool operator==(const RestoreOutcome&) const = default;
};

} // namespace quorvane
