#pragma once

#include "core/JsonForward.h"
#include "snapshots/MasterSystemBaseline.h"

#include <QDateTime>
#include <QString>

#include <optional>

namespace quorvane {

class FileManager;
class Machine;

/// The baseline that the user wants the ways back to go by.
struct ChosenBaseline {
    QDateTime chosenAt; ///< in the file at whole seconds
    MasterSystemBaseline baseline;

    bool operator==(const ChosenBaseline&) const = default;
};

/// Throws EncodingError for a date that no file can hold.
Json encodeJson(const ChosenBaseline& chosen);
/// Throws DecodingError.
void decodeJson(const Json& json, ChosenBaseline& chosen);

/// Keeps a copy of it, "~/.quorvane/chosen-baseline.json": what it was copied from may go. Main thread.
class ChosenBaselineFile {
public:
    ChosenBaselineFile(FileManager& files, const Machine& machine);

    /// None for a file that is missing, can't be read or can't be decoded.
    std::optional<ChosenBaseline> load() const;
    /// Throws FileError, or EncodingError for a date that no file can hold.
    void save(const ChosenBaseline& chosen);
    /// Also where there is none. Throws FileError.
    void remove();

private:
    FileManager& m_files;
    QString m_folder;
    QString m_path;
};

} // namespace quorvane
