#pragma once

#include "flows/FlowRecord.h"

#include <QDateTime>
#include <QSet>
#include <QString>

#include <optional>

namespace quorvane {

class FileManager;
class Machine;
struct ApplyVerificationResult;
struct LastFlowStanding;

/// The apply or the way back that ended last and was done, and what it left: by that it is seen what somebody else has changed since.
struct LastFlow {
    RecordedFlow flow = RecordedFlow::Profile;
    QString name;
    QDateTime ended;
    QDateTime since; ///< the first time that this profile was applied with no other flow in between; else as `ended`
    UnifiedProfile profile;                  ///< of an apply, as it was applied: the saved one may be another by now
    std::optional<CleanReboot> cleanReboot;  ///< of tweaks
    std::optional<RestoreBaseline> baseline; ///< of a way back; none where it was what a fresh macOS has
    QSet<QString> held;                      ///< names of what read as it should
};

/// Its file, "last-flow.json" in "~/.quorvane".
class LastFlowFile {
public:
    LastFlowFile(FileManager& files, const Machine& machine);

    /// None where there is none that can be read.
    std::optional<LastFlow> load() const;
    /// Throws FileError, or EncodingError for a date that no file can hold.
    void save(const LastFlow& last) const;
    /// Nothing is known any more of what was left. Throws FileError.
    void remove() const;

private:
    FileManager& m_files;
    QString m_folder;
    QString m_file;
};

/// The record of a flow that is done, in the place of an earlier one's.
LastFlow lastFlowOf(const FlowRecord& flow, const ApplyVerificationResult& left, const QDateTime& ended,
                    const std::optional<LastFlow>& earlier);

/// @param now  the same, read anew
LastFlowStanding standingOf(const LastFlow& last, const ApplyVerificationResult& now);

} // namespace quorvane
