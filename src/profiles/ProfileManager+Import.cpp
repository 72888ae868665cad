#include "platform/FileManager.h"
#include "profiles/ProfileManager.h"
#include "profiles/ProfileNames.h"

#include <QHash>

#include <utility>

using namespace Qt::StringLiterals;

namespace quorvane {

/// What an import knows of the store: each file by its profile, and the names that others can't take.
class ProfileManager::Import::Known {
public:
    /// Throws ProfileStoreError when two files hold one profile: it can't be told which one to replace.
    explicit Known(const Reading& reading)
        : baseNames(reading.baseNames()) {
        for (const StoredFile& file : reading.files()) {
            if (m_files.contains(file.id)) {
                const QString id = file.id.toString(QUuid::WithoutBraces).toUpper();
                throw ProfileStoreError(ProfileStoreError::Code::DuplicateId,
                                        u"Duplicate values for key: '%1'"_s.arg(id));
            }
            put(file);
        }
        // What they hold isn't known, and is the user's all the same.
        for (const QString& baseName : reading.m_unreadable) {
            ++m_uses[profileNameKey(baseName)];
        }
    }

    void put(const StoredFile& file) {
        m_files.insert(file.id, file);
        for (const QString& key : keysOf(file)) {
            ++m_uses[key];
        }
    }

    /// Gives the file of a profile, if there is one, and frees its names.
    std::optional<StoredFile> take(const QUuid& id) {
        if (!m_files.contains(id)) {
            return std::nullopt;
        }
        const StoredFile file = m_files.take(id);
        for (const QString& key : keysOf(file)) {
            if (--m_uses[key] == 0) {
                m_uses.remove(key);
            }
        }
        return file;
    }

    bool isTaken(const QString& name) const { return m_uses.contains(profileNameKey(name)); }

    QString freeName(const QString& base) const {
        const QStringList used = m_uses.keys();
        return uniqueProfileName(base, QSet<QString>(used.begin(), used.end()));
    }

    QSet<QString> baseNames; ///< in the folder

private:
    /// A file may tell another name than the one it has; both are in use.
    static QSet<QString> keysOf(const StoredFile& file) {
        return {profileNameKey(file.baseName), profileNameKey(file.name)};
    }

    QHash<QUuid, StoredFile> m_files;
    QHash<QString, int> m_uses;
};

ProfileManager::Import::Import(ProfileManager& store, const QList<UnifiedProfile>& profiles)
    : m_store(store)
    , m_incoming(profiles)
    , m_reading(store) {}
ProfileManager::Import::Import(Import&& other) noexcept = default;
ProfileManager::Import::~Import() = default;

ProfileManager::Import ProfileManager::beginImport(const QList<UnifiedProfile>& profiles) {
    return Import(*this, profiles);
}

ProfileImportResult ProfileManager::importProfiles(const QList<UnifiedProfile>& profiles) {
    Import merge = beginImport(profiles);
    while (merge.step()) {
    }
    return merge.result();
}

bool ProfileManager::Import::step() {
    if (m_known) {
        take(m_incoming.takeFirst());
    } else if (!m_reading.step()) {
        m_known = std::make_unique<Known>(m_reading);
    }
    return !m_known || !m_incoming.isEmpty();
}

void ProfileManager::Import::take(const UnifiedProfile& incoming) {
    UnifiedProfile profile = incoming;
    profile.name = savedName(incoming.name);
    const bool isSecond = m_taken.contains(incoming.id);
    m_taken.insert(incoming.id);
    if (isSecond) {
        profile.id = QUuid::createUuid();
    }
    const std::optional<StoredFile> replaced = m_known->take(profile.id);
    const bool keepsItsFile = replaced && replaced->baseName == profile.name;
    if (isSecond || (!keepsItsFile && m_known->isTaken(profile.name))) {
        profile.name = m_known->freeName(profile.name);
        m_result.renamed.append(incoming.name + u" → "_s + profile.name);
    }
    const std::optional<QString> former = replaced ? std::optional(replaced->baseName) : std::nullopt;
    m_known->put(m_store.write(profile, former, m_known->baseNames));
    ++(replaced ? m_result.updated : m_result.imported);
}

} // namespace quorvane
