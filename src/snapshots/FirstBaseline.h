#pragma once

#include "snapshots/MasterSystemBaseline.h"
#include "snapshots/RestoreBaseline.h"

#include <QList>
#include <QSet>
#include <QString>

#include <optional>

namespace quorvane {

class FileManager;
class Machine;
struct Host;

// The settings that a Mac had before the program changed any: captured without being asked for, and never replaced.

inline const QString kBeforeQuorvane = QStringLiteral("Before Quorvane");
/// Where an earlier change shows: the settings are the user's own but for what is known to be the program's.
inline const QString kFirstSeen = QStringLiteral("First seen");

/// What tells that the program has changed this Mac before.
struct EarlierChanges {
    bool isAny = false;
    QSet<QString> tweaks;       ///< keys of those that it has put in force, and that haven't been seen back since
    QSet<QString> applications; ///< paths of those that it has put into the login items

    bool operator==(const EarlierChanges&) const = default;
};

/// By the program's own preferences, the overrides that it has recorded (a record that can't be read counts) and the folder of
/// what it has put aside.
EarlierChanges readEarlierChanges(const Host& host);

/// A snapshot without what the program is known to have changed: the settings of those tweaks are put at what a fresh macOS
/// has, and those applications aren't among the login items. What a Mac doesn't have stays out of it.
SystemSnapshot withoutChanges(SystemSnapshot snapshot, const EarlierChanges& changes);

/// The files in which they are kept: "~/.quorvane/before-quorvane.json", and further numbers ("before-quorvane-2.json") where that one
/// is another Mac's or can't be read. None is ever replaced or removed. Main thread.
class FirstBaselines {
public:
    FirstBaselines(FileManager& files, const Machine& machine);

    struct File {
        QString name;
        std::optional<MasterSystemBaseline> baseline; ///< none where it can't be read
    };
    /// In the order of their numbers.
    QList<File> all() const;
    /// The first that can be read and was captured on this Mac.
    std::optional<MasterSystemBaseline> own() const;
    /// Writes it under the next free number, unless this Mac has one by then. Throws FileError, or EncodingError for a date that no
    /// file can hold.
    void keep(const MasterSystemBaseline& baseline);

private:
    FileManager& m_files;
    const Machine& m_machine;
    QString m_folder;
};

/// What there is at home to go back to, but for what another Mac has archived.
KeptCaptures capturesAtHome(FileManager& files, const Machine& machine);

/// Whether there is a snapshot, or a baseline at home, that was captured on this Mac and can be read. Nobody waits for iCloud's.
bool hasOwnCapture(FileManager& files, const Machine& machine);

} // namespace quorvane
