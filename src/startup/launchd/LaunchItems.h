#pragma once

#include "core/Flow.h"
#include "startup/launchd/LaunchFolders.h"
#include "startup/launchd/LaunchItemGuards.h"
#include "startup/launchd/LaunchPlist.h"
#include "startup/launchd/Launchd.h"
#include "startup/launchd/PutAsideRecord.h"

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

    /// Whom they are taken out of and given back to.
    Launchd& launchd() { return m_launchd; }
    const Launchd& launchd() const { return m_launchd; }

    /// Takes plists out of launchd, for good where nothing else goes by their labels, and puts them aside. A daemon that only
    /// runs when its application needs it stays.
    struct Outcome {
        bool succeeded = true;
        QList<LaunchPlist> held; ///< daemons that nobody may touch before the background task list was read
    };
    /// @param labels       file names, with ".plist"
    /// @param excludedIds  agents that stay all the same, by id or file name
    QCoro::Task<Outcome> disable(QStringList labels, QSet<QString> excludedIds, LaunchItemGuards guards);
    /// Called when the batch has run, or has failed: tells what became of the system's plists that went into it.
    /// @param hasFailed  it was told already that nothing, or not all, was done
    QCoro::Task<void> settleDisabled(bool hasFailed);

    // ---- The way back: LaunchItems+Restore.cpp

    /// Lifts the recorded overrides of the user's domain, and moves back what was put aside and can be moved back as the user;
    /// what the open batch brings back isn't touched.
    /// @param kept  stays switched off; the same below
    QCoro::Task<void> restore(KeptOff kept = {});
    /// The same where the user's overrides are lifted already.
    QCoro::Task<void> bringBack(KeptOff kept);
    /// Adds to the open batch what lifts the recorded overrides of the system's domain, and what brings back the system's
    /// plists, from the copies that root has kept.
    void queueKept(KeptOff kept = {});
    /// The overrides alone, for a way back that brings no plists.
    void queueLifts(const KeptOff& kept = {});
    /// Called when that batch is finished: loads what is back and removes its backup, and tells of what isn't back.
    QCoro::Task<void> settleKept(KeptOff kept = {});
    /// The places of all plists that wait aside, also of those that no record tells of.
    QSet<QString> placesOfPutAside() const;
    /// Of those the ones of which no record tells: an earlier version put them aside.
    QSet<QString> unrecordedPlaces() const;

private:
    struct Found;
    struct Preparation;
    struct SwitchedOff;
    struct SystemPlist;

    QList<LaunchFolder> folders() const;
    Found find(const QString& label, const SwitchedOff& switchedOff, const LaunchItemGuards& guards) const;
    QCoro::Task<Preparation> prepare(QStringList labels, LaunchItemGuards guards);
    bool hasJob(const QStringList& labels) const;
    QList<LaunchdService> servicesThatGo(const QList<LaunchPlist>& going, const QList<LaunchPlist>& all,
                                         const QList<LaunchdService>& staying) const;
    QCoro::Task<void> notePutAside(QList<LaunchPlist> plists);
    PutAsideRecord::Jobs putAside() const;
    void forgetBroughtBack();
    QCoro::Task<bool> disableUsersPlist(LaunchPlist plist, bool isOverridden);
    QCoro::Task<bool> disableSystemPlists(QList<SystemPlist> plists);
    bool isRootsAlone(const QString& keepFolder) const;

    QString unusableBackupFolder(const LaunchFolder& folder) const;
    QStringList plistsPutAside(const LaunchFolder& folder, const KeptOff& kept) const;
    QStringList copiesKept(const LaunchFolder& folder) const;
    QCoro::Task<bool> restorePlist(LaunchFolder folder, QString name, QList<LaunchdService> lifted);
    QCoro::Task<void> loadInterrupted(KeptOff kept);
    QCoro::Task<void> enableUsersJob(QString plist, QList<LaunchdService> lifted);
    QCoro::Task<void> load(QString plist);
    KeptLaunchPlist keptPlist(const LaunchFolder& folder, const QString& name, const QList<LaunchdService>& lifted,
                              const PutAsideRecord::Jobs& putAside) const;
    bool holdTheSame(const QString& path, const QString& otherPath) const;
    void removeBackup(const QString& backup);

    AdminBatch& m_batch;
    Launchd m_launchd;
    QList<LaunchPlist> m_queued; ///< what root moves in the open batch
};

} // namespace quorvane
