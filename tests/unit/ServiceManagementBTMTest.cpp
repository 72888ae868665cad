#include "startup/background/ServiceManagementBTM.h"

#include "core/UserDefaultKeys.h"
#include "fakes/MemoryUserDefaults.h"
#include "fakes/ScriptedBackgroundTaskPermissions.h"
#include "platform/Machine.h"

#include <gtest/gtest.h>

namespace quorvane {
namespace {

using Outcome = ServiceManagementBTM::Outcome;

const QString kOpen = u"? open /System/Library/Frameworks/ServiceManagement.framework/ServiceManagement\n"_s;
const QString kLoginItem = u"SMLoginItemSetUserAllowed_4BTM"_s;
const QString kLaunchdPlist = u"SMLaunchdPlistSetUserAllowed_4BTM"_s;
const QString kLookUps = kOpen + u"? look up SMLoginItemSetUserAllowed_4BTM\n"
                                 "? look up SMLaunchdPlistSetUserAllowed_4BTM\n"_s;

class VersionedMachine final : public Machine {
public:
    QString homeFolder() const override { return {}; }
    QString applicationSupportFolder() const override { return {}; }
    QString temporaryFolder() const override { return {}; }
    QString computerName() const override { return {}; }
    QString hardwareId() const override { return {}; }
    QString systemVersion() const override { return version; }
    quint32 userId() const override { return 501; }
    QString processName() const override { return {}; }
    bool isRunning(const QString& /*processName*/) const override { return false; }
    QString dateAndTimeText(const QDateTime& /*moment*/) const override { return {}; }

    QString version = u"14.7"_s;
};

class ServiceManagementBTMTest : public ::testing::Test {
protected:
    ServiceManagementBTMTest() { permissions.isLibraryThere = true; }

    Outcome disallow() { return btm.disallowBackgroundItem(u"/Applications/My App.app"_s, u"com.x.helper"_s); }
    QString takeTrace() {
        QString lines;
        for (const QString& line : std::exchange(trace, {})) {
            lines += line + u'\n';
        }
        return lines;
    }
    static QString call(const QString& symbol) {
        return u"? "_s + symbol + u" \"/Applications/My App.app\" com.x.helper false\n"_s;
    }

    QStringList trace;
    ScriptedBackgroundTaskPermissions permissions{trace};
    MemoryUserDefaults defaults;
    VersionedMachine machine;
    ServiceManagementBTM btm{permissions, defaults, machine};
};

TEST_F(ServiceManagementBTMTest, theLoginItemsEntryPointIsAskedFirstAndSuffices) {
    permissions.answers = {{kLoginItem, true}, {kLaunchdPlist, true}};
    EXPECT_EQ(disallow(), Outcome::Succeeded);
    EXPECT_EQ(takeTrace(), kLookUps + call(kLoginItem));
}

TEST_F(ServiceManagementBTMTest, thePlistsEntryPointIsAskedWhenTheFirstRefuses) {
    permissions.answers = {{kLoginItem, false}, {kLaunchdPlist, true}};
    EXPECT_EQ(disallow(), Outcome::Succeeded);
    EXPECT_EQ(takeTrace(), kLookUps + call(kLoginItem) + call(kLaunchdPlist));
}

TEST_F(ServiceManagementBTMTest, itFailsWhenBothRefuse) {
    permissions.answers = {{kLoginItem, false}, {kLaunchdPlist, false}};
    EXPECT_EQ(disallow(), Outcome::Failed);
    EXPECT_EQ(takeTrace(), kLookUps + call(kLoginItem) + call(kLaunchdPlist));
}

TEST_F(ServiceManagementBTMTest, withTheLoginItemsEntryPointAloneItsAnswerCounts) {
    permissions.answers = {{kLoginItem, false}};
    EXPECT_EQ(disallow(), Outcome::Failed);
    EXPECT_EQ(takeTrace(), kLookUps + call(kLoginItem));
    permissions.answers = {{kLoginItem, true}};
    EXPECT_EQ(disallow(), Outcome::Succeeded);
}

TEST_F(ServiceManagementBTMTest, withThePlistsEntryPointAloneItsAnswerCounts) {
    permissions.answers = {{kLaunchdPlist, true}};
    EXPECT_EQ(disallow(), Outcome::Succeeded);
    EXPECT_EQ(takeTrace(), kLookUps + call(kLaunchdPlist));
    permissions.answers = {{kLaunchdPlist, false}};
    EXPECT_EQ(disallow(), Outcome::Failed);
}

TEST_F(ServiceManagementBTMTest, withoutEntryPointsItIsUnavailable) {
    EXPECT_EQ(disallow(), Outcome::Unavailable);
    EXPECT_EQ(takeTrace(), kLookUps);
}

TEST_F(ServiceManagementBTMTest, withoutTheLibraryNothingIsLookedUp) {
    permissions.isLibraryThere = false;
    permissions.answers = {{kLoginItem, true}, {kLaunchdPlist, true}};
    EXPECT_EQ(disallow(), Outcome::Unavailable);
    EXPECT_EQ(takeTrace(), kOpen);
}

TEST_F(ServiceManagementBTMTest, theEntryPointsAreLookedUpOnce) {
    permissions.answers = {{kLoginItem, true}};
    disallow();
    takeTrace();
    EXPECT_EQ(btm.disallowBackgroundItem(u"/A.app"_s, u"second"_s), Outcome::Succeeded);
    EXPECT_EQ(takeTrace(), u"? SMLoginItemSetUserAllowed_4BTM /A.app second false\n"_s);
}

TEST_F(ServiceManagementBTMTest, aFailedLookUpIsNotTriedAgain) {
    permissions.isLibraryThere = false;
    disallow();
    takeTrace();
    permissions.isLibraryThere = true;
    permissions.answers = {{kLoginItem, true}, {kLaunchdPlist, true}};
    EXPECT_EQ(disallow(), Outcome::Unavailable);
    EXPECT_EQ(takeTrace(), QString());
}

TEST_F(ServiceManagementBTMTest, missingEntryPointsAreNotLookedForAgain) {
    disallow();
    takeTrace();
    permissions.answers = {{kLoginItem, true}, {kLaunchdPlist, true}};
    EXPECT_EQ(disallow(), Outcome::Unavailable);
    EXPECT_EQ(takeTrace(), QString());
}

TEST_F(ServiceManagementBTMTest, aCallIsWrittenDownForGoodWhileItLasts) {
    permissions.answers = {{kLoginItem, false}, {kLaunchdPlist, true}};
    QStringList marks;
    permissions.duringCall = [&] {
        marks.append(defaults.synchronized.value(kQuorvaneBackgroundTaskCallBegan).toString());
    };
    disallow();
    EXPECT_EQ(marks, QStringList({kLoginItem + u" 14.7"_s, kLaunchdPlist + u" 14.7"_s}));
    EXPECT_EQ(defaults.values, (QMap<QString, QVariant>()));
    EXPECT_EQ(defaults.synchronized, defaults.values);
}

TEST_F(ServiceManagementBTMTest, afterAnEndInACallNoneIsMadeAgainOnThatVersion) {
    permissions.answers = {{kLoginItem, true}, {kLaunchdPlist, true}};
    permissions.duringCall = [this] { throw defaults.synchronized; };
    QMap<QString, QVariant> left;
    try {
        disallow();
    } catch (const QMap<QString, QVariant>& stored) {
        left = stored;
    }
    defaults.values = left;
    permissions.duringCall = {};
    takeTrace();

    ServiceManagementBTM again(permissions, defaults, machine);
    EXPECT_EQ(again.disallowBackgroundItem(u"/A.app"_s, u"second"_s), Outcome::Unavailable);
    EXPECT_TRUE(again.hasEndedInCall());
    EXPECT_EQ(takeTrace(), QString());
    EXPECT_EQ(defaults.values, left) << "for the starts to come";

    machine.version = u"14.7.1"_s;
    ServiceManagementBTM updated(permissions, defaults, machine);
    EXPECT_EQ(updated.disallowBackgroundItem(u"/A.app"_s, u"second"_s), Outcome::Succeeded);
    EXPECT_FALSE(updated.hasEndedInCall());
    EXPECT_EQ(defaults.values, (QMap<QString, QVariant>()));
}

TEST_F(ServiceManagementBTMTest, aMarkOfAnotherVersionIsNone) {
    defaults.setString(kQuorvaneBackgroundTaskCallBegan, kLoginItem + u" 4.7"_s);
    permissions.answers = {{kLoginItem, true}};
    EXPECT_EQ(disallow(), Outcome::Succeeded);
}

TEST_F(ServiceManagementBTMTest, nothingIsLookedUpBeforeTheFirstCall) {
    EXPECT_EQ(takeTrace(), QString());
}

} // namespace
} // namespace quorvane
