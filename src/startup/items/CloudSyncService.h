#pragma once

#include "startup/items/StartupItem.h"

#include <QList>
#include <QString>
#include <QStringList>

#include <set>

namespace quorvane {

class FileManager;

/// The cloud storage products that the program knows; written to files by the case's name.
enum class CloudSyncService {
    amazonDrive,
    backblaze,
    box,
    cloudMe,
    crashPlan,
    cubbit,
    dropbox,
    egnyte,
    fileCloud,
    filen,
    googleDrive,
    iCloudDrive,
    iDrive,
    internxt,
    jottacloud,
    koofr,
    lucidLink,
    mega,
    mountainDuck,
    nextcloud,
    nordLocker,
    oneDrive,
    openDrive,
    owncloud,
    pCloud,
    protonDrive,
    resilioSync,
    seafile,
    shareFile,
    spiderOak,
    sugarSync,
    synologyDrive,
    syncCom,
    tresorit,
    yandexDisk,
};

/// In table order.
using CloudSyncServices = std::set<CloudSyncService>;

const QList<CloudSyncService>& allCloudSyncServices();
QString rawValue(CloudSyncService service);
QString displayName(CloudSyncService service);
/// Symbol name for the editor's row.
QString icon(CloudSyncService service);
/// Lower-case substrings; some begin with a blank or a slash on purpose.
const QStringList& matchers(CloudSyncService service);

/// True when the name, path or launch identifier of an item names the product.
bool matchesCloudService(const QString& name, const QString& path, const std::optional<QString>& launchIdentifier,
                         CloudSyncService service);
bool matchesAnyCloudService(const StartupItem& item, const CloudSyncServices& services);
/// In the order of the list.
QList<StartupItem> itemsMatchingCloudServices(const QList<StartupItem>& items, const CloudSyncServices& services);
/// Switches off every item that matches a service, audio software aside. A service that is on again turns nothing back on.
void applyDisabledCloudSync(QList<StartupItem>& items, const CloudSyncServices& services);

/// What tells of products on this Mac, in normal form: texts of the items, the applications in both
/// Applications folders, and the providers in the user's CloudStorage folder. A folder that can't be listed
/// is left out.
/// @param homeFolder  without a slash at the end
QStringList cloudDetectionSearchStrings(const QList<StartupItem>& items, const FileManager& files,
                                        const QString& homeFolder);
/// The products named by any of the texts, sorted by display name.
QList<CloudSyncService> detectedCloudServices(const QStringList& searchStrings);

Json encodeJson(CloudSyncService service);
Json encodeJson(const CloudSyncServices& services);
// Both throw DecodingError.
void decodeJson(const Json& json, CloudSyncService& service);
void decodeJson(const Json& json, CloudSyncServices& services);

} // namespace quorvane
