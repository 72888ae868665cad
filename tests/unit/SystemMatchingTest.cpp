#include "matching/SystemMatching.h"
#include "fakes/ProfileStore.h"

#include <gtest/gtest.h>

using namespace Qt::StringLiterals;

namespace quorvane {

namespace {

ApplyVerificationResult counted(int verified, int failed) {
    ApplyVerificationResult result;
    for (int i = 0; i < verified; ++i) {
        result.verified.append({u"ok %1"_s.arg(i), {}});
    }
    for (int i = 0; i < failed; ++i) {
        result.failed.append({u"missing %1"_s.arg(i), {}});
    }
    return result;
}

const QList<UnifiedProfile> kProfiles{numberedProfile(1, u"Club"_s), numberedProfile(2, u"Festival"_s),
                                      numberedProfile(3, u"Studio"_s)};

} // namespace

TEST(SystemMatching, triesTheLastAppliedProfileFirst) {
    EXPECT_EQ(namesOf(candidateOrder(kProfiles, u"Studio"_s)), (QStringList{u"Studio"_s, u"Club"_s, u"Festival"_s}));
    EXPECT_EQ(namesOf(candidateOrder(kProfiles, u"Club"_s)), namesOf(kProfiles));
}

TEST(SystemMatching, keepsTheOrderWhereNoProfileHasExactlyThatName) {
    EXPECT_EQ(namesOf(candidateOrder(kProfiles, {})), namesOf(kProfiles));
    EXPECT_EQ(namesOf(candidateOrder(kProfiles, u"studio"_s)), namesOf(kProfiles));
    EXPECT_EQ(namesOf(candidateOrder(kProfiles, u"Gone"_s)), namesOf(kProfiles));
    EXPECT_EQ(namesOf(candidateOrder({}, u"Studio"_s)), QStringList());
}

TEST(SystemMatching, triesAProfileOnceWhoseIdentityStandsTwice) {
    const QList<UnifiedProfile> profiles{numberedProfile(1, u"Old name"_s), numberedProfile(2, u"Festival"_s),
                                         numberedProfile(1, u"New name"_s)};
    EXPECT_EQ(namesOf(candidateOrder(profiles, u"New name"_s)), (QStringList{u"New name"_s, u"Festival"_s}));
}

TEST(SystemMatching, needsEverythingToHold) {
    EXPECT_TRUE(isMatch(counted(11, 0), false));
    EXPECT_TRUE(isMatch(counted(0, 0), false));
    EXPECT_FALSE(isMatch(counted(11, 1), false));
}

TEST(SystemMatching, letsMoreOfTheLastAppliedProfileHoldThanNot) {
    EXPECT_TRUE(isMatch(counted(10, 3), true));
    EXPECT_TRUE(isMatch(counted(7, 6), true));
    EXPECT_FALSE(isMatch(counted(6, 6), true));
    EXPECT_FALSE(isMatch(counted(0, 1), true));
}

TEST(SystemMatching, isDefaultWhereNoTweakIsInForce) {
    EXPECT_EQ(defaultVerification(counted(0, 11), false),
              (ApplyVerificationResult{{{u"Default preset"_s, u"no performance optimizations active"_s},
                                        {u"Clean Reboot"_s, u"standard app restoration"_s}},
                                       {}}));
}

TEST(SystemMatching, tellsWhichTweaksAreStillInForce) {
    const ApplyVerificationResult inForce{{{u"App Nap"_s, u"disabled"_s}, {u"Siri"_s, {}}}, {{u"AirDrop"_s, u"x"_s}}};
    EXPECT_EQ(defaultVerification(inForce, false),
              (ApplyVerificationResult{{{u"Clean Reboot"_s, u"standard app restoration"_s}},
                                       {{u"App Nap"_s, u"disabled"_s}, {u"Siri"_s, u"still active"_s}}}));
    EXPECT_EQ(defaultVerification(inForce, true), (ApplyVerificationResult{{},
                                                                           {{u"App Nap"_s, u"disabled"_s},
                                                                            {u"Siri"_s, u"still active"_s},
                                                                            {u"Clean Reboot"_s, u"still enabled"_s}}}));
}

TEST(SystemMatching, whatThisMacDoesNotHaveIsNeitherForNorAgainstDefault) {
    const ApplyVerificationResult::Item absent{u"Motion Sensor"_s, u"not present on this Mac"_s, false};
    EXPECT_EQ(defaultVerification({{absent}, counted(0, 10).failed}, false),
              defaultVerification(counted(0, 10), false));
    EXPECT_EQ(defaultVerification({counted(1, 0).verified + QList{absent}, {}}, false),
              defaultVerification(counted(1, 0), false));
}

TEST(SystemMatching, isNotDefaultWhereOnlyTheCleanRebootIsLeft) {
    EXPECT_EQ(defaultVerification(counted(0, 11), true),
              (ApplyVerificationResult{{{u"Default preset"_s, u"no performance optimizations active"_s}},
                                       {{u"Clean Reboot"_s, u"still enabled"_s}}}));
}

} // namespace quorvane
