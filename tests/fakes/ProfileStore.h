#pragma once

#include "fakes/MemoryFileManager.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileManager.h"

namespace quorvane {

/// A profile store on a volume in memory, and ways to look at it.
struct ProfileStore {
    explicit ProfileStore(MemoryFileManager::Case names = MemoryFileManager::Case::Sensitive)
        : files(names) {
        files.addFolders(folder);
    }

    const QString supportFolder = QStringLiteral("/Users/alex/Library/Application Support/Quorvane");
    const QString folder = supportFolder + QStringLiteral("/UnifiedProfiles");
    MemoryFileManager files;
    ProfileManager manager{files, folder};

    QString pathOf(const QString& fileName) const { return folder + u'/' + fileName; }
    void addFile(const QString& fileName, const UnifiedProfile& profile) {
        files.addFile(pathOf(fileName), encodeProfile(profile));
    }
    QStringList fileNames() const { return files.list(folder); }
    QByteArray bytesOf(const QString& fileName) const { return files.read(pathOf(fileName)); }
    UnifiedProfile profileIn(const QString& fileName) const { return decodeProfile(bytesOf(fileName)); }
};

/// A profile whose identity is a number. @param day  of January 2026 on which it was made
inline UnifiedProfile numberedProfile(int number, const QString& name, int day = 1) {
    UnifiedProfile profile;
    profile.id = QUuid::fromString(QStringLiteral("00000000-0000-4000-8000-%1").arg(number, 12, 10, QChar(u'0')));
    profile.name = name;
    profile.dateCreated = QDateTime(QDate(2026, 1, day), QTime(12, 0), Qt::UTC);
    return profile;
}

/// The names of profiles, in order.
inline QStringList namesOf(const QList<UnifiedProfile>& profiles) {
    QStringList names;
    for (const UnifiedProfile& profile : profiles)
        names.append(profile.name);
    return names;
}

} // namespace quorvane
