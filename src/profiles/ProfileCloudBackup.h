#pragma once

#include "core/ClosingAlert.h"
#include "profiles/ProfileManager.h"
#include "profiles/UnifiedProfile.h"

#include <QByteArray>
#include <QDateTime>
#include <QList>
#include <QString>
#include <QStringList>

#include <exception>

// What lies in iCloud Drive of a user's profiles, and what is said of it.
namespace quorvane {

class Machine;

/// Profiles at one moment, with the name of the Mac that they were saved on.
struct ProfileCloudBackup {
    static constexpr int kFormatVersion = 1;

    int formatVersion = kFormatVersion; ///< not compared when a file is read: its required keys decide
    QDateTime createdAt;
    QString deviceName;
    QList<UnifiedProfile> profiles;
};

/// What a full backup came to.
struct ProfileCloudBackupResult {
    ProfileCloudBackup backup;
    QStringList unreadable; ///< names of the files that hold no profile that can be read, and aren't in it
};

/// The bytes of a backup's file, keys sorted. Throws EncodingError for a date that no file can hold.
QByteArray encodeProfileCloudBackup(const ProfileCloudBackup& backup);
/// All keys are required. Throws DecodingError.
ProfileCloudBackup decodeProfileCloudBackup(const QByteArray& bytes);

/// In the order in which a list shows them.
enum class ProfileCloudBackupKind { fullLatest, defaultCurrent, defaultPrevious, fullTimestamped };

inline const QString kLatestBackupName = QStringLiteral("latest.json");
inline const QString kDefaultCurrentName = QStringLiteral("default-current.json");
inline const QString kDefaultPreviousName = QStringLiteral("default-previous.json");
/// "backup-2026-11-15T21:05:37Z.json". Two backups within a second share it. Throws EncodingError.
QString timestampedBackupName(const QDateTime& createdAt);

/// True for a file that may hold a backup.
bool isBackupName(const QString& fileName);
/// Every name but the three fixed ones is that of a timestamped backup.
ProfileCloudBackupKind backupKindOf(const QString& fileName);

/// One row of the list of backups.
struct ProfileCloudBackupInfo {
    QString id;  ///< the file's name
    QString url; ///< its path
    QDateTime createdAt;
    int profileCount = 0;
    QString deviceName;
    ProfileCloudBackupKind kind = ProfileCloudBackupKind::fullTimestamped;

    /// @param machine  writes the date of a timestamped backup
    QString title(const Machine& machine) const;
    QString detail() const;

    bool operator==(const ProfileCloudBackupInfo&) const = default;
};

/// @param path  of the file that holds the backup
ProfileCloudBackupInfo backupInfo(const QString& path, const ProfileCloudBackup& backup);

/// By kind, then the newest first; of one moment, the later name first.
void sortBackups(QList<ProfileCloudBackupInfo>& backups);

/// A failure of the backups in iCloud, in words for people.
class ProfileCloudError : public std::exception {
public:
    enum class Code {
        readFailed,
        writeFailed,
        iCloudUnavailable,
        noProfilesToBackup,
        backupNotFound,
        emptyBackup,
    };

    /// @param text  why, where the code is readFailed or writeFailed
    explicit ProfileCloudError(Code code, const QString& text = {});

    Code code() const { return m_code; }
    QString message() const { return QString::fromUtf8(m_text); }
    const char* what() const noexcept override { return m_text.constData(); }

private:
    Code m_code;
    QByteArray m_text;
};

/// What a restore came to: "2 imported, 1 updated", and a second line with what was renamed.
QString summary(int imported, int updated, const QStringList& renamed);

ClosingAlert backupCompleteAlert(const ProfileCloudBackupResult& result);
ClosingAlert profilesRestoredAlert(const ProfileImportResult& result);

} // namespace quorvane
