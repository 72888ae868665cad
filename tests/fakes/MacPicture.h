#pragma once

#include "simulator/Mac.h"
#include "simulator/OwnerMarks.h"
#include "simulator/PropertyList.h"
#include "simulator/PropertyListText.h"

#include <QDirIterator>
#include <QFile>
#include <QHash>
#include <QMap>
#include <QString>

#include <optional>

namespace macsim {

/// One entry in which two pictures of a Mac differ.
struct MacDifference {
    QString key;
    std::optional<QString> before; ///< none for what is new
    std::optional<QString> after;  ///< none for what is gone

    QString line() const;
};

/// A whole simulated Mac as a table, for telling what a flow has changed: every folder, link and file, every key of a
/// property list, every value of the state behind the disk, and the owner of what doesn't belong to whom its place
/// says. Login items, processes and background tasks stand by their names and identifiers, so that one that goes doesn't
/// shift the others. The journal is no part of the Mac, nor is what its user answered when the system asked whether the
/// program may control another application: that is no change of the program's. The logs that the program keeps are left out,
/// whose names tell when it ran.
class MacPicture {
public:
    explicit MacPicture(const QString& hostFolder);

    /// Sorted by their keys.
    QList<MacDifference> differencesSince(const MacPicture& before) const;

    /// One line for each difference, sorted: "+ key: value", "- key: value", "~ key: old → new".
    QString changesSince(const MacPicture& before) const;

private:
    void add(const QFileInfo& info);
    void addFile(const QString& path, const QString& hostPath);
    void addPropertyList(const QString& path, const QByteArray& bytes);
    void addState(const QString& subject, const Json& state);

    /// The second record of a name stands under "{name} #2".
    void addRecords(const QString& subject, const Json& records, const char* nameKey);
    void addValues(const QString& subject, const Json& state);

    QString m_folder;
    QMap<QString, QString> m_entries;
};

} // namespace macsim
