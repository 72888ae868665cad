#include "profiles/UnifiedProfile.h"

#include <gtest/gtest.h>

#include <QSet>

#include <functional>

using namespace Qt::StringLiterals;

namespace quorvane {
namespace {

UnifiedProfile liveSet() {
    StartupItem item;
    item.id = u"login:Sync"_s;
    item.name = u"Sync"_s;

    UnifiedProfile profile;
    profile.id = QUuid(u"0B7E9D60-3C1F-4A52-8E6D-9F00AABBCCDD"_s);
    profile.name = u"Live Set"_s;
    profile.dateCreated = QDateTime(QDate(2026, 11, 15), QTime(21, 5, 37), Qt::UTC);
    profile.settings = PerformanceSettings::fullSelection();
    profile.startup.items = {item};
    profile.startup.disabledCloudSyncAtStartup = {CloudSyncService::box};
    return profile;
}

TEST(UnifiedProfile, theSameIdIsTheSameProfile) {
    UnifiedProfile renamed = liveSet();
    renamed.name = u"Gig"_s;
    EXPECT_EQ(renamed, liveSet());
    EXPECT_EQ(qHash(renamed), qHash(liveSet()));
    EXPECT_EQ((QSet<UnifiedProfile>{renamed, liveSet()}.size()), 1);
    EXPECT_FALSE(renamed.hasSameContent(liveSet()));
}

TEST(UnifiedProfile, twoIdsAreTwoProfilesThoughTheirContentIsTheSame) {
    UnifiedProfile twin = liveSet();
    twin.id = QUuid::createUuid();
    EXPECT_NE(twin, liveSet());
    EXPECT_TRUE(twin.hasSameContent(liveSet()));
}

TEST(UnifiedProfile, everyPartOfTheContentCounts) {
    using Change = std::function<void(UnifiedProfile&)>;
    const Change changes[] = {
        [](UnifiedProfile& profile) { profile.name = u"live set"_s; },
        [](UnifiedProfile& profile) { profile.settings.siri = false; },
        [](UnifiedProfile& profile) { profile.settings.cleanReboot = true; },
        [](UnifiedProfile& profile) { profile.settings.customIcons.insert(u"siri"_s, u"star"_s); },
        [](UnifiedProfile& profile) { profile.startup.items.clear(); },
        [](UnifiedProfile& profile) { profile.startup.items.append(profile.startup.items.first()); },
        [](UnifiedProfile& profile) { profile.startup.items[0].id += u'x'; },
        [](UnifiedProfile& profile) { profile.startup.items[0].name += u'x'; },
        [](UnifiedProfile& profile) { profile.startup.items[0].path += u'x'; },
        [](UnifiedProfile& profile) { profile.startup.items[0].kind = StartupItemKind::addedApp; },
        [](UnifiedProfile& profile) { profile.startup.items[0].runsAtStartup = false; },
        [](UnifiedProfile& profile) { profile.startup.items[0].hidden = false; },
        [](UnifiedProfile& profile) { profile.startup.items[0].isProtected = true; },
        [](UnifiedProfile& profile) { profile.startup.items[0].launchIdentifier = QString(); },
        [](UnifiedProfile& profile) { profile.startup.disableNetworkAtStartup = true; },
        [](UnifiedProfile& profile) { profile.startup.disabledCloudSyncAtStartup.clear(); },
    };
    for (const Change& change : changes) {
        UnifiedProfile profile = liveSet();
        change(profile);
        EXPECT_FALSE(profile.hasSameContent(liveSet()));
        EXPECT_FALSE(liveSet().hasSameContent(profile));
    }
}

TEST(UnifiedProfile, dateAndLegacyFieldsAreNoContent) {
    UnifiedProfile profile = liveSet();
    profile.dateCreated = profile.dateCreated.addDays(1);
    profile.legacyDisabledLoginItems = {u"Sync"_s};
    profile.legacyDisableNetwork = true;
    EXPECT_TRUE(profile.hasSameContent(liveSet()));
}

TEST(UnifiedProfile, theDefaultProfileHoldsNothingBack) {
    const UnifiedProfile& profile = UnifiedProfile::defaultProfile();
    EXPECT_EQ(profile.id.toString(QUuid::WithoutBraces), u"00000000-0000-0000-0000-000000000001"_s);
    EXPECT_EQ(profile.name, u"Default"_s);
    EXPECT_EQ(profile.dateCreated.toString(Qt::ISODate), u"2001-01-01T00:00:00Z"_s);
    EXPECT_EQ(profile.settings, PerformanceSettings());
    EXPECT_EQ(profile.startup, StartupConfiguration());
    EXPECT_TRUE(profile.legacyDisabledLoginItems.isEmpty() && profile.legacyDisabledLaunchItems.isEmpty() &&
                profile.legacyExcludedBackgroundActivityItems.isEmpty() &&
                profile.legacyKnownBackgroundActivityItemIds.isEmpty() &&
                profile.legacyPermittedStartupApps.isEmpty() && profile.legacyStartupLaunchItems.isEmpty());
    EXPECT_FALSE(profile.legacyDisableNetwork);
}

TEST(UnifiedProfile, defaultIsANameInAnyCase) {
    EXPECT_TRUE(isDefaultProfileName(u"Default"_s));
    EXPECT_TRUE(isDefaultProfileName(u"dEFAULT"_s));
    EXPECT_FALSE(isDefaultProfileName(u"Default 2"_s));
    EXPECT_FALSE(isDefaultProfileName(u""_s));
    EXPECT_TRUE(isDefaultProfile(UnifiedProfile::defaultProfile()));
    EXPECT_FALSE(isDefaultProfile(liveSet()));
    UnifiedProfile renamed = UnifiedProfile::defaultProfile();
    renamed.name = u"Gig"_s;
    EXPECT_TRUE(isDefaultProfile(renamed));
}

} // namespace
} // namespace quorvane
