#include "actions/ActiveProfile.h"

#include "fakes/ActionSystem.h"

namespace quorvane {

namespace {

UnifiedProfile profileWithSiri(int number, const QString& name) {
    UnifiedProfile profile = numberedProfile(number, name);
    profile.settings.siri = true;
    return profile;
}

const UnifiedProfile kLiveWithSiri = profileWithSiri(1, u"Live"_s);
const ApplyVerificationResult kChecked{{{u"Siri"_s, u"disabled"_s}}, {}};

SystemConfigurationMatch matchOf(const QString& name, MatchedConfigurationKind kind) {
    return {name, kind, kChecked};
}

class ActiveProfileTest : public ActionSystem {
protected:
    ActiveProfileTest() {
        QObject::connect(&session->activeProfile, &ActiveProfile::changed, [this] { ++changes; });
    }
    const ActiveConfiguration& current() const { return session->activeProfile.current(); }
    int changes = 0;
};

} // namespace

TEST(ActiveConfigurationTest, goesByTheMatchOnceThereWasAScan) {
    using Kind = MatchedConfigurationKind;
    const QList<UnifiedProfile> saved{kLiveWithSiri};
    const ActiveConfiguration live{u"Live"_s, true, kLiveWithSiri.id, kChecked, kLiveWithSiri.settings};
    ActiveConfiguration unscanned = live;
    unscanned.verification.reset();
    const struct {
        const char* what;
        ConfigurationReadings readings;
        ActiveConfiguration active;
    } cases[] = {
        {"a saved profile fits", {true, matchOf(u"Live"_s, Kind::savedProfile), u"Club"_s, saved}, live},
        {"it isn't listed yet",
         {true, matchOf(u"Live"_s, Kind::savedProfile), {}, {}},
         {u"Live"_s, true, {}, kChecked, {}}},
        {"Default fits",
         {true, matchOf(u"Default"_s, Kind::builtinMode), u"Live"_s, saved},
         {u"Default"_s, false, {}, kChecked, {}}},
        {"a profile was kept",
         {true, SystemConfigurationMatch{u"Live"_s, Kind::savedProfile, {}, true}, {}, saved},
         {u"Live"_s, true, kLiveWithSiri.id, {}, kLiveWithSiri.settings, true}},
        {"nothing fits", {true, {}, u"Live"_s, saved}, {}},
        {"not scanned, a profile applied last", {false, {}, u"Live"_s, saved}, unscanned},
        {"not scanned, that profile is gone", {false, {}, u"Club"_s, saved}, {}},
        {"not scanned, Default applied last", {false, {}, u"Default"_s, saved}, {u"Default"_s, false, {}, {}, {}}},
        {"nothing was ever applied", {false, {}, {}, saved}, {}},
    };
    for (const auto& [what, readings, active] : cases) {
        EXPECT_EQ(activeConfiguration(readings), active) << what;
    }
}

TEST_F(ActiveProfileTest, tellsOnlyOfWhatHasChanged) {
    addProfile(kLiveWithSiri);
    session->system.recordAppliedConfiguration(kLiveWithSiri, kChecked);
    EXPECT_EQ(changes, 1);
    EXPECT_EQ(current().name, u"Live"_s);
    EXPECT_EQ(current().id, std::nullopt) << "nobody has listed the profiles";
    session->system.recordAppliedConfiguration(kLiveWithSiri, kChecked);
    session->activeProfile.update();
    EXPECT_EQ(changes, 1);
    listProfiles();
    EXPECT_EQ(changes, 2);
    EXPECT_EQ(current().id, kLiveWithSiri.id);
    EXPECT_EQ(current().tweaks, kLiveWithSiri.settings);
}

TEST_F(ActiveProfileTest, beforeTheFirstScanItFollowsTheNameThatWasAppliedLast) {
    addProfile(kLiveWithSiri);
    listProfiles();
    defaults.setString(kQuorvaneLastAppliedProfileName, u"Live"_s);
    EXPECT_EQ(current(), ActiveConfiguration{});
    session->activeProfile.update();
    EXPECT_EQ(current().name, u"Live"_s);
}

} // namespace quorvane
