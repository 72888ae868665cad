#pragma once

#include "startup/background/BackgroundTaskItem.h"

#include "startup/launchd/LaunchPlist.h"

#include <QHash>

namespace quorvane {

class PropertyLists;

/// The background task list as the last dump has shown it. What launchd was told since isn't in it, see BackgroundState.h.
class BackgroundTaskList {
public:
    /// @param bundledDaemons  plists of daemons that applications registered from their bundles, by path; see bundledDaemons()
    explicit BackgroundTaskList(QList<BackgroundTaskItem> items, QHash<QString, LaunchPlist> bundledDaemons = {});

    const QList<BackgroundTaskItem>& items() const { return m_items; }
    bool isEmpty() const { return m_items.isEmpty(); }
    /// In the order of the dump.
    QList<BackgroundTaskItem> itemsWithLabel(const QString& label) const;
    /// Those whose file is a plist of that name, wherever it lies.
    QList<BackgroundTaskItem> itemsWithPlist(const QString& fileName) const;
    bool contains(const QString& label) const { return m_places.contains(label); }
    /// The first application whose label is the record's parent, in any case; null where there is none.
    const BackgroundTaskItem* parentOf(const BackgroundTaskItem& item) const;
    /// Where the record's file is: as it tells, or inside its parent where it tells that.
    std::optional<QString> pathOf(const BackgroundTaskItem& item) const;
    /// What the plist says from which the record's application registered it; none for other records.
    std::optional<LaunchPlist> bundledDaemon(const BackgroundTaskItem& item) const;
    /// True for the label of something that an organization manages, and for the name of a launch plist of its.
    bool isManagedLabel(const QString& label) const;
    bool isManagedPlist(const QString& fileName) const;
    /// True for audio software: by the record's own text, or by its parent's.
    bool isProtected(const BackgroundTaskItem& item) const;

private:
    /// In the order of the dump.
    QList<BackgroundTaskItem> itemsAt(QList<qsizetype> places) const;

    QList<BackgroundTaskItem> m_items;
    QMultiHash<QString, qsizetype> m_places;       ///< of the records, by label
    QMultiHash<QString, qsizetype> m_plistPlaces;  ///< of the records of plists, by file name
    QHash<QString, LaunchPlist> m_bundledDaemons;  ///< by path
    QHash<QString, qsizetype> m_applicationPlaces; ///< of the applications, by label with its case folded
};

/// Reads the plists of the daemons that applications registered from their bundles. Any thread.
QHash<QString, LaunchPlist> bundledDaemons(const BackgroundTaskList& list, const PropertyLists& propertyLists);

} // namespace quorvane
