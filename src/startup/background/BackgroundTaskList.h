#pragma once

#include "startup/background/BackgroundTaskItem.h"

#include <QHash>
#include <QStringList>

#include <functional>

namespace quorvane {

/// The background task list as the program knows it: what the dump said, and what was switched off since.
class BackgroundTaskList {
public:
    explicit BackgroundTaskList(QList<BackgroundTaskItem> items);

    const QList<BackgroundTaskItem>& items() const { return m_items; }
    bool isEmpty() const { return m_items.isEmpty(); }
    /// In the order of the dump.
    QList<BackgroundTaskItem> itemsWithLabel(const QString& label) const;
    bool contains(const QString& label) const { return m_places.contains(label); }
    /// The first application whose label is the record's parent, in any case; null where there is none.
    const BackgroundTaskItem* parentOf(const BackgroundTaskItem& item) const;
    /// Where the record's file is: as it tells, or inside its parent where it tells that.
    std::optional<QString> pathOf(const BackgroundTaskItem& item) const;
    /// True for audio software: by the record's own text, or by its parent's.
    bool isProtected(const BackgroundTaskItem& item) const;
    /// True when any record with the label is on.
    bool isActive(const QString& label) const;
    /// No dump is taken after an item was switched off: its records show as the next dump will.
    void markDisabled(const QString& label);
    /// The same for those of its records of which it is true.
    void markDisabled(const QString& label, const std::function<bool(const BackgroundTaskItem&)>& isOff);
    /// Of the records with the label, in the order of the dump.
    QStringList dispositions(const QString& label) const;
    /// @param dispositions  what `dispositions` gave for the same label
    void setDispositions(const QString& label, const QStringList& dispositions);

private:
    /// In the order of the dump.
    QList<qsizetype> placesOf(const QString& label) const;

    QList<BackgroundTaskItem> m_items;
    QMultiHash<QString, qsizetype> m_places;       ///< of the records, by label
    QHash<QString, qsizetype> m_applicationPlaces; ///< of the applications, by label with its case folded
};

} // namespace quorvane
