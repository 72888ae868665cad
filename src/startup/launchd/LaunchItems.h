#pragma once

#include "core/Flow.h"
#include "startup/launchd/LaunchFolders.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

namespace quorvane {

class AdminBatch;

/// The launch agents and daemons: their plists are taken out of launchd and put aside, and brought back. Those of the system
/// need root and go through the batch. Main thread.
class LaunchItems : private Flow {
public:
    LaunchItems(FlowEnvironment& environment, AdminBatch& batch);

    QList<LaunchFolder> folders() const;
    /// True when a plist of that file name lies in one of the folders.
    bool hasPlist(const QString& label) const;

    /// Takes plists out of launchd and puts them aside.
    /// @param labels           file names, with ".plist"
    /// @param excludedIds      agents that stay all the same, by id or file name
    /// @param protectedLabels  those of audio software which their names don't show
    QCoro::Task<bool> disable(QStringList labels, QSet<QString> excludedIds, QSet<QString> protectedLabels);

    // ---- The way back: LaunchItems+Restore.cpp

    /// Moves back what was put aside and can be moved back as the user; what the open batch brings back isn't touched.
    QCoro::Task<void> restore();
    /// Adds to the open batch what brings back the system's plists, from the copies that root has kept.
    void queueKept();
    /// Called when that batch is finished: loads what is back and removes its backup, and tells of what isn't back.
    QCoro::Task<void> settleKept();

private:
    struct SystemPlist;
    struct Places;

    Places placesOf(const QString& label) const;
    QCoro::Task<bool> disableUsersPlist(QString label, LaunchFolder folder);
    QCoro::Task<bool> disableSystemPlists(QList<SystemPlist> plists);
    bool isRootsAlone(const QString& keepFolder) const;

    QString unusableBackupFolder(const LaunchFolder& folder) const;
    QStringList plistsPutAside(const LaunchFolder& folder) const;
    QCoro::Task<bool> restorePlist(LaunchFolder folder, QString name);
    QCoro::Task<void> enableUsersJob(QString plist);
    QCoro::Task<void> load(QString plist);
    KeptLaunchPlist keptPlist(const LaunchFolder& folder, const QString& name) const;
    bool holdTheSame(const QString& path, const QString& otherPath) const;
    void removeBackup(const QString& backup);

    AdminBatch& m_batch;
};

} // namespace quorvane
