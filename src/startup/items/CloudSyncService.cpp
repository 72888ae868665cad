#include "startup/items/CloudSyncService.h"

#include "core/Collation.h"
#include "core/Json.h"
#include "platform/FileManager.h"
#include "platform/FolderNames.h"

#include <algorithm>
#include <utility>

using namespace Qt::StringLiterals;

// The table is deliberately loose: a matcher is a plain substring, and one text may name two products.
namespace quorvane {

namespace {

struct ServiceRow {
    QString rawValue;
    QString displayName;
    QString icon;
    QStringList matchers;
};

// One row for each case, in the order of the enumeration.
const QList<ServiceRow>& table() {
    static const QList<ServiceRow> rows{
        {u"amazonDrive"_s,
         u"Amazon Drive"_s,
         u"shippingbox.fill"_s,
         {u"amazon drive"_s, u"amazon clouddrive"_s, u"com.amazon.clouddrive"_s}},
        {u"backblaze"_s, u"Backblaze"_s, u"flame.fill"_s, {u"backblaze"_s, u"com.backblaze"_s}},
        {u"box"_s,
         u"Box"_s,
         u"archivebox.fill"_s,
         {u"box sync"_s, u"box drive"_s, u" box.app"_s, u"/box.app"_s, u"com.box"_s}},
        {u"cloudMe"_s, u"CloudMe"_s, u"cloud.fill"_s, {u"cloudme"_s, u"com.cloudme"_s}},
        {u"crashPlan"_s,
         u"CrashPlan"_s,
         u"lifepreserver.fill"_s,
         {u"crashplan"_s, u"com.crashplan"_s, u"com.code42"_s}},
        {u"cubbit"_s, u"Cubbit"_s, u"cube.fill"_s, {u"cubbit"_s, u"com.cubbit"_s}},
        {u"dropbox"_s, u"Dropbox"_s, u"externaldrive.fill"_s, {u"dropbox"_s, u"com.getdropbox"_s, u"com.dropbox"_s}},
        {u"egnyte"_s, u"Egnyte"_s, u"building.2.fill"_s, {u"egnyte"_s, u"com.egnyte"_s}},
        {u"fileCloud"_s, u"FileCloud"_s, u"doc.fill"_s, {u"filecloud"_s, u"com.filecloud"_s}},
        {u"filen"_s, u"Filen"_s, u"lock.icloud.fill"_s, {u"filen"_s, u"io.filen"_s, u"com.filen"_s}},
        {u"googleDrive"_s,
         u"Google Drive"_s,
         u"icloud.fill"_s,
         {u"google drive"_s, u"googledrive"_s, u"com.google.googledrive"_s, u"com.google.drive"_s}},
        {u"iCloudDrive"_s,
         u"iCloud Drive"_s,
         u"icloud.and.arrow.up.fill"_s,
         {u"icloud drive"_s, u"iclouddrive"_s, u"com.apple.clouddocs"_s}},
        {u"iDrive"_s, u"iDrive"_s, u"externaldrive.badge.icloud"_s, {u"idrive"_s, u"com.idrive"_s}},
        {u"internxt"_s, u"Internxt"_s, u"shield.lefthalf.filled"_s, {u"internxt"_s, u"com.internxt"_s}},
        {u"jottacloud"_s, u"Jottacloud"_s, u"cloud.sun.fill"_s, {u"jottacloud"_s, u"com.jotta"_s, u"jottad"_s}},
        {u"koofr"_s, u"Koofr"_s, u"folder.fill.badge.gearshape"_s, {u"koofr"_s, u"com.koofr"_s}},
        {u"lucidLink"_s, u"LucidLink"_s, u"link.circle.fill"_s, {u"lucidlink"_s, u"com.lucidlink"_s}},
        {u"mega"_s,
         u"MEGA"_s,
         u"m.circle.fill"_s,
         {u"megasync"_s, u"mega.nz"_s, u"mega.mac"_s, u"megaupdater"_s, u"com.mega"_s}},
        {u"mountainDuck"_s,
         u"Mountain Duck"_s,
         u"mountain.2.fill"_s,
         {u"mountain duck"_s, u"mountainduck"_s, u"io.mountainduck"_s}},
        {u"nextcloud"_s,
         u"Nextcloud"_s,
         u"cloud.circle.fill"_s,
         {u"nextcloud"_s, u"com.nextcloud"_s, u"com.owncloud.desktopclient"_s}},
        {u"nordLocker"_s,
         u"NordLocker"_s,
         u"lock.shield.fill"_s,
         {u"nordlocker"_s, u"nord drive"_s, u"com.nordlocker"_s}},
        {u"oneDrive"_s,
         u"OneDrive"_s,
         u"cloud.fill"_s,
         {u"onedrive"_s, u"one drive"_s, u"com.microsoft.onedrive"_s, u"com.microsoft.onedrive-mac"_s,
          u"com.microsoft.onedrivelauncher"_s}},
        {u"openDrive"_s, u"OpenDrive"_s, u"folder.fill"_s, {u"opendrive"_s, u"com.opendrive"_s}},
        {u"owncloud"_s, u"ownCloud"_s, u"cloud.sun.rain.fill"_s, {u"owncloud"_s, u"com.owncloud"_s}},
        {u"pCloud"_s, u"pCloud"_s, u"p.circle.fill"_s, {u"pcloud"_s, u"com.pcloud"_s, u"pclsync"_s}},
        {u"protonDrive"_s,
         u"Proton Drive"_s,
         u"lock.icloud.fill"_s,
         {u"proton drive"_s, u"protondrive"_s, u"ch.protonmail.drive"_s, u"ch.protondrive"_s,
          u"protondrivemaclauncher"_s, u"ch.protonmail.drive.agent"_s}},
        {u"resilioSync"_s,
         u"Resilio Sync"_s,
         u"arrow.triangle.2.circlepath"_s,
         {u"resilio sync"_s, u"resiliosync"_s, u"com.resilio"_s, u"com.bittorrent.sync"_s}},
        {u"seafile"_s, u"Seafile"_s, u"water.waves"_s, {u"seafile"_s, u"com.seafile"_s}},
        {u"shareFile"_s,
         u"ShareFile"_s,
         u"person.2.fill"_s,
         {u"sharefile"_s, u"citrix files"_s, u"com.citrix.sharefile"_s, u"com.citrix.files"_s}},
        {u"spiderOak"_s, u"SpiderOak"_s, u"leaf.fill"_s, {u"spideroak"_s, u"com.spideroak"_s}},
        {u"sugarSync"_s, u"SugarSync"_s, u"cube.transparent.fill"_s, {u"sugarsync"_s, u"com.sugarsync"_s}},
        {u"synologyDrive"_s,
         u"Synology Drive"_s,
         u"server.rack"_s,
         {u"synology drive"_s, u"synologydrive"_s, u"com.synology.drive"_s, u"com.synology.cloudstation"_s}},
        {u"syncCom"_s,
         u"Sync.com"_s,
         u"arrow.trianglehead.2.clockwise.rotate.90"_s,
         {u"sync.com"_s, u"com.sync.sync"_s, u"com.sync.desktop"_s}},
        {u"tresorit"_s, u"Tresorit"_s, u"lock.fill"_s, {u"tresorit"_s, u"com.tresorit"_s}},
        {u"yandexDisk"_s,
         u"Yandex Disk"_s,
         u"y.circle.fill"_s,
         {u"yandex disk"_s, u"yandex.disk"_s, u"com.yandex.desktop"_s}},
    };
    return rows;
}

const ServiceRow& row(CloudSyncService service) {
    return table().at(static_cast<qsizetype>(service));
}

QList<CloudSyncService> listServices() {
    QList<CloudSyncService> services;
    for (qsizetype index = 0; index < table().size(); ++index) {
        services.append(static_cast<CloudSyncService>(index));
    }
    return services;
}

/// The one form in which texts are compared. There may be thousands: most have no letters but those of ASCII, which are
/// changed in their place.
QString normalForm(QString text) {
    for (QChar& character : text) {
        if (character.unicode() > 0x7F) {
            return text.toLower().replace(u'_', u' ');
        }
        if (character == u'_') {
            character = u' ';
        } else if (character >= u'A' && character <= u'Z') {
            character = QChar(character.unicode() + u'a' - u'A');
        }
    }
    return text;
}

QString searchText(const QString& name, const QString& path, const std::optional<QString>& launchIdentifier) {
    const qsizetype ofIdentifier = launchIdentifier ? launchIdentifier->size() : 0;
    QString text;
    text.reserve(name.size() + path.size() + ofIdentifier + 2);
    text.append(name).append(u' ').append(path).append(u' ').append(launchIdentifier.value_or(QString()));
    return normalForm(std::move(text));
}

bool holdsMatcher(const QString& text, CloudSyncService service) {
    const QStringList& substrings = row(service).matchers;
    return std::any_of(substrings.begin(), substrings.end(),
                       [&text](const QString& substring) { return text.contains(substring); });
}

void appendItemTexts(QStringList& texts, const QList<StartupItem>& items) {
    for (const StartupItem& item : items) {
        texts << item.name << item.path;
        if (item.launchIdentifier) {
            texts << *item.launchIdentifier;
        }
    }
}

void appendApplications(QStringList& texts, const QString& folder, const FileManager& files) {
    for (const QString& name : namesIn(files, folder)) {
        if (name.endsWith(u".app"_s)) {
            texts << name << folder + u'/' + name;
        }
    }
}

} // namespace

const QList<CloudSyncService>& allCloudSyncServices() {
    static const QList<CloudSyncService> services = listServices();
    return services;
}

QString rawValue(CloudSyncService service) {
    return row(service).rawValue;
}

QString displayName(CloudSyncService service) {
    return row(service).displayName;
}

QString icon(CloudSyncService service) {
    return row(service).icon;
}

const QStringList& matchers(CloudSyncService service) {
    return row(service).matchers;
}

bool matchesCloudService(const QString& name, const QString& path, const std::optional<QString>& launchIdentifier,
                         CloudSyncService service) {
    return holdsMatcher(searchText(name, path, launchIdentifier), service);
}

bool matchesAnyCloudService(const StartupItem& item, const CloudSyncServices& services) {
    if (services.empty()) {
        return false;
    }
    const QString text = searchText(item.name, item.path, item.launchIdentifier);
    return std::any_of(services.begin(), services.end(),
                       [&text](CloudSyncService service) { return holdsMatcher(text, service); });
}

QList<StartupItem> itemsMatchingCloudServices(const QList<StartupItem>& items, const CloudSyncServices& services) {
    QList<StartupItem> matching;
    std::copy_if(items.begin(), items.end(), std::back_inserter(matching),
                 [&services](const StartupItem& item) { return matchesAnyCloudService(item, services); });
    return matching;
}

void applyDisabledCloudSync(QList<StartupItem>& items, const CloudSyncServices& services) {
    if (services.empty() || items.isEmpty()) {
        return;
    }
    for (StartupItem& item : items) {
        if (item.runsAtStartup && !item.isProtected && matchesAnyCloudService(item, services)) {
            item.runsAtStartup = false;
        }
    }
}

QStringList cloudDetectionSearchStrings(const QList<StartupItem>& items, const FileManager& files,
                                        const QString& homeFolder) {
    QStringList texts;
    appendItemTexts(texts, items);
    appendApplications(texts, u"/Applications"_s, files);
    appendApplications(texts, homeFolder + u"/Applications"_s, files);
    // A product that runs only as a file provider shows itself here.
    texts << namesIn(files, homeFolder + u"/Library/CloudStorage"_s);
    for (QString& text : texts) {
        text = normalForm(text);
    }
    return texts;
}

QList<CloudSyncService> detectedCloudServices(const QStringList& searchStrings) {
    // No matcher holds a line feed, so none is found across two texts.
    const QString allTexts = normalForm(searchStrings.join(u'\n'));
    QList<CloudSyncService> detected;
    for (const CloudSyncService service : allCloudSyncServices()) {
        if (holdsMatcher(allTexts, service)) {
            detected.append(service);
        }
    }
    sortLocalized(detected, displayName);
    return detected;
}

Json encodeJson(CloudSyncService service) {
    return encodeJson(rawValue(service));
}

Json encodeJson(const CloudSyncServices& services) {
    return encodeJson(QList<CloudSyncService>(services.begin(), services.end()));
}

void decodeJson(const Json& json, CloudSyncService& service) {
    const QString raw = decodedValue<QString>(json);
    const QList<ServiceRow>& rows = table();
    const auto found =
        std::find_if(rows.begin(), rows.end(), [&raw](const ServiceRow& each) { return each.rawValue == raw; });
    if (found == rows.end()) {
        throw DecodingError(u"unknown value "_s + quotedForError(raw));
    }
    service = static_cast<CloudSyncService>(found - rows.begin());
}

void decodeJson(const Json& json, CloudSyncServices& services) {
    const auto list = decodedValue<QList<CloudSyncService>>(json);
    services = CloudSyncServices(list.begin(), list.end());
}

} // namespace quorvane
