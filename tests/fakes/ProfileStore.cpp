#include "fakes/ProfileStore.h"

namespace quorvane {

ProfileStore::ProfileStore(MemoryFileManager::Case names)
    : files(names) {
    files.addFolders(folder);
}

QString ProfileStore::pathOf(const QString& fileName) const {
    return folder + u'/' + fileName;
}

void ProfileStore::addFile(const QString& fileName, const UnifiedProfile& profile) {
    files.addFile(pathOf(fileName), encodeProfile(profile));
}

QStringList ProfileStore::fileNames() const {
    return files.list(folder);
}

QByteArray ProfileStore::bytesOf(const QString& fileName) const {
    return files.read(pathOf(fileName));
}

UnifiedProfile ProfileStore::profileIn(const QString& fileName) const {
    return decodeProfile(bytesOf(fileName));
}

UnifiedProfile numberedProfile(int number, const QString& name, int day) {
    UnifiedProfile profile;
    profile.id = QUuid::fromString(QStringLiteral("00000000-0000-4000-8000-%1").arg(number, 12, 10, QChar(u'0')));
    profile.name = name;
    profile.dateCreated = QDateTime(QDate(2026, 1, day), QTime(12, 0), Qt::UTC);
    return profile;
}

QStringList namesOf(const QList<UnifiedProfile>& profiles) {
    QStringList names;
    for (const UnifiedProfile& profile : profiles) {
        names.append(profile.name);
    }
    return names;
}

} // namespace quorvane
