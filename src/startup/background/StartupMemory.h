#pragma once

#include "core/JsonForward.h"
#include "startup/launchd/DisabledServices.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <optional>

namespace quorvane {

class FileManager;
class Machine;

/// Something that needs root and was found too late for the line of its batch: the next apply switches it off.
struct WaitingService {
    LaunchdService service;
    QString path;           ///< of its plist or record; empty where none is known
    QString name{};         ///< as people know it; its label where that is empty
    QString knownAs{};      ///< the label by which profiles know it, where that is another one than launchd's
    bool isCleared = false; ///< the list of background items was read and had nothing against it

    /// True for the label, or the file name of a launch plist, by which a profile means it.
    bool isKnownAs(const QString& identifier) const;
    const QString& shownName() const { return name.isEmpty() ? service.label : name; }

    bool operator==(const WaitingService&) const = default;
};

/// A job or login item of the last dump.
struct KnownService {
    QString knownAs; ///< the label by which profiles know it
    LaunchdService service;

    bool operator==(const KnownService&) const = default;
};

/// What the program has to know of startup when it is started again.
struct StartupMemory {
    QList<WaitingService> waiting;
    QStringList
        registeredApplications; ///< paths of those that open at login by their own registration, by the last dump
    /// Of the last dump, for all labels under which launchd doesn't simply know a service of the user's by the same label. None
    /// where no dump was ever read.
    std::optional<QList<KnownService>> services{};

    bool waitsFor(const QString& identifier) const;
    /// All that a label may stand for: where no dump was ever read, the label in both of launchd's domains.
    QList<LaunchdService> servicesOf(const QString& label) const;

    bool operator==(const StartupMemory&) const = default;
};

Json encodeJson(const WaitingService& waiting);
Json encodeJson(const KnownService& known);
Json encodeJson(const StartupMemory& memory);
// Each throws DecodingError. What earlier versions didn't write is missing in their files.
void decodeJson(const Json& json, WaitingService& waiting);
void decodeJson(const Json& json, KnownService& known);
void decodeJson(const Json& json, StartupMemory& memory);

/// Its file, in the program's folder of the user. A file that can't be read counts as empty: all of it is found again.
class StartupMemoryFile {
public:
    StartupMemoryFile(FileManager& files, const Machine& machine);

    StartupMemory load() const;
    /// @return why it couldn't be written; none when it was
    std::optional<QString> save(const StartupMemory& memory) const;

private:
    FileManager& m_files;
    QString m_folder;
};

} // namespace quorvane
