#include "actions/ActiveProfile.h"

#include "fakes/ActionSystem.h"
#include "fakes/ReadingLines.h"

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
    const NamedConfiguration live{u"Live"_s, kLiveWithSiri.id, kLiveWithSiri.settings};
    const NamedConfiguration appliedDefault{u"Default"_s, {}, PerformanceSettings{}};
    const NamedConfiguration unknown{u"Default"_s, {}, {}};
    const struct {
        const char* what;
        ConfigurationReadings readings;
        ActiveConfiguration active;
    } cases[] = {
        {"a saved profile fits, and another that was applied last is gone",
         {true, matchOf(u"Live"_s, Kind::savedProfile), u"Club"_s, saved},
         {true, u"Live"_s, true, kLiveWithSiri.id, kChecked, false, {}, live}},
        {"it isn't listed yet",
         {true, matchOf(u"Live"_s, Kind::savedProfile), {}, {}},
         {true, u"Live"_s, true, {}, kChecked, false, {}, {u"Live"_s, {}, {}}}},
        {"Default fits",
         {true, matchOf(u"Default"_s, Kind::builtinMode), u"Live"_s, saved},
         {true, u"Default"_s, false, {}, kChecked, false, live, live}},
        {"Default fits, nothing was ever applied",
         {true, matchOf(u"Default"_s, Kind::builtinMode), {}, saved},
         {true, u"Default"_s, false, {}, kChecked, false, {}, appliedDefault}},
        {"a profile was kept",
         {true, SystemConfigurationMatch{u"Live"_s, Kind::savedProfile, {}, true}, {}, saved},
         {true, u"Live"_s, true, kLiveWithSiri.id, {}, true, {}, unknown}},
        {"nothing fits", {true, {}, u"Live"_s, saved}, {true, {}, false, {}, {}, false, live, live}},
        {"not scanned, a profile applied last",
         {false, {}, u"Live"_s, saved},
         {false, u"Live"_s, true, kLiveWithSiri.id, {}, false, live, live}},
        {"not scanned, that profile is gone",
         {false, {}, u"Club"_s, saved},
         {false, {}, false, {}, {}, false, {}, unknown}},
        {"not scanned, Default applied last",
         {false, {}, u"default"_s, saved},
         {false, u"Default"_s, false, {}, {}, false, appliedDefault, appliedDefault}},
        {"nothing was ever applied", {false, {}, {}, saved}, {false, {}, false, {}, {}, false, {}, unknown}},
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
    EXPECT_EQ(current().current.tweaks, kLiveWithSiri.settings);
}

TEST_F(ActiveProfileTest, beforeTheFirstScanItFollowsTheNameThatWasAppliedLast) {
    addProfile(kLiveWithSiri);
    listProfiles();
    defaults.setString(kQuorvaneLastAppliedProfileName, u"Live"_s);
    EXPECT_EQ(current().name, QString());
    session->activeProfile.update();
    EXPECT_EQ(current().name, u"Live"_s);
}

TEST_F(ActiveProfileTest, aMatchThatIsCurrentIsNotWrittenDown) {
    addProfile(kLiveWithSiri);
    listProfiles();
    session->system.recordAppliedConfiguration(kLiveWithSiri, kChecked);
    defaults.values.remove(kQuorvaneLastAppliedProfileName);
    session->activeProfile.update();
    EXPECT_EQ(current().lastApplied, NamedConfiguration{});
    EXPECT_EQ(current().current.name, u"Live"_s);
    EXPECT_FALSE(defaults.values.contains(kQuorvaneLastAppliedProfileName));
}

TEST_F(ActiveProfileTest, whatWasVerifiedOnceStaysSoThroughAScanThatCanTellNothing) {
    session->system.recordAppliedConfiguration(kLiveWithSiri, kChecked);
    EXPECT_TRUE(current().wasVerified);
    commands.answer(reading::kAppNap, ScriptedCommandLauncher::unanswered().first());
    QCoro::waitFor(session->scans.scanned());
    EXPECT_TRUE(current().wasVerified);
    EXPECT_TRUE(current().isKept);
}

} // namespace quorvane
