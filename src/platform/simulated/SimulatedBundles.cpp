#include "platform/simulated/SimulatedBundles.h"

#include "platform/PropertyLists.h"
#include "simulator/ApplicationFinder.h"

#include <algorithm>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

/// A host's file system counts time in ticks of up to 10 ms: what changed so shortly before the index was made may
/// change once more and keep its time.
constexpr qint64 kCoarsestTickInMilliseconds = 20;

/// A folder that is missing has an invalid time.
QList<QDateTime> folderTimes(const macsim::Mac& mac) {
    const macsim::Volume volume = mac.volume(macsim::Actor::User);
    QList<QDateTime> times;
    const QStringList folders = macsim::applicationFolders(mac);
    for (const QString& folder : folders) {
        times.append(volume.isFolder(folder) ? volume.modificationTime(folder) : QDateTime());
    }
    return times;
}

} // namespace

SimulatedBundles::Index SimulatedBundles::makeIndex() const {
    Index index;
    index.made = QDateTime::currentDateTimeUtc();
    index.folderTimes = folderTimes(m_mac); // before the look inside, so that a change during it isn't missed
    const std::vector<macsim::Application> applications =
        macsim::installedApplications(m_mac, m_mac.volume(macsim::Actor::User));
    for (const macsim::Application& application : applications) {
        const QString key = application.bundleIdentifier.toCaseFolded();
        if (!key.isEmpty() && !index.paths.contains(key)) {
            index.paths.insert(key, application.path);
        }
    }
    return index;
}

bool SimulatedBundles::isCurrent(const Index& index) const {
    const auto isSettled = [&index](const QDateTime& time) {
        return !time.isValid() || time.msecsTo(index.made) > kCoarsestTickInMilliseconds;
    };
    return index.folderTimes == folderTimes(m_mac) &&
           std::all_of(index.folderTimes.begin(), index.folderTimes.end(), isSettled);
}

QString SimulatedBundles::pathOf(const QString& bundleIdentifier) const {
    const std::lock_guard lock(m_mutex);
    const QString key = bundleIdentifier.toCaseFolded();
    if (!m_index || !isCurrent(*m_index)) {
        m_index = makeIndex();
    }
    return m_index->paths.value(key);
}

std::optional<QVariantMap> SimulatedBundles::infoDictionary(const QString& bundlePath) const {
    if (!m_mac.volume(macsim::Actor::User).isFolder(bundlePath)) {
        return std::nullopt;
    }
    return m_propertyLists.dictionary(bundlePath + u"/Contents/Info.plist"_s).value_or(QVariantMap());
}

std::optional<QVariantMap> SimulatedBundles::infoDictionaryWithIdentifier(const QString& bundleIdentifier) const {
    const QString path = pathOf(bundleIdentifier);
    return path.isEmpty() ? std::nullopt : infoDictionary(path);
}

} // namespace quorvane
