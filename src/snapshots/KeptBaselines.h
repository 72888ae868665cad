#pragma once

#include "core/CloudFiles.h"
#include "snapshots/MasterSystemBaseline.h"

#include <QList>
#include <QString>

#include <functional>
#include <optional>

namespace QCoro {
template <typename T>
class Task;
}

namespace quorvane {

struct Host;

/// Something that a Mac could go back to.
struct KeptBaseline {
    enum class Kind {
        Snapshot, ///< the latest local snapshot
        First,    ///< what the program captured by itself
        Archive,  ///< a protected master baseline
        Chosen,   ///< the copy of one that is nowhere else any more
    };
    enum class State {
        Readable,
        Coming, ///< iCloud alone has its content
        Unreadable,
    };

    QString id;       ///< by which it is read again
    QString fileName; ///< what there is to say of one that can't be read
    Kind kind = Kind::Archive;
    State state = State::Readable;
    bool isAtHome = true;
    bool isInCloud = false;
    bool isAnotherMacs = false;
    std::optional<MasterSystemBaseline> baseline{}; ///< of a readable one

    bool operator==(const KeptBaseline&) const = default;
};

/// Everything that there is to go back to: the snapshot, what was captured unasked, every archive at home and in iCloud Drive. It
/// changes nothing. Main thread; it outlives its tasks.
class KeptBaselines {
public:
    explicit KeptBaselines(const Host& host);

    /// What lies at home, in the order of a list: the snapshot, what was captured unasked, the archives from new to old.
    QList<KeptBaseline> atHome() const;
    /// With what is in iCloud, which is waited for as long as it may come (five seconds). An archive that is in both places with
    /// the same content is one.
    /// @param whileOthersCome  called once before that
    QCoro::Task<QList<KeptBaseline>> all(std::function<void(const QList<KeptBaseline>&)> whileOthersCome = {});
    /// Reads one afresh. None where it is gone, or can't be read or downloaded any more.
    QCoro::Task<std::optional<MasterSystemBaseline>> read(QString id);

private:
    KeptBaseline kept(KeptBaseline::Kind kind, const QString& folder, const QString& name) const;
    QList<KeptBaseline> archivesIn(const QString& folder, const QStringList& names) const;
    QList<KeptBaseline> withArchives(const QList<KeptBaseline>& inCloud) const;
    QStringList namesInCloud(const QString& folder) const;

    const Host& m_host;
    CloudFiles m_cloudFiles;
};

} // namespace quorvane
