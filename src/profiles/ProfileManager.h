#pragma once

#include "profiles/UnifiedProfile.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <exception>
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
    QStringList unreadable;         ///< names, without ".json", of files that hold no profile that can be read
};

/// The saved profiles: one file "{name}.json" for each, in one folder. Holds no list; every call goes to the
/// disk.
///
/// A name is not a path. What a caller or a file calls a profile only ever names a file in the folder, and
/// files are otherwise reached by the names under which the folder lists them. Saving loses nothing: a new
/// file is in place before an old one goes.
class ProfileManager {
public:
    /// @param profilesDirectory  as the Mac sees it; created when it is needed
    ProfileManager(FileManager& files, QString profilesDirectory);

    /// The folder, created with its parents; a failure to create it is left to the operation that follows.
    QString profilesDirectory() const;

    /// Writes the profile under its sanitized name, over another profile of that name. The files of this
    /// profile's former names are removed. Throws ProfileStoreError for an impossible name, EncodingError,
    /// FileError.
    void saveProfile(const UnifiedProfile& profile);

    /// The profile in the file of that name, or else the newest that bears the name in any case.
    std::optional<UnifiedProfile> loadProfile(const QString& named) const;

    /// Newest first; files that are no profiles are left out.
    QList<UnifiedProfile> listProfiles() const;

    /// The same in steps, so that the event loop can come round in between; see inTurns.
    class Reading;
    Reading reading() const;

    /// Removes the file of that name, or else the file of the profile that bears the name in another case.
    void deleteProfile(const QString& named);

    /// Merges profiles into the store. One whose `id` is known replaces the saved one; one whose name another
    /// profile has gets a free name. Throws ProfileStoreError before anything is written when two files hold
    /// the same `id`; else as saveProfile, and what was saved until then stays.
    ProfileImportResult importProfiles(const QList<UnifiedProfile>& profiles);

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
    class ImportStore;

    QString pathOf(const QString& baseName) const;
    QStringList baseNames() const;
    std::optional<UnifiedProfile> readProfile(const QString& baseName) const;
    QList<StoredProfile> storedProfiles() const;
    static QList<StoredProfile> newestFirst(QList<StoredProfile> stored);
    static QList<UnifiedProfile> profilesOf(QList<StoredProfile> stored);
    QList<StoredFile> storedFiles() const;
    StoredFile write(const UnifiedProfile& profile, const QList<StoredFile>& filesOfProfile);
    void giveFileItsSpelling(const QString& baseName);
    void removeFormerFiles(const QString& baseName, const QList<StoredFile>& filesOfProfile);
    bool removeFile(const QString& baseName);

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

private:
    friend class ProfileManager;
    explicit Reading(const ProfileManager& store)
        : m_store(store) {}

    const ProfileManager& m_store;
    std::optional<QStringList> m_names; ///< those that are left; none before the first step
    QList<StoredProfile> m_stored;
    QStringList m_unreadable;
};

} // namespace quorvane
