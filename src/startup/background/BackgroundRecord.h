#pragma once

#include "core/JsonForward.h"

#include <QList>
#include <QString>
#include <QVariantMap>

namespace quorvane {

class FileManager;
class Machine;

/// What an application's Info dictionary says of which one it is, and of which version. Empty texts where it doesn't say.
struct ApplicationVersion {
    QString bundleIdentifier;
    QString version;      ///< CFBundleVersion
    QString shortVersion; ///< CFBundleShortVersionString

    /// False where it could be any version.
    bool isKnown() const { return !version.isEmpty() || !shortVersion.isEmpty(); }
    bool operator==(const ApplicationVersion&) const = default;
};
ApplicationVersion applicationVersion(const QVariantMap& infoDictionary);

/// An item that was allowed, and that macOS was asked to disallow.
struct DisallowedItem {
    QString application; ///< the path of the one that carries it
    QString label;

    bool operator==(const DisallowedItem&) const = default;
};

/// A helper that was taken out of its application.
struct TakenHelper {
    QString label;       ///< under which it lies in the quarantine
    QString place;       ///< the path where it stood
    QString application; ///< the path of its application
    ApplicationVersion version;

    bool operator==(const TakenHelper&) const = default;
};

/// What the program has changed of background items beside launchd's overrides.
struct BackgroundChanges {
    QList<DisallowedItem> disallowed;
    QList<TakenHelper> helpers;

    bool operator==(const BackgroundChanges&) const = default;
};
Json encodeJson(const BackgroundChanges& changes);
/// Throws DecodingError.
void decodeJson(const Json& json, BackgroundChanges& changes);

/// These changes as a file of the user's, by which the way back goes. Whatever runs as the user can change it. Main thread.
class BackgroundRecord {
public:
    BackgroundRecord(FileManager& files, const Machine& machine);

    /// Empty where there is no file. Throws FileError, and DecodingError for a file that holds something else.
    BackgroundChanges read() const;
    /// An empty record needs no file. Throws FileError.
    void write(const BackgroundChanges& changes);
    /// Lets a file that holds something else make room under a name that nothing has. Throws FileError. @return the name
    QString putAside();

private:
    FileManager& m_files;
    QString m_folder;
    QString m_file;
};

} // namespace quorvane
