#include "startup/background/BackgroundLoginItemChangePlan.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Service = CloudSyncService;

const QString kOn = u"[enabled, allowed, notified] (0xb)"_s;

BackgroundTaskItem listedRecord(const QString& name, const QString& label, const QString& disposition = kOn) {
    BackgroundTaskItem item;
    item.name = name;
    item.identifier = u"8."_s + label;
    item.itemType = u"agent (0x8)"_s;
    item.disposition = disposition;
    return item;
}

QStringList namesOf(const QList<BackgroundTaskItem>& records) {
    QStringList names;
    for (const BackgroundTaskItem& each : records) {
        names.append(each.name);
    }
    return names;
}

BackgroundLoginItemChangePlan planForLabels(const QSet<QString>& labels) {
    BackgroundLoginItemChangePlan plan;
    plan.disabledBackgroundLaunchLabels = labels;
    return plan;
}

TEST(BackgroundLoginItemChangePlan, hasWorkOnceAnythingIsToGo) {
    BackgroundLoginItemChangePlan plan;
    EXPECT_FALSE(plan.hasWork());
    plan.cleanRebootStartup = StartupConfiguration();
    EXPECT_FALSE(plan.hasWork());

    EXPECT_TRUE(planForLabels({u"com.a"_s}).hasWork());
    BackgroundLoginItemChangePlan services;
    services.cloudSyncServices = {Service::dropbox};
    EXPECT_TRUE(services.hasWork());
    BackgroundLoginItemChangePlan cleanReboot;
    cleanReboot.cleanRebootPermittedNames = QSet<QString>();
    EXPECT_TRUE(cleanReboot.hasWork());
}

TEST(BackgroundLoginItemChangePlan, anEmptyPlanTakesNothing) {
    const BackgroundTaskList list({listedRecord(u"Dropbox"_s, u"com.dropbox"_s)});
    EXPECT_EQ(namesOf(plannedRecords({}, list)), QStringList());
}

TEST(BackgroundLoginItemChangePlan, aCleanRebootTakesWhatIsNotPermitted) {
    BackgroundLoginItemChangePlan plan;
    plan.cleanRebootPermittedNames = QSet<QString>{u"Kept"_s};
    StartupItem running;
    running.name = u"Opened"_s;
    plan.cleanRebootStartup = StartupConfiguration{{running}, false, {}};
    const BackgroundTaskList list({listedRecord(u"Zed"_s, u"com.z"_s), listedRecord(u"Kept"_s, u"com.k"_s),
                                   listedRecord(u"Opened"_s, u"com.o"_s), listedRecord(u"alpha"_s, u"com.a"_s),
                                   listedRecord(u"Traktor"_s, u"com.t"_s),
                                   listedRecord(u"Off"_s, u"com.f"_s, u"[disabled]"_s)});
    EXPECT_EQ(namesOf(plannedRecords(plan, list)), (QStringList{u"alpha"_s, u"Zed"_s}));
}

TEST(BackgroundLoginItemChangePlan, labelsTakeTheirRecordsWhateverTheirState) {
    const BackgroundTaskList list({listedRecord(u"b"_s, u"com.b"_s),
                                   listedRecord(u"off"_s, u"com.a"_s, u"[disabled]"_s),
                                   listedRecord(u"c"_s, u"com.c"_s), listedRecord(u"a"_s, u"com.a"_s)});
    EXPECT_EQ(namesOf(plannedRecords(planForLabels({u"com.b"_s, u"com.a"_s, u"com.gone"_s, u""_s}), list)),
              (QStringList{u"off"_s, u"a"_s, u"b"_s}));
}

TEST(BackgroundLoginItemChangePlan, servicesTakeTheirActiveRecords) {
    BackgroundLoginItemChangePlan plan;
    plan.cloudSyncServices = {Service::dropbox, Service::mega};
    const BackgroundTaskList list({listedRecord(u"Dropbox"_s, u"com.d"_s),
                                   listedRecord(u"Off"_s, u"com.dropbox"_s, u"[disabled]"_s),
                                   listedRecord(u"OneDrive"_s, u"com.o"_s), listedRecord(u"sync"_s, u"mega.mac"_s)});
    EXPECT_EQ(namesOf(plannedRecords(plan, list)), (QStringList{u"Dropbox"_s, u"sync"_s}));
}

TEST(BackgroundLoginItemChangePlan, aRecordThatGoesForSeveralReasonsGoesOnce) {
    BackgroundLoginItemChangePlan plan = planForLabels({u"com.dropbox"_s, u"com.x"_s});
    plan.cleanRebootPermittedNames = QSet<QString>();
    plan.cloudSyncServices = {Service::dropbox};
    const BackgroundTaskItem dropbox = listedRecord(u"Dropbox"_s, u"com.dropbox"_s);
    const BackgroundTaskList list({dropbox, listedRecord(u"X"_s, u"com.x"_s), dropbox});
    EXPECT_EQ(namesOf(plannedRecords(plan, list)), (QStringList{u"Dropbox"_s, u"X"_s}));
}

TEST(BackgroundLoginItemChangePlan, recordsWhoseLabelsDifferInCaseAreTwo) {
    BackgroundLoginItemChangePlan plan;
    plan.cleanRebootPermittedNames = QSet<QString>();
    const BackgroundTaskItem lower = listedRecord(u"Same"_s, u"com.x"_s);
    const BackgroundTaskItem upper = listedRecord(u"Same"_s, u"com.X"_s);
    EXPECT_EQ(plannedRecords(plan, BackgroundTaskList({lower, upper})), (QList<BackgroundTaskItem>{lower, upper}));
}

TEST(BackgroundLoginItemChangePlan, aServiceIsFoundInAnyTextOfARecord) {
    EXPECT_TRUE(matchesCloudService(listedRecord(u"Google_Drive"_s, u"x"_s), Service::googleDrive));
    BackgroundTaskItem byUrl = listedRecord(u"helper"_s, u"x"_s);
    byUrl.url = u"file:///Applications/Box.app/"_s;
    EXPECT_TRUE(matchesCloudService(byUrl, Service::box));
    EXPECT_FALSE(matchesCloudService(byUrl, Service::dropbox));
    byUrl.itemType = u"dropbox"_s;
    byUrl.disposition = u"dropbox"_s;
    EXPECT_FALSE(matchesCloudService(byUrl, Service::dropbox));
}

TEST(BackgroundLoginItemChangePlan, withoutServicesNoRecordBelongsToOne) {
    EXPECT_EQ(namesOf(activeRecordsOfServices({listedRecord(u"Dropbox"_s, u"com.dropbox"_s)}, {})), QStringList());
}

} // namespace
} // namespace quorvane
