// The small tables by which the Mac's adapters read the system's answers.

#include "platform/macos/BiometryRules.h"
#include "platform/macos/BundleRules.h"
#include "platform/macos/DescriptorLimit.h"
#include "platform/macos/LoginServiceRules.h"
#include "platform/macos/MachineRules.h"

#include <gtest/gtest.h>

#include <sys/resource.h>

namespace quorvane {

using namespace Qt::StringLiterals;

TEST(BiometryRules, theSystemsValuesAreThePortsAndOthersAreNone) {
    EXPECT_EQ(biometryType(0), BiometryType::None);
    EXPECT_EQ(biometryType(1), BiometryType::TouchId);
    EXPECT_EQ(biometryType(2), BiometryType::FaceId);
    EXPECT_EQ(biometryType(4), BiometryType::OpticId);
    for (const long value : {3L, 5L, 8L, -1L}) {
        EXPECT_EQ(biometryType(value), BiometryType::None) << value;
    }
}

TEST(BundleRules, anApplicationOfThisMacIsInstalledWhereverItStands) {
    for (const QString& path : {u"/Applications/Mixer.app"_s, u"/System/Applications/Calculator.app"_s,
                                u"/Users/alex/Applications/Mixer.app"_s, u"/Users/alex/Downloads/Mixer.app"_s,
                                u"/opt/Mixer.app"_s, u"/Applications/.Trash Mixer/Mixer.app"_s}) {
        EXPECT_TRUE(countsAsInstalled(path, false)) << path.toStdString();
    }
    EXPECT_TRUE(countsAsInstalled(u"/System/Applications/Calculator.app"_s, true))
        << "the system's volume is read-only";
    EXPECT_TRUE(countsAsInstalled(u"/Volumes/Studio/Mixer.app"_s, false)) << "a drive of the user's";
}

TEST(BundleRules, whatIsThrownAwayOrOnADiskImageIsNot) {
    for (const QString& path : {u"/Users/alex/.Trash/Mixer.app"_s, u"/Users/alex/.Trash/Old/Mixer.app"_s,
                                u"/Volumes/Studio/.Trashes/501/Mixer.app"_s, QString()}) {
        EXPECT_FALSE(countsAsInstalled(path, false)) << path.toStdString();
    }
    EXPECT_FALSE(countsAsInstalled(u"/Volumes/Mixer 2.1/Mixer.app"_s, true));
}

TEST(LoginServiceRules, theSystemsStatesAreThePorts) {
    EXPECT_EQ(loginServiceState(0), LoginService::State::NotEnabled);
    EXPECT_EQ(loginServiceState(1), LoginService::State::Enabled);
    EXPECT_EQ(loginServiceState(2), LoginService::State::RequiresApproval);
    EXPECT_EQ(loginServiceState(3), LoginService::State::NotEnabled) << "it isn't found";
    EXPECT_EQ(loginServiceState(99), LoginService::State::NotEnabled);
}

TEST(LoginServiceRules, whatIsSoAlreadyIsNoFailure) {
    EXPECT_EQ(failureOfRegistering(12, u"already"_s), std::nullopt);
    EXPECT_EQ(failureOfUnregistering(6, u"not found"_s), std::nullopt);
    EXPECT_EQ(failureOfRegistering(6, u"not found"_s), u"not found"_s);
    EXPECT_EQ(failureOfUnregistering(12, u"already"_s), u"already"_s);
    for (const long code : {1L, 3L, 11L}) { // not permitted, not signed, switched off by the user
        EXPECT_EQ(failureOfRegistering(code, u"words"_s), u"words"_s) << code;
        EXPECT_EQ(failureOfUnregistering(code, u"words"_s), u"words"_s) << code;
    }
}

TEST(MachineRules, aVersionHasTwoNumbersAndAThirdOneAfterAnUpdate) {
    EXPECT_EQ(versionText(14, 0, 0), u"14.0"_s);
    EXPECT_EQ(versionText(15, 7, 1), u"15.7.1"_s);
    EXPECT_EQ(versionText(26, 0, 2), u"26.0.2"_s);
}

namespace {

/// Puts the process's limit back.
class DescriptorLimits : public ::testing::Test {
public:
    ~DescriptorLimits() override { ::setrlimit(RLIMIT_NOFILE, &former); }

protected:
    DescriptorLimits() { ::getrlimit(RLIMIT_NOFILE, &former); }
    static rlim_t limitAfter(rlim_t soft, rlim_t hard, unsigned wanted) {
        rlimit limit{soft, hard};
        EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
        EXPECT_TRUE(raiseDescriptorLimit(wanted));
        EXPECT_EQ(::getrlimit(RLIMIT_NOFILE, &limit), 0);
        EXPECT_EQ(limit.rlim_max, hard);
        return limit.rlim_cur;
    }

    rlimit former{};
};

} // namespace

TEST_F(DescriptorLimits, areRaisedAndNeverLowered) {
    EXPECT_EQ(limitAfter(256, former.rlim_max, 1024), 1024U);
    EXPECT_EQ(limitAfter(1500, former.rlim_max, 1024), 1500U);
    EXPECT_EQ(limitAfter(256, former.rlim_max, 300), 300U);
}

TEST_F(DescriptorLimits, endWhereTheSystemsDo) {
    EXPECT_EQ(limitAfter(256, former.rlim_max, ~0U), std::min<rlim_t>(~0U, former.rlim_max));
}

} // namespace quorvane
