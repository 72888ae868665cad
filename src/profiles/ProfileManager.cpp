#include "profiles/ProfileManager.h"

#include "core/Collation.h"
#include "core/JsonErrors.h"
#include "platform/FileManager.h"
#include "platform/Machine.h"
#include "profiles/ProfileJson.h"
#include "profiles/ProfileNames.h"

#include <QHash>
#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

const QString kExtension = u".json"_s;

/// The name under which a profile is saved. Throws ProfileStoreError.
QString savedName(const QString& name) {
    const QString sanitized = sanitizedProfileName(name);
    if (!isProfileFileName(sanitized)) {
        throw ProfileStoreError(ProfileStoreError::Code::InvalidName, u"Profile name is invalid."_s);
    }
    return sanitized;
}

/// True for two names that a volume which ignores case and composition takes for one.
bool mayBeOneFile(const QString& left, const QString& right) {
    const auto form = QString::NormalizationForm_C;
    return left.normalized(form).compare(right.normalized(form), Qt::CaseInsensitive) == 0;
}

/// Does what may fail without harm; true when it didn't fail.
template <typename Action>
bool attempt(Action action) {
    try {
        action();
        return true;
    } catch (const FileError&) {
        return false;
    }
}

} // namespace

/// What a merge knows of the store: each file by its profile, and the names that other profiles can't take.
class ProfileManager::ImportStore {
public:
    /// Throws ProfileStoreError when two files hold one profile: it can't be told which one to replace.
    explicit ImportStore(const QList<StoredFile>& files) {
        for (const StoredFile& file : files) {
            if (m_files.contains(file.id)) {
                const QString id = file.id.toString(QUuid::WithoutBraces).toUpper();
                throw ProfileStoreError(ProfileStoreError::Code::DuplicateId,
                                        u"Duplicate values for key: '%1'"_s.arg(id));
            }
            put(file);
        }
    }

    void put(const StoredFile& file) {
        m_files.insert(file.id, file);
        for (const QString& key : keysOf(file)) {
            ++m_uses[key];
        }
    }

    /// Gives the files of a profile, none or one, and frees their names.
    QList<StoredFile> take(const QUuid& id) {
        if (!m_files.contains(id)) {
            return {};
        }
        const StoredFile file = m_files.take(id);
        for (const QString& key : keysOf(file)) {
            if (--m_uses[key] == 0) {
                m_uses.remove(key);
            }
        }
        return {file};
    }

    bool isTaken(const QString& name) const { return m_uses.contains(profileNameKey(name)); }

    QString freeName(const QString& base) const {
        const QStringList used = m_uses.keys();
        return uniqueProfileName(base, QSet<QString>(used.begin(), used.end()));
    }

private:
    /// A file may tell another name than the one it has; both are in use.
    static QSet<QString> keysOf(const StoredFile& file) {
        return {profileNameKey(file.baseName), profileNameKey(file.name),
                profileNameKey(sanitizedProfileName(file.name))};
    }

    QHash<QUuid, StoredFile> m_files;
    QHash<QString, int> m_uses;
};

QString profilesDirectory(const Machine& machine) {
    return machine.applicationSupportFolder() + u"/Quorvane/UnifiedProfiles"_s;
}

ProfileManager::ProfileManager(FileManager& files, QString profilesDirectory)
    : m_files(files)
    , m_profilesDirectory(std::move(profilesDirectory)) {}

QString ProfileManager::profilesDirectory() const {
    attempt([this] { m_files.createFolders(m_profilesDirectory); });
    return m_profilesDirectory;
}

void ProfileManager::saveProfile(const UnifiedProfile& profile) {
    UnifiedProfile saved = profile;
    saved.name = savedName(profile.name);
    QList<StoredFile> filesOfProfile = storedFiles();
    filesOfProfile.removeIf([&saved](const StoredFile& file) { return file.id != saved.id; });
    write(saved, filesOfProfile);
}

std::optional<UnifiedProfile> ProfileManager::loadProfile(const QString& named) const {
    if (isProfileFileName(named)) {
        if (auto profile = readProfile(named)) {
            return profile;
        }
    }
    for (const UnifiedProfile& profile : listProfiles()) {
        if (localizedCaseInsensitiveEqual(profile.name, named)) {
            return profile;
        }
    }
    return std::nullopt;
}

QList<UnifiedProfile> ProfileManager::listProfiles() const {
    return profilesOf(storedProfiles());
}

ProfileManager::Reading ProfileManager::reading() const {
    return Reading(*this);
}

bool ProfileManager::Reading::step() {
    if (!m_names) {
        m_names.emplace();
        attempt([this] { m_names = m_store.baseNames(); });
    } else if (!m_names->isEmpty()) {
        const QString baseName = m_names->takeFirst();
        if (auto profile = m_store.readProfile(baseName)) {
            m_stored.append({{baseName, profile->id, profile->name}, *std::move(profile)});
        } else {
            m_unreadable.append(baseName);
        }
    }
    return !m_names->isEmpty();
}

ProfileListing ProfileManager::Reading::listing() const {
    return {profilesOf(newestFirst(m_stored)), m_unreadable};
}

QList<UnifiedProfile> ProfileManager::profilesOf(QList<StoredProfile> stored) {
    QList<UnifiedProfile> profiles;
    for (StoredProfile& each : stored) {
        profiles.append(std::move(each.profile));
    }
    return profiles;
}

void ProfileManager::deleteProfile(const QString& named) {
    if (removeFile(named)) {
        return;
    }
    const std::optional<UnifiedProfile> found = loadProfile(named);
    if (!found || found->name == named) {
        return;
    }
    for (const StoredFile& file : storedFiles()) {
        // A file of that name that tells another one is another profile's.
        if (file.baseName == found->name && file.name == found->name) {
            removeFile(file.baseName);
        }
    }
}

ProfileImportResult ProfileManager::importProfiles(const QList<UnifiedProfile>& profiles) {
    ImportStore store(storedFiles());
    ProfileImportResult result;
    for (const UnifiedProfile& incoming : profiles) {
        UnifiedProfile profile = incoming;
        profile.name = savedName(incoming.name);
        const QList<StoredFile> replaced = store.take(profile.id);
        const bool keepsItsFile = !replaced.isEmpty() && replaced.first().baseName == profile.name;
        if (!keepsItsFile && store.isTaken(profile.name)) {
            profile.name = store.freeName(profile.name);
            result.renamed.append(incoming.name + u" → "_s + profile.name);
        }
        store.put(write(profile, replaced));
        ++(replaced.isEmpty() ? result.imported : result.updated);
    }
    return result;
}

QString ProfileManager::pathOf(const QString& baseName) const {
    return m_profilesDirectory + u'/' + baseName + kExtension;
}

/// Of the profile files, in the order of the folder. Throws FileError.
QStringList ProfileManager::baseNames() const {
    QStringList names;
    for (const QString& entry : m_files.list(profilesDirectory())) {
        if (entry.endsWith(kExtension) && entry != kExtension) {
            names.append(entry.chopped(kExtension.size()));
        }
    }
    return names;
}

std::optional<UnifiedProfile> ProfileManager::readProfile(const QString& baseName) const {
    try {
        return decodeProfile(m_files.read(pathOf(baseName)));
    } catch (const FileError&) {
        return std::nullopt;
    } catch (const DecodingError&) {
        return std::nullopt;
    }
}

/// Newest first. Empty when the folder can't be listed.
QList<ProfileManager::StoredProfile> ProfileManager::storedProfiles() const {
    Reading all(*this);
    while (all.step()) {
    }
    return newestFirst(std::move(all.m_stored));
}

QList<ProfileManager::StoredProfile> ProfileManager::newestFirst(QList<StoredProfile> stored) {
    std::stable_sort(stored.begin(), stored.end(), [](const StoredProfile& left, const StoredProfile& right) {
        return left.profile.dateCreated > right.profile.dateCreated;
    });
    return stored;
}

QList<ProfileManager::StoredFile> ProfileManager::storedFiles() const {
    QList<StoredFile> files;
    for (const StoredProfile& stored : storedProfiles()) {
        files.append(stored.file);
    }
    return files;
}

/// @param profile         under the name it is saved by
/// @param filesOfProfile  the files that held it until now
ProfileManager::StoredFile ProfileManager::write(const UnifiedProfile& profile,
                                                 const QList<StoredFile>& filesOfProfile) {
    m_files.writeAtomically(pathOf(profile.name), encodeProfile(profile));
    // The profile is saved; an old spelling or an old file that stays is no loss.
    attempt([&] { giveFileItsSpelling(profile.name); });
    attempt([&] { removeFormerFiles(profile.name, filesOfProfile); });
    return {profile.name, profile.id, profile.name};
}

/// A volume that ignores case writes "Live" into an existing "live" and keeps the old spelling.
void ProfileManager::giveFileItsSpelling(const QString& baseName) {
    const QStringList names = baseNames();
    if (names.contains(baseName)) {
        return;
    }
    for (const QString& name : names) {
        if (mayBeOneFile(name, baseName)) {
            m_files.move(pathOf(name), pathOf(baseName));
            return;
        }
    }
}

void ProfileManager::removeFormerFiles(const QString& baseName, const QList<StoredFile>& filesOfProfile) {
    const QStringList names = baseNames();
    const bool isOnly = filesOfProfile.size() == 1;
    for (const StoredFile& file : filesOfProfile) {
        // A copy that the user made beside the profile's own file bears another name than it tells; it stays.
        const bool isFormerOwn = file.name != baseName && file.baseName == sanitizedProfileName(file.name);
        const bool isFormer = isOnly || isFormerOwn;
        const bool isOtherFile = names.contains(baseName) || !mayBeOneFile(file.baseName, baseName);
        if (file.baseName != baseName && names.contains(file.baseName) && isFormer && isOtherFile) {
            attempt([&] { m_files.remove(pathOf(file.baseName)); });
        }
    }
}

/// True when the file was there and is gone.
bool ProfileManager::removeFile(const QString& baseName) {
    return isProfileFileName(baseName) && attempt([&] { m_files.remove(pathOf(baseName)); });
}

} // namespace quorvane
