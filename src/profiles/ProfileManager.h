#pragma once

#include "profiles/UnifiedProfile.h"

#include <QList>
#include <QSet>
#include <QString>
#include <QStringList>

#include <exception>
#include <memory>
#include <optional>

namespace quorvane {

class FileManager;
class Machine;

/// Where this user's profiles are saved.
QString profilesDirectory(const Machine& machine);

/// What the store refuses.
class ProfileStoreError : public std::exception {
public:
    /// The values are the error codes of the domain "ProfileManager".
    enum class Code { InvalidName = 1, DuplicateId = 2 };

    ProfileStoreError(Code code, const QString& text)
        : m_code(code)
        , m_text(text.toUtf8()) {}

    Code code() const { return m_code; }
    QString message() const { return QString::fromUtf8(m_text); }
    const char* what() const noexcept override { return m_text.constData(); }

private:
    Code m_code;
    QByteArray m_text;
};

struct ProfileImportResult {
    int imported = 0;    ///< new profiles written
    int updated = 0;     ///< existing profiles replaced
    QStringList renamed; ///< each "{old name} → {new name}"

    bool operator==(const ProfileImportResult&) const = default;
};

/// What the folder of profiles holds.
struct ProfileListing {
    QList<UnifiedProfile> profiles; ///< newest first
    QStringList fileNames;          ///< of their files, in the same order, without ".json"
    QStringList unreadable;         ///< names, without ".json", of files that hold no profile that can be read
};

/// The saved profiles: one file "{name}.json" for each, in one folder. Holds no list; every call goes to the
/// disk.
///
/// A name is not a path. What a caller or a file calls a profile only ever names a file in the folder, and
/// files are otherwise reached by the names under which the folder lists them. Saving loses nothing: a new
/// file is in place before an old one goes. Two names are the same where their profileNameKey is.
class ProfileManager {
public:
    /// @param profilesDirectory  as the Mac sees it; created when it is needed
    ProfileManager(FileManager& files, QString profilesDirectory);

    /// The folder, created with its parents; a failure to create it is left to the operation that follows.
    QString profilesDirectory() const;

    /// Writes the profile under its sanitized name, over another profile of that name. Where it moves to a new name, the file of
    /// its former one goes, unless it can't be told which of several that is. Throws ProfileStoreError for an impossible name,
    /// EncodingError, FileError.
    void saveProfile(const UnifiedProfile& profile);

    /// The profile in the file of that name, or else the newest that bears the name.
    std::optional<UnifiedProfile> loadProfile(const QString& named) const;

    /// True where a file of that name is there and holds no profile that can be read.
    bool isUnreadable(const QString& named) const;

    /// Everything that the folder holds. A folder that can't be listed holds nothing.
    ProfileListing listing() const;
    /// Its profiles alone.
    QList<UnifiedProfile> listProfiles() const { return listing().profiles; }

    /// The same in steps, so that the event loop can come round in between; see inTurns.
    class Reading;
    Reading reading() const;

    /// Removes the file of that name, or else the file of the profile that bears the name.
    void deleteProfile(const QString& named);

    /// Merges profiles into the store, all at once; see Import.
    ProfileImportResult importProfiles(const QList<UnifiedProfile>& profiles);

    /// The same in steps.
    class Import;
    Import beginImport(const QList<UnifiedProfile>& profiles);

private:
    /// A file of the folder and whose it is.
    struct StoredFile {
        QString baseName;
        QUuid id;
        QString name; // as told inside
    };
    struct StoredProfile {
        StoredFile file;
        UnifiedProfile profile;
    };

    /// The name under which a profile is saved. Throws ProfileStoreError.
    static QString savedName(const QString& name);
    QString pathOf(const QString& baseName) const;
    QStringList baseNames() const;
    std::optional<UnifiedProfile> readProfile(const QString& baseName) const;
    Reading wholeReading() const;
    bool standsThere(const QString& baseName) const;
    static QList<StoredProfile> newestFirst(QList<StoredProfile> stored);
    static std::optional<QString> formerName(const UnifiedProfile& profile, const QList<StoredFile>& files);
    StoredFile write(const UnifiedProfile& profile, const std::optional<QString>& former, QSet<QString>& names);
    std::optional<QString> otherSpelling(const QString& baseName, const QSet<QString>& names) const;

    FileManager& m_files;
    QString m_profilesDirectory;
};

/// Reads the folder, one file at each step. The store outlives it.
class ProfileManager::Reading {
public:
    /// False when there is nothing left. A folder that can't be listed holds nothing.
    bool step();
    /// What was read until now.
    ProfileListing listing() const;
    /// As ProfileManager::loadProfile and isUnreadable, of what was read until now.
    std::optional<UnifiedProfile> profile(const QString& named) const;
    bool isUnreadable(const QString& named) const;

private:
    friend class ProfileManager;
    explicit Reading(const ProfileManager& store)
        : m_store(store) {}
    const StoredProfile* find(const QString& named) const;
    QList<StoredFile> files() const;
    QSet<QString> baseNames() const;

    const ProfileManager& m_store;
    std::optional<QStringList> m_names; ///< those that are left; none before the first step
    QList<StoredProfile> m_stored;
    QStringList m_unreadable;
};

/// Merges profiles into the store: reads the folder, once and one file at each step, and then takes one profile at each. One
/// whose `id` is known replaces the saved one; one whose name another file has gets a free name. Of two with one `id` the second
/// becomes a profile of its own. The store outlives it.
class ProfileManager::Import {
public:
    Import(Import&& other) noexcept;
    ~Import();

    /// False when there is nothing left. Throws ProfileStoreError before anything is written when two files hold the same `id`;
    /// else as saveProfile. What was saved until then stays.
    bool step();
    /// What was done until now.
    const ProfileImportResult& result() const { return m_result; }

private:
    friend class ProfileManager;
    class Known;
    Import(ProfileManager& store, const QList<UnifiedProfile>& profiles);
    void take(const UnifiedProfile& incoming);

    ProfileManager& m_store;
    QList<UnifiedProfile> m_incoming; ///< those that are left
    Reading m_reading;
    std::unique_ptr<Known> m_known; ///< of the store; null until it has been read
    QSet<QUuid> m_taken;
    ProfileImportResult m_result;
};

} // namespace quorvane
