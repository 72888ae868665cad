#include "actions/WindowTexts.h"

#include "actions/ActiveProfile.h"
#include "fakes/HostileNames.h"

#include <gtest/gtest.h>

namespace quorvane {

using namespace Qt::StringLiterals;

namespace {

ActiveConfiguration titled(const QString& found, bool isSavedProfile, const QString& current) {
    ActiveConfiguration active;
    active.name = found;
    active.isSavedProfile = isSavedProfile;
    active.current.name = current;
    return active;
}

} // namespace

TEST(WindowTitle, namesTheMatchBeforeTheCurrentOneAndNeverDefault) {
    const struct {
        ActiveConfiguration active;
        QString title;
    } cases[] = {
        {titled(u"Live"_s, true, u"Club"_s), u"Quorvane — Live"_s},
        {titled(u"Default"_s, false, u"Club"_s), u"Quorvane — Club"_s},
        {titled({}, false, u"Club"_s), u"Quorvane — Club"_s},
        {titled({}, false, u"Default"_s), u"Quorvane"_s},
        {titled(u"Default"_s, false, u"default"_s), u"Quorvane"_s},
        {titled({}, false, {}), u"Quorvane"_s},
    };
    for (const auto& [active, title] : cases) {
        EXPECT_EQ(windowTitle(active), title);
    }
    for (const QString& name : hostileNames()) {
        expectNameInside(windowTitle(titled(name, true, {})), name);
    }
}

TEST(WaitingText, isWhatTheProgramIsBusyWith) {
    const struct {
        bool isBusy;
        bool isVerifying;
        QString busyMessage;
        QString text;
    } cases[] = {
        {true, true, u"Applying profile…"_s, u"Applying profile…"_s},
        {true, true, {}, u"Verifying system settings…"_s},
        {true, false, {}, u"Please wait…"_s},
        {false, true, {}, u"Verifying system settings…"_s},
        {false, true, u"Applying profile…"_s, u"Verifying system settings…"_s},
    };
    for (const auto& [isBusy, isVerifying, busyMessage, text] : cases) {
        EXPECT_EQ(waitingText(isBusy, busyMessage, isVerifying), text);
    }
}

TEST(TabTexts, standInTheirOrderAndGroups) {
    const QList<TabText> expected{
        {Tab::performance, u"Performance"_s, u"gauge.medium.badge.plus"_s, u"Optimization"_s},
        {Tab::maintenance, u"Maintenance"_s, u"wrench.and.screwdriver.fill"_s, u"Optimization"_s},
        {Tab::network, u"Network"_s, u"network"_s, u"Optimization"_s},
        {Tab::logs, u"Logs"_s, u"doc.text.fill"_s, u"Diagnostics"_s},
        {Tab::settings, u"Settings"_s, u"gearshape.fill"_s, u"Preferences"_s}};
    EXPECT_EQ(tabTexts(), expected);
}

} // namespace quorvane
