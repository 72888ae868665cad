#include "startup/background/BackgroundLoginItemChangePlan.h"

#include <QStringList>

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

using Service = CloudSyncService;

const QString kOn = u"[enabled, allowed, notified] (0xb)"_s;

BackgroundTaskItem record(const QString& name, const QString& label, const QString& disposition = kOn) {
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
    const BackgroundTaskList list({record(u"Dropbox"_s, u"com.dropbox"_s)});
    EXPECT_EQ(namesOf(plannedRecords({}, list)), QStringList());
}

TEST(BackgroundLoginItemChangePlan, aCleanRebootTakesWhatIsNotPermitted) {
    BackgroundLoginItemChangePlan plan;
    plan.cleanRebootPermittedNames = QSet<QString>{u"Kept"_s};
    StartupItem running;
    running.name = u"Opened"_s;
    plan.cleanRebootStartup = StartupConfiguration{{running}, false, {}};
    const BackgroundTaskList list({record(u"Zed"_s, u"com.z"_s), record(u"Kept"_s, u"com.k"_s),
                                   record(u"Opened"_s, u"com.o"_s), record(u"alpha"_s, u"com.a"_s),
                                   record(u"Traktor"_s, u"com.t"_s), record(u"Off"_s, u"com.f"_s, u"[disabled]"_s)});
    EXPECT_EQ(namesOf(plannedRecords(plan, list)), (QStringList{u"alpha"_s, u"Zed"_s}));
}

TEST(BackgroundLoginItemChangePlan, labelsTakeTheirRecordsWhateverTheirState) {
    const BackgroundTaskList list({record(u"b"_s, u"com.b"_s), record(u"off"_s, u"com.a"_s, u"[disabled]"_s),
                                   record(u"c"_s, u"com.c"_s), record(u"a"_s, u"com.a"_s)});
    EXPECT_EQ(namesOf(plannedRecords(planForLabels({u"com.b"_s, u"com.a"_s, u"com.gone"_s, u""_s}), list)),
              (QStringList{u"off"_s, u"a"_s, u"b"_s}));
}

TEST(BackgroundLoginItemChangePlan, servicesTakeTheirActiveRecords) {
    BackgroundLoginItemChangePlan plan;
    plan.cloudSyncServices = {Service::dropbox, Service::mega};
    const BackgroundTaskList list({record(u"Dropbox"_s, u"com.d"_s),
                                   record(u"Off"_s, u"com.dropbox"_s, u"[disabled]"_s),
                                   record(u"OneDrive"_s, u"com.o"_s), record(u"sync"_s, u"mega.mac"_s)});
    EXPECT_EQ(namesOf(plannedRecords(plan, list)), (QStringList{u"Dropbox"_s, u"sync"_s}));
}

TEST(BackgroundLoginItemChangePlan, aRecordThatGoesForSeveralReasonsGoesOnce) {
    BackgroundLoginItemChangePlan plan = planForLabels({u"com.dropbox"_s, u"com.x"_s});
    plan.cleanRebootPermittedNames = QSet<QString>();
    plan.cloudSyncServices = {Service::dropbox};
    const BackgroundTaskItem dropbox = record(u"Dropbox"_s, u"com.dropbox"_s);
    const BackgroundTaskList list({dropbox, record(u"X"_s, u"com.x"_s), dropbox});
    EXPECT_EQ(namesOf(plannedRecords(plan, list)), (QStringList{u"Dropbox"_s, u"X"_s}));
}

TEST(BackgroundLoginItemChangePlan, recordsWhoseLabelsDifferInCaseAreTwo) {
    BackgroundLoginItemChangePlan plan;
    plan.cleanRebootPermittedNames = QSet<QString>();
    const BackgroundTaskItem lower = record(u"Same"_s, u"com.x"_s);
    const BackgroundTaskItem upper = record(u"Same"_s, u"com.X"_s);
    EXPECT_EQ(plannedRecords(plan, BackgroundTaskList({lower, upper})), (QList<BackgroundTaskItem>{lower, upper}));
}

TEST(BackgroundLoginItemChangePlan, aServiceIsFoundInAnyTextOfARecord) {
    EXPECT_TRUE(matchesCloudService(record(u"Google_Drive"_s, u"x"_s), Service::googleDrive));
    BackgroundTaskItem byUrl = record(u"helper"_s, u"x"_s);
    byUrl.url = u"file:///Applications/Box.app/"_s;
    EXPECT_TRUE(matchesCloudService(byUrl, Service::box));
    EXPECT_FALSE(matchesCloudService(byUrl, Service::dropbox));
    byUrl.itemType = u"dropbox"_s;
    byUrl.disposition = u"dropbox"_s;
    EXPECT_FALSE(matchesCloudService(byUrl, Service::dropbox));
}

TEST(BackgroundLoginItemChangePlan, withoutServicesNoRecordBelongsToOne) {
    EXPECT_EQ(namesOf(activeRecordsOfServices({record(u"Dropbox"_s, u"com.dropbox"_s)}, {})), QStringList());
}

} // namespace
} // namespace quorvane
