#include "startup/CloudSyncService.h"

#include "fakes/MemoryFileManager.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Service = CloudSyncService;

StartupItem item(const QString& name, const QString& path = {},
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
        if (matchesCloudService(startupItem.name, startupItem.path, startupItem.launchIdentifier, service))
            matching.insert(service);
    }
    return matching;
}

TEST(CloudSyncService, thereAreThirtyFiveInTableOrder) {
    QStringList raw;
    for (const Service service : allCloudSyncServices())
        raw.append(rawValue(service));
    EXPECT_EQ(
        raw,
        u"amazonDrive backblaze box cloudMe crashPlan cubbit dropbox egnyte fileCloud filen googleDrive "
        "iCloudDrive iDrive internxt jottacloud koofr lucidLink mega mountainDuck nextcloud nordLocker "
        "oneDrive openDrive owncloud pCloud protonDrive resilioSync seafile shareFile spiderOak sugarSync "
        "synologyDrive syncCom tresorit yandexDisk"_s.split(u' '));
    EXPECT_EQ(allCloudSyncServices().first(), Service::amazonDrive);
    EXPECT_EQ(allCloudSyncServices().last(), Service::yandexDisk);
}

TEST(CloudSyncService, eachHasItsNameSymbolAndMatchers) {
    EXPECT_EQ(displayName(Service::syncCom), u"Sync.com"_s);
    EXPECT_EQ(icon(Service::syncCom), u"arrow.trianglehead.2.clockwise.rotate.90"_s);
    EXPECT_EQ(matchers(Service::syncCom),
              (QStringList{u"sync.com"_s, u"com.sync.sync"_s, u"com.sync.desktop"_s}));
    EXPECT_EQ(displayName(Service::owncloud), u"ownCloud"_s);
    EXPECT_EQ(matchers(Service::box),
              (QStringList{u"box sync"_s, u"box drive"_s, u" box.app"_s, u"/box.app"_s, u"com.box"_s}));
    EXPECT_EQ(icon(Service::cloudMe), icon(Service::oneDrive));
    EXPECT_EQ(icon(Service::filen), icon(Service::protonDrive));
    for (const Service service : allCloudSyncServices()) {
        SCOPED_TRACE(rawValue(service).toStdString());
        EXPECT_FALSE(displayName(service).isEmpty());
        EXPECT_FALSE(icon(service).isEmpty());
        EXPECT_FALSE(matchers(service).isEmpty());
        for (const QString& matcher : matchers(service))
            EXPECT_EQ(matcher, matcher.toLower());
    }
}

TEST(CloudSyncService, eachMatcherMatchesItsService) {
    for (const Service service : allCloudSyncServices()) {
        for (const QString& matcher : matchers(service)) {
            SCOPED_TRACE(matcher.toStdString());
            EXPECT_TRUE(
                matchesCloudService(u"x"_s + matcher.toUpper() + u"x"_s, QString(), std::nullopt, service));
        }
    }
}

TEST(CloudSyncService, itemsMatchByNamePathAndIdentifier) {
    struct Case {
        StartupItem item;
        CloudSyncServices services;
    };
    const QList<Case> cases{
        {item(u"Box Sync Helper"_s), {Service::box}},
        {item(u"Boxer"_s, u"/Applications/Boxer.app"_s), {}},
        {item(u"x"_s, u"/Applications/Box.app"_s), {Service::box}},
        {item(u"Box.app"_s), {}},
        {item(u"The"_s, u"Box.app"_s), {Service::box}},
        {item(u"com_google_drive"_s), {Service::googleDrive}}, // as "google drive"
        {item(u"com_box"_s), {}},
        {item(u"Google_Drive"_s), {Service::googleDrive}},
        {item(u"mega"_s), {}},
        {item(u"MEGAsync"_s), {Service::mega}},
        {item(u"x"_s, QString(), u"mega.mac"_s), {Service::mega}},
        {item(u"Google"_s, u"drive"_s), {Service::googleDrive}},
        {item(u"x"_s, QString(), u"com.owncloud.desktopclient"_s), {Service::nextcloud, Service::owncloud}},
        {item(u"iCloud Drive"_s), {Service::iCloudDrive}},
        {item(QString()), {}},
    };
    for (const Case& each : cases) {
        SCOPED_TRACE(each.item.name.toStdString());
        EXPECT_EQ(servicesOf(each.item), each.services);
        EXPECT_EQ(matchesAnyCloudService(each.item, allServices()), !each.services.empty());
        EXPECT_FALSE(matchesAnyCloudService(each.item, {}));
    }
}

TEST(CloudSyncService, matchingItemsKeepTheirOrder) {
    const QList<StartupItem> items{item(u"MEGAsync"_s), item(u"Live"_s), item(u"Dropbox"_s),
                                   item(u"Koofr"_s)};
    EXPECT_EQ(itemsMatchingCloudServices(items, {Service::dropbox, Service::mega}),
              (QList<StartupItem>{items.at(0), items.at(2)}));
    EXPECT_EQ(itemsMatchingCloudServices(items, {}), QList<StartupItem>());
}

TEST(CloudSyncService, disabledServicesSwitchTheirItemsOff) {
    QList<StartupItem> items{item(u"MEGAsync"_s), item(u"Live"_s), item(u"Dropbox"_s)};
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
    EXPECT_EQ(cloudDetectionSearchStrings({item(u"Name_1"_s, u"/P"_s, u"L"_s), item(u"N2"_s)}, files,
                                          u"/Users/alex"_s),
              (QStringList{u"name 1"_s, u"/p"_s, u"l"_s, u"n2"_s, u""_s, u"google drive.app"_s,
                           u"/applications/google drive.app"_s, u"koofr.app"_s,
                           u"/users/alex/applications/koofr.app"_s, u"dropbox"_s, u".ds store"_s}));
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
    EXPECT_EQ(detectedCloudServices(
                  {u"YANDEX_DISK"_s, u"pcloud"_s, u"owncloud"_s, u"OneDrive"_s, u"iCloudDrive"_s}),
              (QList<Service>{Service::iCloudDrive, Service::oneDrive, Service::owncloud, Service::pCloud,
                              Service::yandexDisk}));
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
