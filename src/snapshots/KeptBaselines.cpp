#include "snapshots/KeptBaselines.h"

#include "platform/CloudDrive.h"
#include "platform/FileManager.h"
#include "platform/Host.h"
#include "platform/Machine.h"
#include "snapshots/ChosenBaseline.h"
#include "snapshots/FirstBaseline.h"
#include "snapshots/HomeBaselines.h"
#include "snapshots/SnapshotManager.h"

#include <QCoroTask>

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

using BaselineKind = KeptBaseline::Kind;
using BaselineState = KeptBaseline::State;

const QString kSnapshotId = u"snapshot"_s;
const QString kChosenId = u"chosen"_s;
const QString kHomeId = u"home/"_s;
const QString kCloudId = u"icloud/"_s;

/// Newest first: names hold the moment of the capture.
QStringList archiveNames(QStringList names) {
    names.removeIf([](const QString& name) { return !isMasterBaselineName(name); });
    std::sort(names.begin(), names.end(), std::greater<>());
    return names;
}

QStringList baselineNamesIn(const QString& folder, const FileManager& files) {
    try {
        return archiveNames(files.list(folder));
    } catch (const FileError&) {
        return {}; // nothing was archived at home yet
    }
}

bool isCurrent(const KeptBaseline& archive) {
    return archive.fileName == currentBaselineFile({}).mid(1);
}

bool isSame(const KeptBaseline& one, const KeptBaseline& other) {
    return one.baseline && one.baseline == other.baseline;
}

/// The current file is a copy of an archive, unless somebody has removed that.
QList<KeptBaseline> withoutCopies(const QList<KeptBaseline>& archives) {
    QList<KeptBaseline> kept;
    for (const KeptBaseline& archive : archives) {
        const auto same = std::find_if(kept.begin(), kept.end(),
                                       [&archive](const KeptBaseline& each) { return isSame(each, archive); });
        if (same == kept.end()) {
            kept.append(archive);
        } else {
            same->isAtHome = same->isAtHome || archive.isAtHome;
            same->isInCloud = same->isInCloud || archive.isInCloud;
        }
    }
    return kept;
}

/// Those that can't be read stand where their names put them; current files go last, so that archives stand for their copies.
void sortArchives(QList<KeptBaseline>& archives) {
    std::stable_sort(archives.begin(), archives.end(), [](const KeptBaseline& one, const KeptBaseline& other) {
        if (isCurrent(one) != isCurrent(other)) {
            return isCurrent(other);
        }
        return one.fileName > other.fileName;
    });
}

} // namespace

KeptBaselines::KeptBaselines(const Host& host)
    : m_host(host)
    , m_cloudFiles(host.files, host.cloud, host.clock, kCloudBaselinesFolder, QString()) {}

KeptBaseline KeptBaselines::kept(BaselineKind kind, const QString& folder, const QString& name) const {
    KeptBaseline found{kHomeId + name, name, kind};
    try {
        found.baseline = decodeMasterBaseline(m_host.files.read(folder + u'/' + name));
        found.isAnotherMacs = originOf(*found.baseline, identityOf(m_host.machine)) == BaselineOrigin::AnotherMac;
    } catch (const FileError& error) {
        found.state =
            error.cause() == FileError::Cause::NotDownloaded ? BaselineState::Coming : BaselineState::Unreadable;
    } catch (const MasterSystemBaselineError&) {
        found.state = BaselineState::Unreadable;
    }
    return found;
}

QList<KeptBaseline> KeptBaselines::archivesIn(const QString& folder, const QStringList& names) const {
    QList<KeptBaseline> archives;
    for (const QString& name : names) {
        archives.append(kept(BaselineKind::Archive, folder, name));
    }
    return archives;
}

QList<KeptBaseline> KeptBaselines::atHome() const {
    return withArchives({});
}

QList<KeptBaseline> KeptBaselines::withArchives(const QList<KeptBaseline>& inCloud) const {
    const QString folder = baselineFolderAtHome(m_host.machine);
    QList<KeptBaseline> all;
    const SnapshotManager snapshots(m_host.files, m_host.machine);
    if (snapshots.hasSnapshotFile()) {
        const std::optional<SystemSnapshot> local = snapshots.load();
        KeptBaseline snapshot{kSnapshotId, u"system_snapshot.json"_s, BaselineKind::Snapshot};
        snapshot.state = local ? BaselineState::Readable : BaselineState::Unreadable;
        snapshot.baseline =
            local ? std::optional(masterBaselineOf(*local, identityOf(m_host.machine), {})) : std::nullopt;
        all.append(snapshot);
    }
    for (const FirstBaselines::File& file : FirstBaselines(m_host.files, m_host.machine).all()) {
        all.append(kept(BaselineKind::First, folder, file.name));
    }
    QList<KeptBaseline> archives = archivesIn(folder, baselineNamesIn(folder, m_host.files)) + inCloud;
    sortArchives(archives);
    all.append(withoutCopies(archives));
    if (const std::optional<ChosenBaseline> chosen = ChosenBaselineFile(m_host.files, m_host.machine).load()) {
        KeptBaseline copy{kChosenId, u"chosen-baseline.json"_s, BaselineKind::Chosen};
        copy.baseline = chosen->baseline;
        copy.isAnotherMacs = originOf(chosen->baseline, identityOf(m_host.machine)) == BaselineOrigin::AnotherMac;
        const bool isElsewhere =
            std::any_of(all.begin(), all.end(), [&copy](const KeptBaseline& each) { return isSame(each, copy); });
        if (!isElsewhere) {
            all.append(copy);
        }
    }
    return all;
}

QStringList KeptBaselines::namesInCloud(const QString& folder) const {
    try {
        return archiveNames(m_host.cloud.list(folder));
    } catch (const FileError&) {
        return {}; // nothing was archived there yet
    }
}

QCoro::Task<QList<KeptBaseline>> KeptBaselines::all(std::function<void(const QList<KeptBaseline>&)> whileOthersCome) {
    const std::optional<QString> found = co_await m_cloudFiles.folder();
    if (!found) {
        co_return atHome();
    }
    const QString& folder = *found;
    const QStringList names = namesInCloud(folder);
    const auto inCloud = [this, folder, names] {
        QList<KeptBaseline> archives = archivesIn(folder, names);
        for (KeptBaseline& archive : archives) {
            archive.id = kCloudId + archive.fileName;
            archive.isAtHome = false;
            archive.isInCloud = true;
            // A name that only iCloud knows so far has no file.
            if (!archive.baseline && m_host.cloud.isUbiquitous(folder + u'/' + archive.fileName) &&
                !m_host.cloud.isCurrent(folder + u'/' + archive.fileName)) {
                archive.state = BaselineState::Coming;
            }
        }
        return withArchives(archives);
    };
    if (whileOthersCome) {
        whileOthersCome(inCloud());
    }
    QStringList paths;
    for (const QString& name : names) {
        paths.append(folder + u'/' + name);
    }
    co_await m_cloudFiles.downloadAll(paths);
    co_return inCloud();
}

QCoro::Task<std::optional<MasterSystemBaseline>> KeptBaselines::read(QString id) {
    if (id == kSnapshotId) {
        const std::optional<SystemSnapshot> local = SnapshotManager(m_host.files, m_host.machine).load();
        co_return local ? std::optional(masterBaselineOf(*local, identityOf(m_host.machine), {})) : std::nullopt;
    }
    if (id == kChosenId) {
        const std::optional<ChosenBaseline> chosen = ChosenBaselineFile(m_host.files, m_host.machine).load();
        co_return chosen ? std::optional(chosen->baseline) : std::nullopt;
    }
    const QString name = id.section(u'/', 1);
    if (id.startsWith(kHomeId)) {
        co_return baselineAt(baselineFolderAtHome(m_host.machine) + u'/' + name, m_host.files);
    }
    const std::optional<QString> folder = co_await m_cloudFiles.folder();
    if (!folder || !id.startsWith(kCloudId)) {
        co_return std::nullopt;
    }
    co_await m_cloudFiles.download(*folder + u'/' + name);
    co_return baselineAt(*folder + u'/' + name, m_host.files);
}

} // namespace quorvane
