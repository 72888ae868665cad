#pragma once

#include "fakes/MemoryFileManager.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileManager.h"

namespace quorvane {

/// A profile store on a volume in memory, and ways to look at it.
struct ProfileStore {
    explicit ProfileStore(MemoryFileManager::Case names = MemoryFileManager::Case::Sensitive);

    const QString supportFolder = QStringLiteral("/Users/alex/Library/Application Support/Quorvane");
    const QString folder = supportFolder + QStringLiteral("/UnifiedProfiles");
    MemoryFileManager files;
    ProfileManager manager{files, folder};

    QString pathOf(const QString& fileName) const;
    void addFile(const QString& fileName, const UnifiedProfile& profile);
    QStringList fileNames() const;
    QByteArray bytesOf(const QString& fileName) const;
    UnifiedProfile profileIn(const QString& fileName) const;
};

/// A profile whose identity is a number. @param day  of January 2026 on which it was made
UnifiedProfile numberedProfile(int number, const QString& name, int day = 1);

/// The names of profiles, in order.
QStringList namesOf(const QList<UnifiedProfile>& profiles);

} // namespace quorvane
