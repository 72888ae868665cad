#pragma once

#include "core/JsonForward.h"

#include <QHash>
#include <QString>

namespace quorvane {

class FileManager;
class Machine;

/// How launchd had the job of a plist before the plist was put aside.
enum class JobBefore {
    Loaded,
    NotLoaded,  ///< its user had stopped it
    Unknown,    ///< launchd didn't tell
    Unrecorded, ///< an earlier version of the program put it aside, and took every job for loaded
};

/// True for one that the way back loads; of which nobody knows, starts at the next login, if anything starts it.
inline bool isLoadedAgain(JobBefore job) {
    return job == JobBefore::Loaded || job == JobBefore::Unrecorded;
}

/// A plist that was put aside, by the path of its place.
struct PutAsidePlist {
    QString path;
    JobBefore job = JobBefore::Unrecorded;
};
/// The path alone where nothing is recorded of its job; else {"path": "/…", "wasLoaded": true}, and without "wasLoaded" where
/// nobody knew.
Json encodeJson(const PutAsidePlist& plist);
/// Throws DecodingError.
void decodeJson(const Json& json, PutAsidePlist& plist);

/// The launch plists that this version of the program has put aside, by the paths of their places: a file of the user's. Earlier
/// versions left overrides behind of which no record tells; of these here every override is recorded. Main thread.
class PutAsideRecord {
public:
    PutAsideRecord(FileManager& files, const Machine& machine);

    using Jobs = QHash<QString, JobBefore>;
    /// Empty where there is no file, or one that can't be read.
    Jobs read() const;
    /// An empty record needs no file. Throws FileError.
    void write(const Jobs& jobs);

private:
    FileManager& m_files;
    QString m_folder;
    QString m_file;
};

} // namespace quorvane
