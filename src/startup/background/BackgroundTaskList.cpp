#include "startup/background/BackgroundTaskList.h"

#include <algorithm>
#include <utility>

namespace quorvane {

BackgroundTaskList::BackgroundTaskList(QList<BackgroundTaskItem> items)
    : m_items(std::move(items)) {
    m_places.reserve(m_items.size());
    for (qsizetype place = 0; place < m_items.size(); ++place) {
        const std::optional<QString> label = backgroundItemLabel(m_items.at(place));
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

bool BackgroundTaskList::isProtected(const BackgroundTaskItem& item) const {
    const BackgroundTaskItem* parent = parentOf(item);
    return isProtectedRecord(item) || (parent != nullptr && isProtectedRecord(*parent));
}

QList<qsizetype> BackgroundTaskList::placesOf(const QString& label) const {
    QList<qsizetype> places = m_places.values(label);
    std::sort(places.begin(), places.end());
    return places;
}

QList<BackgroundTaskItem> BackgroundTaskList::itemsWithLabel(const QString& label) const {
    QList<BackgroundTaskItem> found;
    for (const qsizetype place : placesOf(label)) {
        found.append(m_items.at(place));
    }
    return found;
}

bool BackgroundTaskList::isActive(const QString& label) const {
    const QList<qsizetype> places = placesOf(label);
    return std::any_of(places.begin(), places.end(),
                       [this](qsizetype place) { return quorvane::isActive(m_items.at(place)); });
}

void BackgroundTaskList::markDisabled(const QString& label) {
    markDisabled(label, [](const BackgroundTaskItem&) { return true; });
}

void BackgroundTaskList::markDisabled(const QString& label,
                                      const std::function<bool(const BackgroundTaskItem&)>& isOff) {
    for (const qsizetype place : placesOf(label)) {
        if (isOff(m_items.at(place))) {
            m_items[place].disposition = disabledDisposition();
        }
    }
}

QStringList BackgroundTaskList::dispositions(const QString& label) const {
    QStringList texts;
    for (const qsizetype place : placesOf(label)) {
        texts.append(m_items.at(place).disposition);
    }
    return texts;
}

void BackgroundTaskList::setDispositions(const QString& label, const QStringList& dispositions) {
    const QList<qsizetype> places = placesOf(label);
    for (qsizetype index = 0; index < std::min(places.size(), dispositions.size()); ++index) {
        m_items[places.at(index)].disposition = dispositions.at(index);
    }
}

} // namespace quorvane
