#include "snapshots/RestoreAlerts.h"

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

const QString kCancelled = u"Cancelled"_s;

bool hadBaseline(const RestoreOutcome& outcome) {
    return outcome.source != RestoreSource::StandardDefaults;
}

} // namespace

ClosingAlert snapshotAlert(bool isSaved) {
    if (!isSaved) {
        return {u"Snapshot Failed"_s, u"Could not save the restore baseline. Check the Logs tab for details."_s};
    }
    return {u"Snapshot Saved"_s, u"Your current system setup has been saved as the restore baseline."_s};
}

ClosingAlert undoAlert(const RestoreOutcome& outcome) {
    if (!outcome.succeeded) {
        return {kCancelled, u"System-level defaults were not restored. Check the Logs tab for details."_s};
    }
    const QString restored = outcome.hasSnapshotFile ? u"Performance tweaks restored from your saved snapshot."_s
                                                     : u"Standard operation restored."_s;
    return {u"Success"_s, restored + u"\n\nPlease restart your Mac."_s};
}

ClosingAlert defaultAlert(const RestoreOutcome& outcome) {
    if (!outcome.succeeded) {
        return {kCancelled, u"Default settings were not restored. Check the Logs tab for details."_s};
    }
    const QString restored = hadBaseline(outcome)
                                 ? u"Standard macOS settings restored from your saved restore baseline."_s
                                 : u"Standard macOS settings restored."_s;
    return {u"Default Applied"_s, restored + u"\n\nPlease restart your Mac."_s};
}

ClosingAlert reinstateAlert(const RestoreOutcome& outcome) {
    if (!outcome.succeeded) {
        return {kCancelled, u"System restoration was cancelled or failed."_s};
    }
    const QString restored = hadBaseline(outcome) ? u"System restored from your saved restore baseline."_s
                                                  : u"System has been restored to standard defaults."_s;
    return {u"Success"_s, restored + u"\n\nPlease restart your Mac for changes to take full effect."_s};
}

} // namespace quorvane
