#include "startup/items/CloudSyncService.h"
#include "core/Json.h"

#include "fakes/MemoryFileManager.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Service = CloudSyncService;

struct ServiceRow {
    QString rawValue;
    QString displayName;
    QString icon;
    QStringList matchers;
};

const QList<ServiceRow> kRows{
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
    {u"crashPlan"_s, u"CrashPlan"_s, u"lifepreserver.fill"_s, {u"crashplan"_s, u"com.crashplan"_s, u"com.code42"_s}},
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
    {u"nordLocker"_s, u"NordLocker"_s, u"lock.shield.fill"_s, {u"nordlocker"_s, u"nord drive"_s, u"com.nordlocker"_s}},
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
     {u"proton drive"_s, u"protondrive"_s, u"ch.protonmail.drive"_s, u"ch.protondrive"_s, u"protondrivemaclauncher"_s,
      u"ch.protonmail.drive.agent"_s}},
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

StartupItem itemNamed(const QString& name, const QString& path = {},
                      const std::optional<QString>& launchIdentifier = std::nullopt) {
    StartupItem made;
    made.id = u"login:"_s + name;
    made.name = name;
    made.path = path;
    made.launchIdentifier = launchIdentifier;
    return made;
}

CloudSyncServices allServices() {
    return {allCloudSyncServices().begin(), allCloudSyncServices().end()};
}

CloudSyncServices servicesOf(const StartupItem& startupItem) {
    CloudSyncServices matching;
    for (const Service service : allCloudSyncServices()) {
        if (matchesCloudService(startupItem.name, startupItem.path, startupItem.launchIdentifier, service)) {
            matching.insert(service);
        }
    }
    return matching;
}

TEST(CloudSyncService, eachOfTheThirtyFiveHasItsNameSymbolAndMatchers) {
    ASSERT_EQ(allCloudSyncServices().size(), kRows.size());
    for (qsizetype i = 0; i < kRows.size(); ++i) {
        SCOPED_TRACE(kRows.at(i).rawValue.toStdString());
        const Service service = allCloudSyncServices().at(i);
        EXPECT_EQ(rawValue(service), kRows.at(i).rawValue);
        EXPECT_EQ(displayName(service), kRows.at(i).displayName);
        EXPECT_EQ(icon(service), kRows.at(i).icon);
        EXPECT_EQ(matchers(service), kRows.at(i).matchers);
    }
    EXPECT_EQ(allCloudSyncServices().first(), Service::amazonDrive);
    EXPECT_EQ(allCloudSyncServices().last(), Service::yandexDisk);
}

TEST(CloudSyncService, eachMatcherMatchesItsService) {
    for (const Service service : allCloudSyncServices()) {
        for (const QString& matcher : matchers(service)) {
            SCOPED_TRACE(matcher.toStdString());
            EXPECT_TRUE(matchesCloudService(u"x"_s + matcher.toUpper() + u"x"_s, QString(), std::nullopt, service));
        }
    }
}

TEST(CloudSyncService, itemsMatchByNamePathAndIdentifier) {
    struct Case {
        StartupItem item;
        CloudSyncServices services;
    };
    const QList<Case> cases{
        {itemNamed(u"Box Sync Helper"_s), {Service::box}},
        {itemNamed(u"Boxer"_s, u"/Applications/Boxer.app"_s), {}},
        {itemNamed(u"x"_s, u"/Applications/Box.app"_s), {Service::box}},
        {itemNamed(u"Box.app"_s), {}},
        {itemNamed(u"The"_s, u"Box.app"_s), {Service::box}},
        {itemNamed(u"com_google_drive"_s), {Service::googleDrive}}, // as "google drive"
        {itemNamed(u"com_box"_s), {}},
        {itemNamed(u"Google_Drive"_s), {Service::googleDrive}},
        {itemNamed(u"mega"_s), {}},
        {itemNamed(u"MEGAsync"_s), {Service::mega}},
        {itemNamed(u"x"_s, QString(), u"mega.mac"_s), {Service::mega}},
        {itemNamed(u"Google"_s, u"drive"_s), {Service::googleDrive}},
        {itemNamed(u"x"_s, QString(), u"com.owncloud.desktopclient"_s), {Service::nextcloud, Service::owncloud}},
        {itemNamed(u"iCloud Drive"_s), {Service::iCloudDrive}},
        {itemNamed(QString()), {}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.item.name.toStdString());
        EXPECT_EQ(servicesOf(each.item), each.services);
        EXPECT_EQ(matchesAnyCloudService(each.item, allServices()), !each.services.empty());
        EXPECT_FALSE(matchesAnyCloudService(each.item, {}));
    }
}

TEST(CloudSyncService, matchingItemsKeepTheirOrder) {
    const QList<StartupItem> items{itemNamed(u"MEGAsync"_s), itemNamed(u"Live"_s), itemNamed(u"Dropbox"_s),
                                   itemNamed(u"Koofr"_s)};
    EXPECT_EQ(itemsMatchingCloudServices(items, {Service::dropbox, Service::mega}),
              (QList<StartupItem>{items.at(0), items.at(2)}));
    EXPECT_EQ(itemsMatchingCloudServices(items, {}), QList<StartupItem>());
}

TEST(CloudSyncService, disabledServicesSwitchTheirItemsOff) {
    QList<StartupItem> items{itemNamed(u"MEGAsync"_s), itemNamed(u"Live"_s), itemNamed(u"Dropbox"_s)};
    items[1].runsAtStartup = false;
    const QList<StartupItem> before = items;
    applyDisabledCloudSync(items, {});
    EXPECT_EQ(items, before);

    applyDisabledCloudSync(items, {Service::mega});
    EXPECT_FALSE(items.at(0).runsAtStartup);
    EXPECT_FALSE(items.at(1).runsAtStartup);
    EXPECT_TRUE(items.at(2).runsAtStartup);

    const QList<StartupItem> marked = items;
    applyDisabledCloudSync(items, {});
    EXPECT_EQ(items, marked);

    QList<StartupItem> none;
    applyDisabledCloudSync(none, allServices());
    EXPECT_TRUE(none.isEmpty());
}

TEST(CloudSyncService, theSearchStringsComeFromItemsApplicationsAndProviders) {
    MemoryFileManager files;
    files.addFolders(u"/Applications/Google_Drive.app/Contents/Nested.app"_s);
    files.addFile(u"/Applications/notes.txt"_s, {});
    files.addFolders(u"/Applications/OTHER.APP"_s);
    files.addFolders(u"/Users/alex/Applications/Koofr.app"_s);
    files.addFolders(u"/Users/alex/Library/CloudStorage/Dropbox"_s);
    files.addFile(u"/Users/alex/Library/CloudStorage/.DS_Store"_s, {});
    EXPECT_EQ(cloudDetectionSearchStrings({itemNamed(u"Name_1"_s, u"/P"_s, u"L"_s), itemNamed(u"N2"_s)}, files,
                                          u"/Users/alex"_s),
              (QStringList{u"name 1"_s, u"/p"_s, u"l"_s, u"n2"_s, u""_s, u"google drive.app"_s,
                           u"/applications/google drive.app"_s, u"koofr.app"_s, u"/users/alex/applications/koofr.app"_s,
                           u"dropbox"_s, u".ds store"_s}));
}

TEST(CloudSyncService, aFolderThatCannotBeListedIsLeftOut) {
    MemoryFileManager files;
    files.addFolders(u"/Applications/Dropbox.app"_s);
    files.addFolders(u"/Users/alex/Library/CloudStorage/Box-Box"_s);
    files.failOn(MemoryFileManager::Operation::List, u"/Applications"_s);
    EXPECT_EQ(cloudDetectionSearchStrings({}, files, u"/Users/alex"_s), QStringList{u"box-box"_s});
    EXPECT_EQ(cloudDetectionSearchStrings({}, MemoryFileManager(), u"/Users/alex"_s), QStringList());
}

TEST(CloudSyncService, aProvidersFolderIsEnough) {
    MemoryFileManager files;
    files.addFolders(u"/Users/alex/Library/CloudStorage/Dropbox"_s);
    EXPECT_EQ(detectedCloudServices(cloudDetectionSearchStrings({}, files, u"/Users/alex"_s)),
              QList<Service>{Service::dropbox});
}

TEST(CloudSyncService, detectedServicesAreSortedByDisplayName) {
    EXPECT_EQ(detectedCloudServices({u"YANDEX_DISK"_s, u"pcloud"_s, u"owncloud"_s, u"OneDrive"_s, u"iCloudDrive"_s}),
              (QList<Service>{Service::iCloudDrive, Service::oneDrive, Service::owncloud, Service::pCloud,
                              Service::yandexDisk}));
    EXPECT_EQ(detectedCloudServices({u"Synology Drive"_s, u"sync.com"_s}),
              (QList<Service>{Service::syncCom, Service::synologyDrive}))
        << "the table has them the other way round";
    EXPECT_EQ(detectedCloudServices({}), QList<Service>());
}

TEST(CloudSyncService, nothingIsDetectedAcrossTwoTexts) {
    EXPECT_EQ(detectedCloudServices({u"box"_s, u"sync"_s, u"google"_s, u"drive"_s}), QList<Service>());
}

TEST(CloudSyncService, eachSurvivesAFile) {
    EXPECT_EQ(decodedValue<CloudSyncServices>(encodeJson(allServices())), allServices());
    EXPECT_THROW(decodedValue<CloudSyncServices>(parseJson(R"(["Dropbox"])")), DecodingError);
    EXPECT_THROW(decodedValue<CloudSyncServices>(parseJson(R"([6])")), DecodingError);
    EXPECT_THROW(decodedValue<CloudSyncServices>(parseJson(R"("dropbox")")), DecodingError);
}

} // namespace
} // namespace quorvane
