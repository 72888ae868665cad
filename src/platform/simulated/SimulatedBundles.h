#pragma once

#include "platform/Bundles.h"
#include "simulator/Mac.h"

#include <QDateTime>
#include <QHash>

#include <mutex>

namespace quorvane {

class PropertyLists;

/// The bundles on a simulated Mac's disk. An Info dictionary is "{bundle}/Contents/Info.plist".
///
/// Installed applications are the ones where macOS keeps them, in any case of their identifiers. They are indexed at
/// the first question, and again at a question after a folder of applications has changed. So any number of questions
/// costs a few looks at the folders' times each. An application whose Info.plist comes or changes later than its folder
/// is found anew when the next one is installed or removed.
class SimulatedBundles final : public Bundles {
public:
    /// @param propertyLists  of the same Mac
    SimulatedBundles(const macsim::Mac& mac, const PropertyLists& propertyLists)
        : m_mac(mac)
        , m_propertyLists(propertyLists) {}

    std::optional<QVariantMap> infoDictionary(const QString& bundlePath) const override;
    std::optional<QVariantMap> infoDictionaryWithIdentifier(const QString& bundleIdentifier) const override;

private:
    /// Where the applications are by their identifiers in lower case, and what the folders looked like before.
    struct Index {
        QHash<QString, QString> paths;
        QList<QDateTime> folderTimes;
        QDateTime made;
    };
    Index makeIndex() const;
    bool isCurrent(const Index& index) const;
    /// Empty when there is no application with this identifier.
    QString pathOf(const QString& bundleIdentifier) const;

    const macsim::Mac& m_mac;
    const PropertyLists& m_propertyLists;
    mutable std::mutex m_mutex;
    mutable std::optional<Index> m_index;
};

} // namespace quorvane
