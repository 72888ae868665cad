#pragma once

#include "fakes/InProcessMac.h"
#include "fakes/MacPicture.h"
#include "fakes/ManualClock.h"
#include "fakes/SimulatedStartup.h"
#include "snapshots/MasterSystemBaseline.h"
#include "snapshots/RestoreBaseline.h"
#include "snapshots/SnapshotManager.h"

#include <QDir>
#include <QProcess>
#include <QRegularExpression>

namespace quorvane {

const QString kWayBackSnapshot = u"/Users/alex/Library/Application Support/Quorvane/system_snapshot.json"_s;
const QString kWayBackProfiles = u"/Users/alex/Library/Application Support/Quorvane/UnifiedProfiles"_s;
const QString kHomeBaselines = u"/Users/alex/.quorvane"_s;
const QString kCloudBaselines =
    u"/Users/alex/Library/Mobile Documents/7KX2MR04TD~com~quorvane~app/Documents/Quorvane/SystemBaselines"_s;

/// A Mac with everything that a way back brings back: its settings were captured and archived in March, at home and in iCloud;
/// then a profile was applied that puts every tweak in force, takes a login item away, adds an application and switches the
/// network off. Each test works on copies of it, with tools that run in this process.
class WayBackMac : public ::testing::Test {
public:
    ~WayBackMac() override;

protected:
    WayBackMac();

    static QString program();
    static UnifiedProfile gig();
    QString copyOfMac();
    QString faultsFile(const QByteArray& rules);

    // ---- Flows in this process

    /// @param log  gets the lines
    bool capture(const QString& mac, QStringList* log = nullptr, const QString& faults = {});
    /// The Mac after a way back, without the files of the snapshot and the baselines and what a killed write has left beside
    /// them. @param flow  "revert" or "reinstate"
    macsim::MacPicture wentBack(const QString& mac, const QString& flow);

    // ---- What the program has stored

    static std::optional<SystemSnapshot> snapshotOn(const QString& mac);

    /// Each file that the program keeps can be read, and no current baseline is without its archive.
    static void expectFilesWhole(const QString& mac);
    static QByteArray contentOn(const QString& mac, const QString& path);

    /// The names in a folder, without what a killed write has left beside its file.
    static QStringList filesOn(const QString& mac, const QString& path);
    QString original() const;

    QTemporaryDir folder;
    NotificationCenter notifications;
    ManualClock march;

private:
    static QStringList namesOf(const QList<UnifiedProfile>& profiles);
    static void removeFiles(const QString& mac, const QString& place);
    static void expectBaselinesWhole(const QString& mac, const QString& place);

    int m_copies = 0;
    int m_interruptions = 0;
};

} // namespace quorvane
