#pragma once

#include "rehearsal/Rehearsal.h"

#include <QByteArray>
#include <QString>
#include <QStringList>

namespace quorvane {

// What a terminal shows of the records that a window has views for.

QStringList previewLines(const ProfileApplyPreview& preview);
QStringList startupItemLines(const QList<StartupItem>& items);
/// "1 — Nov 23, 2026 at 10:58 AM — Quorvane 2026-11-23 10.58.07 (4711).log"
QStringList runLines(const QList<KeptRun>& runs);
QStringList backupLines(const QList<ListedBackup>& backups);
/// Numbered from 0, what is used with a mark: "1 — Before the tour — Snapshot, Nov 15, 2026 at 9:05 PM, this Mac — Used"
QStringList baselineLines(const QList<ChoosableRow>& rows);
QStringList alertLines(const ClosingAlert& alert);
/// "Color LCD: /Users/mika/Pictures/Stage.jpg"
QStringList displayLines(const QList<ShownPicture>& displays);
/// "Color LCD: the label is shown", or "Color LCD: no label. Its picture could not be read."
QStringList labelLines(const QList<DisplayLabel>& labels);

/// One JSON object with a newline: the command, its log, what it came to, and the result record.
///
///     {"command": "apply", "log": ["\n[PROFILE] Applying: Live", …], "succeeded": true,
///      "verification": {"verified": [{"name": "App Nap", "detail": "disabled"}, …], "failed": []},
///      "preview": {"profileName": "Live", "sections": [{"title": "Will enable", "rows": ["…"]}]}, "startupItems": […],
///      "alert": {"title": "Success", "text": "Trash emptied."},
///      "restore": {"source": "standardDefaults" | "snapshot" | "baseline" | "beforeQuorvane" | "chosen"},
///      "match": {"name": "Live", "kind": "savedProfile" | "builtinMode", "verification": {…}},
///      "displays": [{"display": "Color LCD", "picture": "/Users/mika/Pictures/Stage.jpg"}],
///      "labels": [{"display": "Color LCD", "isShown": false, "detail": "Its picture could not be read."}],
///      "backups": [{"id": "latest.json", "title": "Latest Backup", "detail": "2 profile(s) from Booth"}, …],
///      "runs": [{"number": 1, "title": "Nov 23, 2026 at 10:58 AM", "file": "Quorvane 2026-11-23 10.58.07 (4711).log"}, …],
///      "keptLog": ["", "[PROFILE] Applying: Live", …],
///      "baselines": [{"number": 0, "title": "The Latest", "detail": "…", "note": "…", "isUsed": true}, …]}
QByteArray jsonReport(const QString& command, const QStringList& log, const RehearsalOutcome& outcome);

} // namespace quorvane
