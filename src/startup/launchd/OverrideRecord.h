#pragma once

#include "core/JsonForward.h"
#include "startup/launchd/DisabledServices.h"

#include <QList>
#include <QString>

namespace quorvane {

class FileManager;
class Machine;

/// {"label": "com.example.agent", "domain": "user"}, or "system"
Json encodeJson(const LaunchdService& service);
/// Throws DecodingError.
void decodeJson(const Json& json, LaunchdService& service);

/// An override that the program has written, or was about to write.
struct RecordedOverride {
    LaunchdService service;
    bool isConfirmed = true; ///< launchd has shown it; an earlier version's entry counts as that

    bool operator==(const RecordedOverride&) const = default;
};
/// The service's, and "isPending": true where it isn't confirmed.
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
