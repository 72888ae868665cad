#include "startup/background/BackgroundTaskList.h"

#include "core/Paths.h"

#include <algorithm>
#include <utility>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

bool isManagedOne(const QList<BackgroundTaskItem>& records) {
    return std::any_of(records.begin(), records.end(), isManagedRecord);
}

} // namespace

BackgroundTaskList::BackgroundTaskList(QList<BackgroundTaskItem> items, QHash<QString, LaunchPlist> bundledDaemons)
    : m_items(std::move(items))
    , m_bundledDaemons(std::move(bundledDaemons)) {
    m_places.reserve(m_items.size());
    for (qsizetype place = 0; place < m_items.size(); ++place) {
        const std::optional<QString> label = backgroundItemLabel(m_items.at(place));
        const std::optional<QString> path = recordedPath(m_items.at(place));
        if (path && isLaunchPlistName(lastPathComponent(*path))) {
            m_plistPlaces.insert(lastPathComponent(*path), place);
        }
        if (!label) {
            continue;
        }
        m_places.insert(*label, place);
        if (isApplicationRecord(m_items.at(place)) && !m_applicationPlaces.contains(label->toCaseFolded())) {
            m_applicationPlaces.insert(label->toCaseFolded(), place);
        }
    }
}

const BackgroundTaskItem* BackgroundTaskList::parentOf(const BackgroundTaskItem& item) const {
    const QString label = identifierLabel(item.parentIdentifier.value_or(QString())).toCaseFolded();
    const auto place = m_applicationPlaces.constFind(label);
    return label.isEmpty() || place == m_applicationPlaces.constEnd() ? nullptr : &m_items.at(*place);
}

std::optional<QString> BackgroundTaskList::pathOf(const BackgroundTaskItem& item) const {
    const std::optional<QString> path = recordedPath(item);
    const BackgroundTaskItem* parent = parentOf(item);
    if (path || parent == nullptr || item.url.value_or(QString()).isEmpty()) {
        return path;
    }
    const std::optional<QString> bundle = recordedPath(*parent);
    return bundle ? std::optional(*bundle + u'/' + *item.url) : std::nullopt;
}

std::optional<LaunchPlist> BackgroundTaskList::bundledDaemon(const BackgroundTaskItem& item) const {
    const auto plist = m_bundledDaemons.constFind(pathOf(item).value_or(QString()));
    return plist == m_bundledDaemons.constEnd() ? std::nullopt : std::optional(*plist);
}

bool BackgroundTaskList::isManagedLabel(const QString& label) const {
    return isManagedOne(itemsWithLabel(label));
}

bool BackgroundTaskList::isManagedPlist(const QString& fileName) const {
    return isManagedOne(itemsWithPlist(fileName)) || isManagedLabel(nameInPath(fileName));
}

bool BackgroundTaskList::isProtected(const BackgroundTaskItem& item) const {
    const BackgroundTaskItem* parent = parentOf(item);
    return isProtectedRecord(item) || (parent != nullptr && isProtectedRecord(*parent));
}

QList<BackgroundTaskItem> BackgroundTaskList::itemsAt(QList<qsizetype> places) const {
    std::sort(places.begin(), places.end());
    QList<BackgroundTaskItem> found;
    for (const qsizetype place : places) {
        found.append(m_items.at(place));
    }
    return found;
}

QList<BackgroundTaskItem> BackgroundTaskList::itemsWithLabel(const QString& label) const {
    return itemsAt(m_places.values(label));
}

QList<BackgroundTaskItem> BackgroundTaskList::itemsWithPlist(const QString& fileName) const {
    return itemsAt(m_plistPlaces.values(fileName));
}

QHash<QString, LaunchPlist> bundledDaemons(const BackgroundTaskList& list, const PropertyLists& propertyLists) {
    QHash<QString, LaunchPlist> plists;
    for (const BackgroundTaskItem& item : list.items()) {
        const std::optional<QString> path = list.pathOf(item);
        if (isDaemonRecord(item) && path && parentFolder(*path) != u"/Library/LaunchDaemons"_s) {
            LaunchFolder folder;
            folder.path = parentFolder(*path);
            folder.isDaemons = true;
            plists.insert(*path, readLaunchPlist(folder, lastPathComponent(*path), propertyLists));
        }
    }
    return plists;
}

} // namespace quorvane
