#pragma once

#include "core/JsonForward.h"
#include "startup/launchd/DisabledServices.h"

#include <QList>
#include <QString>

#include <optional>

namespace quorvane {

class FileManager;
class Machine;

/// {"label": "com.example.agent", "domain": "user"}, or "system"
Json encodeJson(const LaunchdService& service);
/// Throws DecodingError.
void decodeJson(const Json& json, LaunchdService& service);

/// A service that is about to be switched off, and what is known of its job.
struct ServiceGoing {
    LaunchdService service;
    QString name{};        ///< as people know it; empty for its label
    QString plist{};       ///< from which launchd loads it; empty where none is known
    bool isStopped = true; ///< false where it runs on until the restart

    bool operator==(const ServiceGoing&) const = default;
};

/// An override that the program has written, or was about to write.
struct RecordedOverride {
    LaunchdService service;
    bool isConfirmed = true;               ///< launchd has shown it; an earlier version's entry counts as that
    std::optional<OverrideState> before{}; ///< that launchd had; none in an earlier version's entry
    std::optional<bool> wasLoaded{};       ///< the same of its job, where it was stopped; none where nobody knows
    QString name{};                        ///< as of ServiceGoing, and so the plist
    QString plist{};

    QString shownName() const { return name.isEmpty() ? service.label : name; }
    /// False for one that may have been its user's own: launchd told neither of its overrides nor that its job was loaded.
    bool isLiftable() const { return before != OverrideState::Unknown || wasLoaded.value_or(false); }
    bool operator==(const RecordedOverride&) const = default;
};
/// The service's, and "isPending": true where it isn't confirmed; what was before where that is known: "override" ("enabled",
/// "notListed" or "unknown"), "wasLoaded", "name" and "plist".
Json encodeJson(const RecordedOverride& recorded);
/// Throws DecodingError.
void decodeJson(const Json& json, RecordedOverride& recorded);

/// Which of launchd's overrides the program itself has written: a file of the user's, by which the way back goes. Whatever
/// runs as the user can change it. Main thread.
class OverrideRecord {
public:
    OverrideRecord(FileManager& files, const Machine& machine);

    /// Empty where there is no file. Throws FileError, and DecodingError for a file that holds something else.
    QList<RecordedOverride> read() const;
    /// An empty record needs no file. Throws FileError.
    void write(const QList<RecordedOverride>& overrides);
    /// Takes some out of the file; those that aren't there don't matter. Throws FileError and DecodingError.
    void strike(const QList<LaunchdService>& services);
    /// Lets a file that holds something else make room under a name that nothing has. Throws FileError. @return the name
    QString putAside();

private:
    FileManager& m_files;
    QString m_folder;
    QString m_file;
};

} // namespace quorvane
